#pragma once

#include <zorvel/paths.h>

#include <zorvel/detail/character_key.h>

#include <cstddef>
#include <string>

/// How the pieces of a joined path are cut and put together.
namespace zorvel {
namespace detail {

/// A range of bytes of somebody else's text.
struct Piece
{
    const char* text;
    std::size_t length;

    void dropFirst()
    {
        ++text;
        --length;
    }
};

/// The piece that begins a path: a leading run of separators is cut to two (a
/// network prefix), a lone pair to one.
inline Piece trimLeadingPiece(Piece piece)
{
    if (piece.length >= 3 && isSeparator(piece.text[0])) {
        while (piece.length > 2 && isSeparator(piece.text[1]) && isSeparator(piece.text[2]))
            piece.dropFirst();
    } else if (piece.length == 2 && isSeparator(piece.text[0]) && isSeparator(piece.text[1])) {
        piece.dropFirst();
    }
    return piece;
}

/// A piece further on: no leading separators.
inline Piece trimFollowingPiece(Piece piece)
{
    while (piece.length > 0 && isSeparator(piece.text[0]))
        piece.dropFirst();
    return piece;
}

/// At most one separator at the end; a piece of separators alone keeps one.
inline Piece trimPieceEnd(Piece piece)
{
    if (piece.length == 0)
        return piece;
    const char* const last = zvFindLastNotSep(piece.text, piece.text + piece.length - 1);
    const std::size_t name = last == nullptr ? 0 : static_cast<std::size_t>(last - piece.text) + 1;
    if (piece.length > name + 1)
        piece.length = name + 1;
    return piece;
}

inline bool endsInSeparator(const std::string& text)
{
    return !text.empty() && zvIsPathSepByPtr(&text.back(), text.data());
}

/// Appends a piece to a path with one separator between them.
inline void appendPiece(std::string& path, Piece piece)
{
    piece = trimPieceEnd(path.empty() ? trimLeadingPiece(piece) : trimFollowingPiece(piece));
    if (!path.empty() && !endsInSeparator(path))
        path += '\\';
    path.append(piece.text, piece.length);
}

/// The length of the directory part: up to the last separator, with it when it
/// is all that is left of a root or of a network prefix.
inline std::size_t directoryLength(const std::string& path)
{
    if (path.empty())
        return 0;
    const char* const separator = zvFindLastSep(path.data(), &path.back());
    if (separator == nullptr)
        return 0;
    const std::size_t length = static_cast<std::size_t>(separator - path.data());
    const bool onlySeparators = path.find_first_not_of("\\/") >= length;
    const std::string root = path.substr(0, length + 1);
    // A NUL is a byte like others in a path string, and ends what zvIsRootDir looks at.
    const bool keep = onlySeparators || (root.find('\0') == std::string::npos && zvIsRootDir(root.c_str()));
    return keep ? length + 1 : length;
}

}  // namespace detail
}  // namespace zorvel
