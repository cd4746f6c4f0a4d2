#include "tests/faults/seam/scenario.h"

#include <zorvel/errors.h>
#include <zorvel/paths.h>

#include <gtest/gtest.h>

namespace zorvel {
namespace test {
namespace seam {

namespace {

using namespace seam_faults;

/// Made of text, without a file.
class TextRun : public Run
{
public:
    void check(const std::string&, const Faults&) override {}
};

/// Without an absolute form the input itself is the answer.
class CanonicalPath : public TextRun
{
public:
    std::string act() override
    {
        char out[2562];
        const std::string path = "a\\..\\b";
        const char* const result = zvCanonicalizePath(out, sizeof out, path.c_str(), path.size());
        return result == path.c_str() ? "input" : result == out ? "absolute" : "elsewhere";
    }
};

class CollapsedPath : public TextRun
{
public:
    std::string act() override
    {
        char out[260] = "left";
        EXPECT_EQ(out, zvCollapsePath(out, "\\a\\..\\b"));
        return *out ? out : "empty";
    }
};

class ErrorText : public TextRun
{
public:
    std::string act() override
    {
        const std::string text = zvGetWinErrorMessage(2);
        const std::string last = zvGetWinErrorMessage(0xFFFFFFFFul);
        return text.empty() ? last.empty() ? "neither" : "last" : "text";
    }
};

}  // namespace

Scenarios textScenarios()
{
    const Persistence once = Persistence::once;
    const Persistence ever = Persistence::ever;
    const Persistence both = Persistence::both;
    return {
        {"canonical_path", &make<CanonicalPath>, "absolute", {{fullPath, "", both, "input"}}},
        {"collapsed_path", &make<CollapsedPath>, "\\b", {{canonicalize, "", both, "empty"}}},
        {"error_text",
         &make<ErrorText>,
         "text",
         {{systemErrorText, "bad_alloc", both, "bad_alloc"},
          {systemErrorText, "", once, "text last"},
          {systemErrorText, "", ever, "text neither"}}},
    };
}

}  // namespace seam
}  // namespace test
}  // namespace zorvel
