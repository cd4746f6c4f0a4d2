#pragma once

#include "paths/byte_scans.h"
#include "paths/lead_bytes.h"
#include "paths/rare_bytes.h"

#include <cstddef>

/// The scans, written once for blocks of every size. Each source file that includes this is compiled for the
/// processors that have its blocks: what it defines must depend on the block's type, so that nothing of it serves
/// anybody else.
namespace zorvel {
namespace paths {

template <class Block>
struct ScanSteps
{
    typedef typename Block::Mask Mask;

    static std::size_t atMostBlock(std::size_t left) { return left < Block::size ? left : Block::size; }

    /// The bytes of the block at index i that stand behind a byte from 0x80: only they can be second bytes.
    static Mask behindHigh(const Block& block, const char* text, std::size_t i)
    {
        return static_cast<Mask>(block.high() << 1) | static_cast<Mask>(i > 0 && (text[i - 1] & 0x80) != 0);
    }

    /// Bytes of the block at an index; none where there are none in any block.
    struct Found
    {
        Mask bytes;
        std::size_t index;
    };

    /// What Unlike finds first in the blocks of two texts, which begin a step apart; the last one ends where the texts
    /// do. Most texts have one or two of them.
    template <Mask (Block::*Unlike)(const Block&) const>
    static Found firstUnlike(const char* left, const char* right, std::size_t size, std::size_t from, std::size_t step)
    {
        const std::size_t n = size - from;
        if (n < Block::size)
            return {(Block::load(left + from, n).*Unlike)(Block::load(right + from, n)), from};
        const auto bytesAt = [&](std::size_t i) { return (Block::load(left + i).*Unlike)(Block::load(right + i)); };
        const std::size_t last = size - Block::size;
        Found found = {bytesAt(from), from};
        if (found.bytes != 0 || from == last)
            return found;
        for (found.index += step; __builtin_expect(found.index < last, false); found.index += step) {
            found.bytes = bytesAt(found.index);
            if (found.bytes != 0)
                return found;
        }
        return {bytesAt(last), last};
    }

    /// Whether two texts are the same that are equal before these bytes, which differ. What is looked at again begins
    /// with a byte that is the same in both.
    static bool sameOrRest(const Found& differing, const char* left, const char* right, std::size_t size)
    {
        if (differing.bytes == 0)
            return true;
        const std::size_t at = differing.index + Block::first(differing.bytes);
        if (areNeverAlike(static_cast<unsigned char>(left[at] ^ right[at])))
            return sameInSpiteOf(left, right, size);
        return Scans<Block>::sameRest(left, right, size, at == 0 ? 0 : at - 1);
    }

    /// Whether two texts are the same that are alike but for these bytes and what is behind them.
    static bool sameOrFromByte(const Found& unlike, const char* left, const char* right, std::size_t size)
    {
        return unlike.bytes == 0 ? sameButForCase(left, right, size)
                                 : sameFromByte(left, right, size, unlike.index + Block::first(unlike.bytes));
    }

    /// Takes away the bits that stand for second bytes.
    static Mask withoutSecondBytes(Mask found, const Block& block, const char* text, std::size_t i, Leads leads)
    {
        if (leads == nullptr)
            return found;
        for (Mask doubtful = found & behindHigh(block, text, i); doubtful != 0; doubtful &= doubtful - 1) {
            if (isSecondByte(text, text + i + Block::first(doubtful), *leads))
                found &= ~(doubtful & (~doubtful + 1));
        }
        return found;
    }
};

/// From the end, and most often no further than to the first byte that looks like one.
template <class Block>
const char* Scans<Block>::lastSeparator(const char* first, const char* end)
{
    while (first != end) {
        end = Block::skipBackToSeparator(first, end);
        const std::size_t n = ScanSteps<Block>::atMostBlock(static_cast<std::size_t>(end - first));
        end -= n;
        const typename Block::Mask found = Block::load(end, n).separators();
        if (found != 0) {
            const char* const last = end + Block::last(found);
            return last == first || (last[-1] & 0x80) == 0 ? last : lastSeparatorFrom(first, last);
        }
    }
    return nullptr;
}

template <class Block>
bool Scans<Block>::holdsHighByte(const char* text, std::size_t size)
{
    for (std::size_t i = 0; i < size; i += Block::size) {
        if (Block::load(text + i, ScanSteps<Block>::atMostBlock(size - i)).high() != 0)
            return true;
    }
    return false;
}

/// Most texts that are compared are equal to the last byte, or differ early.
template <class Block>
bool Scans<Block>::sameText(const char* left, const char* right, std::size_t size)
{
    typedef ScanSteps<Block> Steps;
    const auto found = Steps::template firstUnlike<&Block::differs>(left, right, size, 0, Block::size);
    return Steps::sameOrRest(found, left, right, size);
}

/// What differs by more than the case of a letter is looked at by itself. A block begins with the last byte of the one
/// before it, so that each byte is once seen behind another one.
template <class Block>
bool Scans<Block>::sameRest(const char* left, const char* right, std::size_t size, std::size_t from)
{
    typedef ScanSteps<Block> Steps;
    const auto found = Steps::template firstUnlike<&Block::unlike>(left, right, size, from, Block::size - 1);
    return Steps::sameOrFromByte(found, left, right, size);
}

template <class Block>
void Scans<Block>::writeBackslashes(char* text, std::size_t size, Leads leads)
{
    for (std::size_t i = 0; i < size; i += Block::size) {
        const std::size_t n = ScanSteps<Block>::atMostBlock(size - i);
        const Block block = Block::load(text + i, n);
        const typename Block::Mask slashes = block.equal('/');
        if (slashes != 0)
            Block::write(text + i, n, ScanSteps<Block>::withoutSecondBytes(slashes, block, text, i, leads), '\\');
    }
}

template <class Block>
std::size_t Scans<Block>::firstDoubled(const char* text, std::size_t size, std::size_t from, Leads leads)
{
    typename Block::Mask carried = 0;
    for (std::size_t i = from; i < size; i += Block::size) {
        const Block block = Block::load(text + i, ScanSteps<Block>::atMostBlock(size - i));
        typename Block::Mask separators = block.equal('\\');
        if (separators != 0)
            separators = ScanSteps<Block>::withoutSecondBytes(separators, block, text, i, leads);
        const typename Block::Mask doubled = separators & (separators << 1 | carried);
        if (doubled != 0)
            return i + Block::first(doubled);
        carried = separators >> (Block::size - 1);
    }
    return size;
}

template <class Block>
std::size_t Scans<Block>::firstWithEnds(const char* text, std::size_t starts, std::size_t from, const Ends& ends)
{
    for (std::size_t i = from; i < starts; i += Block::size) {
        const std::size_t n = ScanSteps<Block>::atMostBlock(starts - i);
        const typename Block::Mask found = Block::load(text + i, n).equal(ends.first[0], ends.first[1]) &
                                           Block::load(text + i + ends.distance, n).equal(ends.last[0], ends.last[1]) &
                                           Block::lanes(n);
        if (found != 0)
            return i + Block::first(found);
    }
    return starts;
}

}  // namespace paths
}  // namespace zorvel
