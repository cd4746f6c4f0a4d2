#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <stdexcept>

namespace zorvel {
namespace platform {

/// A name of at most 15 characters, kept so that another one is compared with it in a few instructions and without a
/// call.
class ShortName
{
public:
    constexpr ShortName(const char* name) : m_text(name), m_front(), m_back()
    {
        Word* word = &m_front;
        for (std::size_t i = 0; i < 2 * wordSize; ++i) {
            if (i == wordSize)
                word = &m_back;
            const unsigned shift = static_cast<unsigned>(i % wordSize * 8);
            word->bytes |= static_cast<std::uint64_t>(static_cast<unsigned char>(name[i])) << shift;
            word->counts |= std::uint64_t(0xFF) << shift;
            if (name[i] == '\0')
                return;
        }
        throw std::length_error(name);
    }

    /// Whether a terminated text is this name. What lies behind it is read too where that can do no harm: memory comes
    /// in pages.
    bool is(const char* text) const
    {
        const std::uintptr_t pageSize = 4096;
        if (reinterpret_cast<std::uintptr_t>(text) % pageSize > pageSize - 2 * wordSize)
            return std::strcmp(text, m_text) == 0;
        return (m_front.differsFrom(text) | m_back.differsFrom(text + wordSize)) == 0;
    }

private:
    static const std::size_t wordSize = sizeof(std::uint64_t);

    /// Eight bytes, the first one lowest, and which of them count.
    struct Word
    {
        std::uint64_t bytes;
        std::uint64_t counts;

        std::uint64_t differsFrom(const char* text) const
        {
            std::uint64_t there = 0;
            std::memcpy(&there, text, sizeof there);
            return (there ^ bytes) & counts;
        }
    };

    const char* m_text;
    Word m_front;
    Word m_back;
};

}  // namespace platform
}  // namespace zorvel
