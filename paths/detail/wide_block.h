#pragma once

#include <cstddef>

#include <immintrin.h>

namespace zorvel {
namespace paths {
namespace wide {

/// As narrow::Block, with 64 bytes, for processors with AVX-512 (BW) and GFNI. A load of fewer bytes reads those and
/// nothing else.
class Block
{
public:
    typedef unsigned long long Mask;
    static const std::size_t size = 64;

    static Block load(const char* p) { return Block(_mm512_loadu_si512(p)); }

    /// The first n bytes at p, at most 64.
    static Block load(const char* p, std::size_t n) { return Block(_mm512_maskz_loadu_epi8(lanes(n), p)); }

    Mask equal(char byte) const { return _mm512_cmpeq_epi8_mask(m_bytes, _mm512_set1_epi8(byte)); }
    Mask high() const { return _mm512_movepi8_mask(m_bytes); }
    Mask differs(const Block& other) const { return _mm512_cmpneq_epi8_mask(m_bytes, other.m_bytes); }

    Mask equal(char byte, char orThis) const { return equal(byte) | equal(orThis); }

    Mask separators() const
    {
        const __m512i zeros = zeroForSeparators();
        return _mm512_testn_epi8_mask(zeros, zeros);
    }

    /// Where a separator may be the last one: `end`, or an earlier place with nothing but other bytes behind it.
    static const char* skipBackToSeparator(const char* first, const char* end)
    {
        while (end - first >= 4 * static_cast<std::ptrdiff_t>(size)) {
            const char* const p = end - 4 * size;
            const __m512i front = _mm512_min_epu8(load(p).zeroForSeparators(), load(p + size).zeroForSeparators());
            const __m512i back =
                _mm512_min_epu8(load(p + 2 * size).zeroForSeparators(), load(p + 3 * size).zeroForSeparators());
            const __m512i zeros = _mm512_min_epu8(front, back);
            if (_mm512_testn_epi8_mask(zeros, zeros) != 0)
                break;
            end = p;
        }
        return end;
    }

    /// Where two texts differ by more than the case of an ASCII letter, as narrow::Block has it.
    Mask unlike(const Block& other) const
    {
        const __m512i caseBit = _mm512_set1_epi8('a' ^ 'A');
        const __m512i letter = _mm512_add_epi8(_mm512_or_si512(m_bytes, caseBit), _mm512_set1_epi8(-'a'));
        const Mask letters = _kandn_mask64(behindHigh(), _mm512_cmplt_epu8_mask(letter, _mm512_set1_epi8(26)));
        const __m512i mayDiffer = _mm512_maskz_mov_epi8(letters, caseBit);
        const int differsAndMayNot = 0x06;
        const __m512i unlike = _mm512_ternarylogic_epi64(mayDiffer, m_bytes, other.m_bytes, differsAndMayNot);
        return _mm512_test_epi8_mask(unlike, unlike);
    }

    static void write(char* p, std::size_t, Mask where, char byte)
    {
        _mm512_mask_storeu_epi8(p, where, _mm512_set1_epi8(byte));
    }

    static std::size_t first(Mask bits) { return static_cast<std::size_t>(__builtin_ctzll(bits)); }
    static std::size_t last(Mask bits) { return 63 - static_cast<std::size_t>(__builtin_clzll(bits)); }

    /// The first n bytes, at most 64.
    static Mask lanes(std::size_t n) { return _bzhi_u64(~Mask(0), static_cast<unsigned>(n)); }

private:
    explicit Block(__m512i bytes) : m_bytes(bytes) {}

    /// The mask moved on by one: twice it.
    Mask behindHigh() const { return _kadd_mask64(high(), high()); }

    /// 0 for the two separators and for nothing else. They differ in the bits 0x73, of which the lowest tells which
    /// of the two it is: where it is set the others are turned round, which makes one byte of both. That is linear in
    /// the bits of the byte and so one instruction: row by row from the highest bit, which bits of the byte make a
    /// bit of the result.
    __m512i zeroForSeparators() const
    {
        const long long rows = 0x0003040811214180;
        return _mm512_gf2p8affine_epi64_epi8(m_bytes, _mm512_set1_epi64(rows), '\\');
    }

    __m512i m_bytes;
};

}  // namespace wide
}  // namespace paths
}  // namespace zorvel
