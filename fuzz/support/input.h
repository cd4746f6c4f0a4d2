#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>

namespace zorvel {
namespace fuzz {

/// Takes an input apart: single bytes that choose, and texts that end at a '|'
/// or at the end. Choices are made so that digits choose in order ('0' is the
/// first), and seeds can be written by hand. An input that is used up gives
/// zeros and empty texts.
class Input
{
public:
    Input(const std::uint8_t* data, std::size_t size) : m_next(data), m_end(data + size) {}

    unsigned char byte() { return m_next == m_end ? 0 : *m_next++; }

    /// A number below count; '0' gives 0.
    std::size_t choice(std::size_t count) { return (byte() + 256u - '0') % 256u % count; }

    /// The bytes before the next '|', which is taken too.
    std::string text()
    {
        std::string result;
        while (m_next != m_end && *m_next != '|')
            result += static_cast<char>(*m_next++);
        byte();
        return result;
    }

    std::string rest()
    {
        std::string result(m_next, m_end);
        m_next = m_end;
        return result;
    }

private:
    const std::uint8_t* m_next;
    const std::uint8_t* m_end;
};

/// A text with a run of one byte put into it, so that a short input reaches the
/// limits of buffers: one of the sizes, the byte, and the place are chosen by
/// the input. Long texts are slow, and each finds something that looks new: only
/// one of at most twelve bytes is stretched, which few mutations leave so short.
inline std::string stretchedText(Input& input, std::initializer_list<std::size_t> sizes)
{
    const std::size_t chosen = input.choice(64);
    const std::size_t count = chosen > 0 && chosen <= sizes.size() ? sizes.begin()[chosen - 1] : 0;
    if (count == 0)
        return input.text();
    const char filler = static_cast<char>(input.byte());
    const std::size_t place = input.choice(256);
    std::string text = input.text();
    return text.size() > 12 ? text : text.insert(place % (text.size() + 1), count, filler);
}

}  // namespace fuzz
}  // namespace zorvel
