#include "tests/unit/dirlock/short_names.h"

namespace zorvel {
namespace test {

namespace {

const std::string levelPrefix = "/.deploy_lock.";
const std::string readerPrefix = "\\.deploy_read_lock.";
const std::string writerName = "\\.deploy_write_lock";
/// No number of this process reaches it.
const unsigned long firstOther = 3000000000ul;

/// What follows a beginning; nothing when the text does not begin so.
bool follows(const std::string& text, const std::string& beginning, std::string& rest)
{
    if (text.compare(0, beginning.size(), beginning) != 0)
        return false;
    rest = text.substr(beginning.size());
    return true;
}

}  // namespace

std::string ShortNames::level(int number) const
{
    return m_directory + levelPrefix + std::to_string(number);
}

std::string ShortNames::writer() const
{
    return m_directory + writerName;
}

std::string ShortNames::reader(unsigned int other) const
{
    return m_directory + readerPrefix + std::to_string(firstOther + other);
}

std::string ShortNames::operator()(const std::string& path)
{
    std::string rest;
    if (follows(path, m_directory + levelPrefix, rest))
        return '#' + rest;
    if (path == writer())
        return "W";
    if (follows(path, m_directory + readerPrefix, rest))
        return shortReader(rest);
    if (follows(path, m_directory + "\\.", rest) && rest.find_first_not_of("0123456789") == std::string::npos)
        return "CAL";
    return path;
}

std::string ShortNames::shortReader(const std::string& number)
{
    if (number == "*")
        return "R*";
    if (number.size() == 10 && number[0] == '3')
        return 'R' + std::to_string(std::stoul(number) - firstOther);
    const std::size_t next = m_own.size() + 1;
    return "own" + std::to_string(m_own.insert(std::make_pair(number, next)).first->second);
}

}  // namespace test
}  // namespace zorvel
