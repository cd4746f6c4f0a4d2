#pragma once

#include "platform/path_rules.h"

#include <zorvel/modules.h>

#include <string>
#include <vector>

namespace zorvel {
namespace test {

/// A full path on every system, from one that begins with a separator.
inline std::string full(const std::string& path)
{
    return (platform::isAbsolutePath("C:\\") ? "C:" : "") + path;
}

/// A checker with the buffer that it writes to, one byte more than is promised
/// to it, and with its protected question.
class Checker
{
public:
    explicit Checker(const char* name, const std::vector<const char*>& symbols = {})
        : m_symbols(symbols),
          m_buffer(2562 + 1, guard),
          m_checker(&m_buffer[0], name, m_symbols.empty() ? nullptr : m_symbols.data(), m_symbols.size())
    {
    }
    Checker(const Checker&) = delete;
    Checker& operator=(const Checker&) = delete;

    bool operator()(const std::string& path) { return m_checker(path.c_str()); }

    zvLoadedModuleNameChecker& checker() { return m_checker; }
    char* buffer() { return &m_buffer[0]; }

    /// The path chosen; "none" when there is none.
    std::string chosen() const
    {
        const char* const path = m_checker.getModuleFullPath();
        return path ? path : "none";
    }
    bool resultIsBuffer() const { return m_checker.getModuleFullPath() == m_buffer.data(); }
    bool bufferIsUntouched() const { return m_buffer == std::string(2562 + 1, guard); }
    bool keptInside() const { return m_buffer.back() == guard; }

private:
    static const char guard = '#';

    std::vector<const char*> m_symbols;
    std::string m_buffer;
    zvLoadedModuleNameChecker m_checker;
};

}  // namespace test
}  // namespace zorvel
