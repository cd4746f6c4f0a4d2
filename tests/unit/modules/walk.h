#pragma once

#include "tests/unit/modules/fake_modules.h"

#include <zorvel/modules.h>

#include <string>
#include <vector>

namespace zorvel {
namespace test {

/// What a walk from the beginning to the end comes upon.
inline std::vector<std::string> walk(const zvLoadedModuleList& list)
{
    std::vector<std::string> names;
    for (zvLoadedModuleListIterator at = list.begin(), end = list.end(); at != end; ++at)
        names.push_back(*at);
    return names;
}

/// The names that made-up modules have.
inline std::vector<std::string> fakeNames(std::size_t first, std::size_t count)
{
    std::vector<std::string> names;
    for (std::size_t index = first; index < first + count; ++index)
        names.push_back(fake_modules::nameOf(index));
    return names;
}

}  // namespace test
}  // namespace zorvel
