#include "tests/faults/endings.h"

#include <zorvel/errors.h>

namespace zorvel {
namespace test {

bool operator==(const Ending& one, const Ending& other)
{
    return one.acquired == other.acquired && one.thrown == other.thrown && one.text == other.text;
}

std::ostream& operator<<(std::ostream& out, const Ending& ending)
{
    return out << (ending.acquired ? "acquired " : "not acquired ") << ending.thrown.name() << ' ' << ending.text;
}

Ending endingOf(const std::function<bool()>& acquire)
{
    Ending ending;
    try {
        ending.acquired = acquire();
    } catch (const std::exception& error) {
        ending.thrown = typeid(error);
        ending.text = error.what();
    }
    return ending;
}

Ending acquired()
{
    return endingOf([] { return true; });
}

Ending notAcquired()
{
    return Ending();
}

Ending unchanged(Failure failure)
{
    return endingOf([failure] {
        throwFailure(failure);
        return false;
    });
}

Ending base(const std::string& text)
{
    Ending ending;
    ending.thrown = typeid(zvFileBasedLockError);
    ending.text = text;
    return ending;
}

}  // namespace test
}  // namespace zorvel
