#include "bench/paths/scene.h"

#include <zorvel/paths.h>

#include <boost/algorithm/string/find.hpp>

#include <string.h>

/// Where a name stands in a path: without regard to case, but for std::string::find, which looks for the bytes and so
/// does less. The names are written as they stand there, so that all find the same.
namespace zorvel {
namespace bench {
namespace {

/// Something in the last third of each text.
Texts namesIn(const Texts& texts)
{
    Texts names;
    for (const std::string& text : texts)
        names.push_back(text.substr(text.find_last_of('/') + 1, 12));
    return names;
}

/// Begins like names that are there, and stands nowhere.
Texts namesNowhere(const Texts& texts)
{
    return Texts(texts.size(), "deploy.txt");
}

struct Question
{
    const char* row;
    Texts (*names)(const Texts& texts);
};

const Question questions[] = {{"path-find", &namesIn}, {"path-find-none", &namesNowhere}};

/// Measures find(text, name) with each text as an object of a type.
template <class Object, class Find>
void measure(benchmark::State& state, const Texts& texts, const Question& question, Find find)
{
    const Texts names = question.names(texts);
    const std::vector<Object> in(texts.begin(), texts.end());
    const std::vector<Object> wanted(names.begin(), names.end());
    for (std::size_t i = 0; i < texts.size(); ++i) {
        if (!require(state, find(in[i], wanted[i]) == texts[i].find(names[i])))
            return;
    }
    overTexts(state, texts.size(), [&](std::size_t i) { return find(in[i], wanted[i]); });
}

template <class Object, class Find>
void contestant(const char* name, const Question& question, Find find)
{
    inBothCodePages(question.row, name, [&question, find](benchmark::State& state, const Texts& texts) {
        measure<Object>(state, texts, question, find);
    });
}

std::size_t withStrcasestr(const std::string& text, const std::string& name)
{
    const char* const found = strcasestr(text.c_str(), name.c_str());
    return found ? static_cast<std::size_t>(found - text.c_str()) : std::string::npos;
}

std::size_t withBoost(const std::string& text, const std::string& name)
{
    const auto found = boost::algorithm::ifind_first(text, name);
    return found ? static_cast<std::size_t>(found.begin() - text.begin()) : std::string::npos;
}

}  // namespace

void registerFind()
{
    for (const Question& question : questions) {
        contestant<zvPathString>("zorvel", question,
                                 [](const zvPathString& text, const zvPathString& name) { return text.find(name); });
        contestant<std::string>("strcasestr", question, &withStrcasestr);
        contestant<std::string>("boost-ifind", question, &withBoost);
        contestant<std::string>("std-string-find", question,
                                [](const std::string& text, const std::string& name) { return text.find(name); });
    }
}

}  // namespace bench
}  // namespace zorvel
