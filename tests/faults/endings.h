#pragma once

#include "tests/support/failing_fs.h"

#include <functional>
#include <ostream>
#include <string>
#include <typeindex>
#include <typeinfo>

namespace zorvel {
namespace test {

/// How an acquire ended.
struct Ending
{
    bool acquired = false;
    std::type_index thrown = typeid(void);
    std::string text;
};

bool operator==(const Ending& one, const Ending& other);
std::ostream& operator<<(std::ostream& out, const Ending& ending);

Ending endingOf(const std::function<bool()>& acquire);

Ending acquired();
Ending notAcquired();

/// The exception as it was thrown.
Ending unchanged(Failure failure);

/// The base of the family itself, with a text.
Ending base(const std::string& text);

}  // namespace test
}  // namespace zorvel
