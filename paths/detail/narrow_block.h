#pragma once

#include <cstddef>
#include <cstring>

#include <emmintrin.h>

namespace zorvel {
namespace paths {
namespace narrow {

/// Up to 16 bytes of a text, looked at together; every processor of this kind can. A question is answered by one bit
/// for each byte, the lowest for the first. Bytes that were not loaded are 0.
class Block
{
public:
    typedef unsigned Mask;
    static const std::size_t size = 16;

    static Block load(const char* p) { return Block(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p))); }

    /// The first n bytes at p, at most 16; nothing behind them is read.
    static Block load(const char* p, std::size_t n)
    {
        if (n >= size)
            return load(p);
        char bytes[size] = {};
        std::memcpy(bytes, p, n);
        return load(bytes);
    }

    Mask equal(char byte) const { return mask(_mm_cmpeq_epi8(m_bytes, _mm_set1_epi8(byte))); }
    Mask high() const { return mask(m_bytes); }
    Mask differs(const Block& other) const { return ~mask(_mm_cmpeq_epi8(m_bytes, other.m_bytes)) & 0xFFFFu; }

    /// Where one of two bytes stands.
    Mask equal(char byte, char orThis) const
    {
        return mask(
            _mm_or_si128(_mm_cmpeq_epi8(m_bytes, _mm_set1_epi8(byte)), _mm_cmpeq_epi8(m_bytes, _mm_set1_epi8(orThis))));
    }

    Mask separators() const { return equal('\\', '/'); }

    static const char* skipBackToSeparator(const char*, const char* end) { return end; }

    /// Where two texts differ by more than the case of an ASCII letter. Behind a byte from 0x80 that counts too, as the
    /// letter may be a second byte. The first byte of a block is taken for one that stands behind none.
    Mask unlike(const Block& other) const { return differs(other) & (~otherCase(other) | high() << 1); }

    /// Writes a byte where a bit of the mask is set, among the first n bytes at p.
    static void write(char* p, std::size_t n, Mask where, char byte)
    {
        for (std::size_t i = 0; i < n && where != 0; ++i, where >>= 1) {
            if ((where & 1) != 0)
                p[i] = byte;
        }
    }

    static std::size_t first(Mask bits) { return static_cast<std::size_t>(__builtin_ctz(bits)); }
    static std::size_t last(Mask bits) { return 31 - static_cast<std::size_t>(__builtin_clz(bits)); }
    static Mask lanes(std::size_t n) { return n >= size ? 0xFFFFu : (1u << n) - 1; }

private:
    explicit Block(__m128i bytes) : m_bytes(bytes) {}

    /// Where both have the same ASCII letter, one of them as a capital.
    Mask otherCase(const Block& other) const
    {
        const __m128i caseBit = _mm_set1_epi8(0x20);
        const __m128i apart = _mm_cmpeq_epi8(_mm_xor_si128(m_bytes, other.m_bytes), caseBit);
        // a to z become the least values that a signed byte can have.
        const __m128i lowest = _mm_set1_epi8(static_cast<char>('a' + 128));
        const __m128i letter = _mm_sub_epi8(_mm_or_si128(m_bytes, caseBit), lowest);
        return mask(_mm_and_si128(apart, _mm_cmplt_epi8(letter, _mm_set1_epi8(-128 + 26))));
    }

    static Mask mask(__m128i bytes) { return static_cast<Mask>(_mm_movemask_epi8(bytes)); }

    __m128i m_bytes;
};

}  // namespace narrow
}  // namespace paths
}  // namespace zorvel
