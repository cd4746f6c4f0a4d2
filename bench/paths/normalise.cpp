#include "bench/paths/scene.h"

#include <zorvel/paths.h>

#include <filesystem>

/// From the bytes of a path to its one spelling, in a new object each time. std::filesystem::path takes "." and ".."
/// out as well, of which there are none here.
namespace zorvel {
namespace bench {
namespace {

/// Every third separator doubled.
Texts doubled(const Texts& texts)
{
    Texts changed;
    for (const std::string& text : texts) {
        std::string more;
        int separators = 0;
        for (char byte : text) {
            more += byte;
            if (byte == '/' && ++separators % 3 == 0)
                more += '/';
        }
        changed.push_back(more);
    }
    return changed;
}

void ours(benchmark::State& state, const Texts& texts)
{
    overTexts(state, texts.size(), [&](std::size_t i) {
        zvPathString path;
        path.assign(texts[i].data(), texts[i].size());
        return path;
    });
}

void standardPath(benchmark::State& state, const Texts& texts)
{
    overTexts(state, texts.size(), [&](std::size_t i) { return std::filesystem::path(texts[i]).lexically_normal(); });
}

/// The bytes put into a new string, and nothing done to them.
void copyOnly(benchmark::State& state, const Texts& texts)
{
    overTexts(state, texts.size(), [&](std::size_t i) { return std::string(texts[i]); });
}

template <class Work>
void onDoubled(const char* contestant, Work work)
{
    inBothCodePages("path-normalise-doubled", contestant,
                    [work](benchmark::State& state, const Texts& texts) { work(state, doubled(texts)); });
}

}  // namespace

void registerNormalise()
{
    inBothCodePages("path-normalise", "zorvel", &ours);
    inBothCodePages("path-normalise", "std-path", &standardPath);
    inBothCodePages("path-normalise", "copy", &copyOnly);
    onDoubled("zorvel", &ours);
    onDoubled("std-path", &standardPath);
    onDoubled("copy", &copyOnly);
}

}  // namespace bench
}  // namespace zorvel
