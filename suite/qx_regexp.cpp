#include "suite/qx.h"

#include <boost/regex.hpp>

#include <exception>
#include <locale>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>

namespace {

/// Bound to the classic locale below: what is matched must not depend on what
/// the application sets.
typedef boost::basic_regex<char, boost::cpp_regex_traits<char>> Pattern;
typedef std::shared_ptr<const Pattern> PatternPtr;

/// Compiled patterns by their text. The suite uses a handful; should somebody
/// make patterns up as he goes, the table starts again when it is full.
class PatternTable
{
public:
    PatternPtr get(const char* text)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const auto found = m_patterns.find(text);
        if (found != m_patterns.end())
            return found->second;
        PatternPtr pattern = compile(text);
        if (m_patterns.size() >= capacity)
            m_patterns.clear();
        m_patterns.emplace(text, pattern);
        return pattern;
    }

private:
    static const std::size_t capacity = 32;

    static PatternPtr compile(const char* text)
    {
        const auto pattern = std::make_shared<Pattern>();
        pattern->imbue(std::locale::classic());
        pattern->assign(text, boost::regex_constants::perl | boost::regex_constants::icase);
        return pattern;
    }

    std::mutex m_mutex;
    std::unordered_map<std::string, PatternPtr> m_patterns;
};

/// Never destroyed: other objects' destructors may still ask.
PatternTable& patterns()
{
    static PatternTable* const table = new PatternTable;
    return *table;
}

}  // namespace

bool qxRegexpi(const char* text, const char* pattern)
{
    if (text == nullptr || pattern == nullptr)
        return false;
    try {
        return boost::regex_search(text, *patterns().get(pattern), boost::match_single_line);
    } catch (const std::exception&) {
        return false;
    }
}
