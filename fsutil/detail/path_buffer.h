#pragma once

#include <cstddef>

namespace zorvel {
namespace fsutil {

/// The longest path that the library works on, with its terminator.
const std::size_t pathBufferSize = 2562;

/// A path that is extended by one name and cut back again, in place.
class PathBuffer
{
public:
    /// Empty when the text does not fit.
    explicit PathBuffer(const char* text);

    PathBuffer(const PathBuffer&) = delete;
    PathBuffer& operator=(const PathBuffer&) = delete;

    /// Appends a name, with a separator where one is missing. False, and
    /// nothing changed, when it does not fit.
    bool append(const char* name);

    /// Puts another name in the place of all behind an index. False, and nothing
    /// changed, when it does not fit. The name has no separators.
    bool replaceFrom(std::size_t index, const char* name, std::size_t length);

    std::size_t length() const { return m_length; }

    /// Takes off what was appended since length() was asked.
    void cut(std::size_t length);

    const char* c_str() const { return m_text; }

private:
    char m_text[pathBufferSize];
    std::size_t m_length;
};

}  // namespace fsutil
}  // namespace zorvel
