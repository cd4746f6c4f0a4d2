#pragma once

#include "suite/qx_messages.h"

#include <cstdarg>
#include <string>
#include <vector>

namespace zorvel {
namespace test {

/// A facility of a test's own, with its messages numbered from 1 and removed
/// when the owner goes.
class MessageFacility
{
public:
    MessageFacility(std::uint32_t facility, const std::vector<const char*>& english) : m_english(english)
    {
        for (std::uint32_t index = 1; index <= english.size(); ++index)
            m_identifiers.push_back(facility << 16 | index);
        m_identifiers.push_back(0xFFFFFFFF);
        m_names.assign(english.size(), "NAME");
        m_table = {static_cast<std::uint32_t>(english.size()),
                   facility,
                   m_identifiers.data(),
                   m_names.data(),
                   m_english.data(),
                   ""};
        qx_mem_add_primary_message_table(qxGetMemoryContext(), &m_table);
    }
    ~MessageFacility() { qx_mem_remove_primary_message_table(qxGetMemoryContext(), &m_table); }
    MessageFacility(const MessageFacility&) = delete;
    MessageFacility& operator=(const MessageFacility&) = delete;

    const qx_message_table& table() const { return m_table; }
    std::uint32_t identifier(std::size_t number) const { return m_identifiers.at(number - 1); }

private:
    std::vector<const char*> m_english;
    std::vector<const char*> m_names;
    std::vector<std::uint32_t> m_identifiers;
    qx_message_table m_table;
};

/// A translation of some messages; it must live as long as it is registered.
class Translation
{
public:
    Translation(const char* language, const std::vector<std::uint32_t>& identifiers,
                const std::vector<const char*>& texts)
        : m_identifiers(identifiers), m_texts(texts)
    {
        m_identifiers.push_back(0xFFFFFFFF);
        m_table = {m_identifiers[0] >> 16, 0xFFFFFFFF, m_identifiers.data(), m_texts.data()};
        qx_mem_add_language(qxGetMemoryContext(), language, &m_table);
    }
    Translation(const Translation&) = delete;
    Translation& operator=(const Translation&) = delete;

private:
    std::vector<std::uint32_t> m_identifiers;
    std::vector<const char*> m_texts;
    qx_language_table m_table;
};

inline int formatInto(char* buffer, std::size_t size, std::uint32_t identifier, ...)
{
    std::va_list arguments;
    va_start(arguments, identifier);
    const int result = qx_vsprintm(qxGetMessageContext(), buffer, size, identifier, arguments);
    va_end(arguments);
    return result;
}

/// The text of a message, or "failed".
template <class... Arguments>
std::string message(std::uint32_t identifier, Arguments... arguments)
{
    char buffer[500] = "not written";
    const int result = formatInto(buffer, sizeof buffer, identifier, arguments...);
    if (result < 1)
        return "failed";
    return std::string(buffer).size() == static_cast<std::size_t>(result) ? buffer : "wrong result";
}

}  // namespace test
}  // namespace zorvel
