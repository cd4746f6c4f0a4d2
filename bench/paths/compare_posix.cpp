#include "bench/paths/scene.h"

#include <zorvel/paths.h>

#include <boost/algorithm/string/predicate.hpp>

#include <filesystem>
#include <langinfo.h>
#include <strings.h>

/// Whether two paths are equal. All objects are there already; std::filesystem::path compares letters with their case
/// and so takes part only where that makes no difference.
namespace zorvel {
namespace bench {
namespace {

/// What the texts are compared with, and the answer.
struct Other
{
    const char* row;
    Texts (*of)(const Texts& texts);
    bool isEqual;
    bool isEqualByBytes;
    bool isAnswerOfBytes;
};

Texts same(const Texts& texts)
{
    return texts;
}

Texts otherCase(const Texts& texts)
{
    return inCapitals(texts, isDoubleByte(texts));
}

/// Another byte of the same kind at an index from the beginning or from the end; all other bytes stay.
Texts differentAt(const Texts& texts, std::ptrdiff_t index)
{
    Texts changed = texts;
    for (std::string& text : changed)
        text[index < 0 ? text.size() - static_cast<std::size_t>(-index) : static_cast<std::size_t>(index)] = 'w';
    return changed;
}

Texts differentEarly(const Texts& texts)
{
    return differentAt(texts, 2);
}

Texts differentLate(const Texts& texts)
{
    return differentAt(texts, -1);
}

const Other others[] = {
    {"path-equal", &same, true, true, true},
    {"path-equal-other-case", &otherCase, true, false, false},
    {"path-unequal-early", &differentEarly, false, false, true},
    {"path-unequal-late", &differentLate, false, false, true},
};

bool sameForStrcasecmp(const std::string& left, const std::string& right)
{
    return strcasecmp(left.c_str(), right.c_str()) == 0;
}

/// The floor for texts that are not equal byte by byte: one pass over both, and one question to the C library about
/// the current locale, which has to say what a letter and what a character is.
bool sameAndAsked(const std::string& left, const std::string& right)
{
    benchmark::DoNotOptimize(nl_langinfo(CODESET));
    return sameForStrcasecmp(left, right);
}

/// Measures isSame(left, right) with each text as an object of a type.
template <class Object, class IsSame>
void measure(benchmark::State& state, const Texts& texts, const Other& other, IsSame isSame)
{
    const Texts right = other.of(texts);
    const std::vector<Object> lefts(texts.begin(), texts.end());
    const std::vector<Object> rights(right.begin(), right.end());
    for (std::size_t i = 0; i < texts.size(); ++i) {
        if (!require(state, isSame(lefts[i], rights[i]) == other.isEqual))
            return;
    }
    overTexts(state, texts.size(), [&](std::size_t i) { return isSame(lefts[i], rights[i]); });
}

template <class Object, class IsSame>
void contestant(const char* name, const Other& other, IsSame isSame)
{
    inBothCodePages(other.row, name, [&other, isSame](benchmark::State& state, const Texts& texts) {
        measure<Object>(state, texts, other, isSame);
    });
}

}  // namespace

void registerCompare()
{
    for (const Other& other : others) {
        contestant<zvPathString>("zorvel", other, [](const zvPathString& l, const zvPathString& r) { return l == r; });
        contestant<std::string>("boost-iequals", other, [](const std::string& l, const std::string& r) {
            return boost::algorithm::iequals(l, r);
        });
        contestant<std::string>("strcasecmp", other, &sameForStrcasecmp);
        if (!other.isEqualByBytes)
            contestant<std::string>("strcasecmp-and-locale", other, &sameAndAsked);
        if (other.isAnswerOfBytes)
            contestant<std::filesystem::path>("std-path", other,
                                              [](const std::filesystem::path& l, const std::filesystem::path& r) {
                                                  return l == r;
                                              });
    }
}

}  // namespace bench
}  // namespace zorvel
