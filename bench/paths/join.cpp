#include "bench/paths/scene.h"

#include <zorvel/paths.h>

#include <filesystem>

/// A directory and a name below it, put together into a new path; the directory is an object already.
namespace zorvel {
namespace bench {
namespace {

const char* const name = ".deploy_read_lock.17";

void ours(benchmark::State& state, const Texts& texts)
{
    const std::vector<zvPathString> directories(texts.begin(), texts.end());
    overTexts(state, texts.size(), [&](std::size_t i) { return zvPathString(directories[i], name); });
}

void standardPath(benchmark::State& state, const Texts& texts)
{
    const std::vector<std::filesystem::path> directories(texts.begin(), texts.end());
    overTexts(state, texts.size(), [&](std::size_t i) { return directories[i] / name; });
}

/// Room once, then the bytes one behind another: no look at a separator.
void appendOnly(benchmark::State& state, const Texts& texts)
{
    overTexts(state, texts.size(), [&](std::size_t i) {
        const std::size_t length = std::char_traits<char>::length(name);
        std::string joined;
        joined.reserve(texts[i].size() + 1 + length);
        joined.append(texts[i]).append(1, '\\').append(name, length);
        return joined;
    });
}

}  // namespace

void registerJoin()
{
    inBothCodePages("path-join", "zorvel", &ours);
    inBothCodePages("path-join", "std-path", &standardPath);
    inBothCodePages("path-join", "append", &appendOnly);
}

}  // namespace bench
}  // namespace zorvel
