#pragma once

#include "bench/locks/contender.h"

#include <iostream>
#include <memory>
#include <stdexcept>

/// Locks that are made of the prescribed steps alone, whatever calls those are on a system.
namespace zorvel {
namespace bench {

/// A step that failed would make the floor too low.
inline void require(bool isDone)
{
    if (!isDone)
        throw std::runtime_error("a step failed");
}

template <class Enter, class Leave>
Lock lockOf(const Enter& enter, const Leave& leave)
{
    return Lock{[=] {
                    require(enter());
                    return true;
                },
                [=] { require(leave()); }, &ownProcessorTime};
}

/// The lock of a kind, exclusive, read or write; a pause for any other.
template <class Steps>
Lock bareLock(const std::string& kind, const std::string& directory)
{
    const auto steps = std::make_shared<Steps>(directory);
    if (kind == "exclusive")
        return lockOf([=] { return steps->takeGuard(); }, [=] { return steps->giveGuard(); });
    if (kind == "read")
        return lockOf([=] { return steps->enterAsReader(); }, [=] { return steps->leaveAsReader(); });
    if (kind == "write")
        return lockOf([=] { return steps->enterAsWriter(); }, [=] { return steps->leaveAsWriter(); });
    return lockOf(
        [] {
            Steps::pause();
            return true;
        },
        [] { return true; });
}

/// KIND DIR and an order, as carryOut() takes it.
template <class MakeLock>
int carryOutBare(int argc, char** argv, MakeLock makeLock)
{
    const std::vector<std::string> words = wordsOf(argc, argv);
    if (words.size() < 3) {
        std::cerr << "what to say is at the beginning of this program's source" << std::endl;
        return 2;
    }
    return carryOut(makeLock(words[0], words[1]), std::vector<std::string>(words.begin() + 2, words.end()));
}

}  // namespace bench
}  // namespace zorvel
