#pragma once

/// @file
/// Double-byte-safe strings, separators, canonical paths, path strings. What is
/// here: @ref paths.

#include <zorvel/export.h>
#include <zorvel/suite.h>

#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>

#include <cstddef>
#include <cstring>
#include <initializer_list>
#include <string>

/// @defgroup paths Paths
/// @brief Texts compared by character, separators, canonical forms, and strings that keep a path in form.
///
/// A path is a byte string in the process's multibyte code page (Linux: the
/// codeset of the locale). In double-byte code pages the second byte of a
/// character may have the value of a separator or of a letter; what is here
/// knows the difference, except where a function says that it works byte by
/// byte. `\` and `/` both separate, on both systems; what the library writes is
/// `\`.
///
/// Nothing here looks at what is on disk; only the full form of a relative path
/// depends on the current directory. What is done to files is in @ref files.
///
/// @include full_path.cpp
///
/// @{

// ---------------------------------------------------------------------------
// Lead bytes
// ---------------------------------------------------------------------------

/// @defgroup leadbytes Lead bytes
/// @brief The test that tells which bytes begin a double-byte character, and how to replace it.
///
/// A test of one's own:
///
/// @dontinclude same_name.cpp
/// @skip bool isLeadOf932
/// @until }
///
/// Installed at start-up:
///
/// @skip For the whole process
/// @until zvSetIsMultiByteLead
///
/// @{

/// A test that answers whether a byte begins a double-byte character.
typedef bool (*zvMultiByteLeadTest)(unsigned char byte);

/// Asks the installed lead-byte test and returns its answer unchanged; false
/// while null is installed. At load the test is qxIsMultiByteLead(). Any thread
/// may ask, as long as nobody installs.
ZORVEL_API bool zvIsMultiByteLead(unsigned char byte);

/// Installs another lead-byte test for the whole process and returns the one
/// installed before. Not synchronised: call it once at start-up, before any
/// thread uses paths. Strings already built are not looked at again.
ZORVEL_API zvMultiByteLeadTest zvSetIsMultiByteLead(zvMultiByteLeadTest test);

/// @}

// ---------------------------------------------------------------------------
// Multibyte-safe strings
// ---------------------------------------------------------------------------

/// @defgroup texts Multibyte-safe strings
/// @brief Texts that are equal when their characters are, whatever their case and separators.
///
/// @include same_name.cpp
///
/// @{

/// A byte string whose == and != compare characters instead of bytes:
/// double-byte characters whole, letters without case, `/` equal to `\`.
/// Trailing separators count. Embedded NUL bytes are ordinary bytes. Which
/// letters differ by case only is a matter of the C locale; bytes from 0x80 on
/// have no case. Order, search and all else are those of std::string, by byte.
///
/// One thread at a time for changes; comparisons may run concurrently. Its
/// constructors are those of std::string: a null `const char*` is not for them.
class ZORVEL_API zvMBCSSafeString : public std::string
{
public:
    using std::string::string;

    /// The empty text.
    zvMBCSSafeString() = default;

    /// A copy of a plain string, with all its bytes.
    zvMBCSSafeString(const std::string& text) : std::string(text) {}
};

/// @name Comparison by character
/// @{

/// Compares by character. A `const char*` operand is taken up to its NUL; a null
/// one equals nothing. Never throws.
ZORVEL_API bool operator==(const zvMBCSSafeString& left, const char* right);
ZORVEL_API bool operator!=(const zvMBCSSafeString& left, const char* right);
ZORVEL_API bool operator==(const char* left, const zvMBCSSafeString& right);
ZORVEL_API bool operator!=(const char* left, const zvMBCSSafeString& right);
ZORVEL_API bool operator==(const zvMBCSSafeString& left, const zvMBCSSafeString& right);
ZORVEL_API bool operator!=(const zvMBCSSafeString& left, const zvMBCSSafeString& right);
/// @}

/// @name Comparison with a plain string
/// @{

/// A plain string is compared by character over its whole length, as a copy;
/// exhausted memory leaves as std::bad_alloc. Without these the comparison
/// would be ambiguous with the standard one, which compares bytes.
inline bool operator==(const zvMBCSSafeString& left, const std::string& right)
{
    return left == zvMBCSSafeString(right);
}
inline bool operator!=(const zvMBCSSafeString& left, const std::string& right)
{
    return !(left == right);
}
inline bool operator==(const std::string& left, const zvMBCSSafeString& right)
{
    return right == left;
}
inline bool operator!=(const std::string& left, const zvMBCSSafeString& right)
{
    return !(right == left);
}
/// @}

/// @}

// ---------------------------------------------------------------------------
// Separators and path editing
// ---------------------------------------------------------------------------

/// @defgroup editing Separators and path editing
/// @brief Where a path is separated, where it ends, and its canonical form, in buffers of the caller.
///
/// "String" is a NUL-terminated byte string. None of these functions allocates,
/// throws or keeps a pointer; all may be called from any thread as long as the
/// buffers are not shared. Buffers are the caller's; a result points into what
/// the caller gave, or is a text of the library that is never freed. Lengths and
/// sizes are in bytes.
///
/// @dontinclude full_path.cpp
/// @skip The result is
/// @until zvCanonicalizePath
///
/// @{

/// Whether a character is `\` or `/`. It is looked at alone: the second byte of
/// a double-byte character may be taken for a separator (see zvIsPathSepByPtr()).
ZORVEL_API bool zvIsPathSep(int character);

/// Whether the byte at p, inside the string that begins at start, is a
/// separator and not the second byte of a double-byte character. When start
/// does not lie before p only the byte itself is looked at. False for a null p.
ZORVEL_API bool zvIsPathSepByPtr(const char* p, const char* start);

/// The last separator between first and last (both inclusive), or null: when
/// there is none, when first lies after last, or when either is null.
///
///     "C:\a\b" => the second '\'
ZORVEL_API const char* zvFindLastSep(const char* first, const char* last);

/// The last byte of the last character between first and last (both
/// inclusive) that is not a separator, or null as for zvFindLastSep().
///
///     "dir\\" => the 'r'
ZORVEL_API const char* zvFindLastNotSep(const char* first, const char* last);

/// Ends a string with `\`. The buffer needs room for one more byte; nothing is
/// written when the string ends in `\` already. False only for null.
///
///     "" => "\"   "C:\dir" => "C:\dir\"   "C:\dir/" => "C:\dir\"
///
/// The last byte is looked at alone: a name that ends in a double-byte
/// character whose second byte is 0x5C gets no separator.
ZORVEL_API bool zvAddPathSep(char* s);

/// Inserts `\` before the byte at index unless the byte before it is a
/// separator; at index 0 always. The buffer needs room for one more byte.
/// Returns 1 when it inserted, 0 when it did not (null, or an index outside
/// the string).
///
///     ("abc", 3) => "abc\", 1   ("ab\c", 3) => 0   ("abc", 0) => "\abc", 1
ZORVEL_API int zvAddPathSepAt(char* s, int index);

/// Overwrites every separator byte with c, byte by byte: not aware of
/// double-byte characters. Null and empty strings are left alone.
ZORVEL_API void zvReplacePathSeps(char* s, char c);

/// Overwrites every separator byte with `\`, byte by byte: not aware of
/// double-byte characters. Null is left alone.
ZORVEL_API void zvWashPathSep(char* s);

/// Removes the components that only lead through a path, as the system's path
/// service does, and returns out. These are `.` and `..`, the latter with the
/// name before it. out has at least 260 bytes (`MAX_PATH`). An input that is null
/// or does not fit leaves out empty. Only `\` separates here. Null out: null.
/// The disk is not looked at.
ZORVEL_API char* zvCollapsePath(char* out, const char* in);

/// The canonical absolute form of a path.
///
/// `in` is `inLen` characters, not necessarily terminated when inLen is below 2562;
/// a longer input must carry its own NUL, which may lie behind them. White
/// space at both ends does not count as a name: nothing else left means the
/// current directory. The byte `in[inLen]` is read in one case of a shorter
/// input: it begins with white space, holds no NUL, and no absolute form could
/// be made. It must be readable then; it tells whether the input is terminated.
///
/// Returns a pointer that need not be `out`: always use the returned pointer.
/// - An absolute path is put into `out` with `.` and `..` removed (empty when it
///   does not fit `outSize` or 260 bytes).
/// - A relative path is made absolute in `out`.
/// - When the system cannot do that, or `out` is null or `outSize` is 0, the
///   input itself is returned: from its first byte that is not white space when
///   it is terminated, else as it is; nothing was written to `out` then.
/// - Null for a null input.
///
/// `out` may be `in`. Whether anything is at the path is not looked at.
///
/// Absolute is, on Windows, a drive with a separator or two leading
/// separators; on Linux one leading separator (a drive letter is an ordinary
/// name there).
ZORVEL_API const char* zvCanonicalizePath(char* out, std::size_t outSize, const char* in, std::size_t inLen);

/// Whether the whole string is a root: one separator, or letters (or none), a
/// colon and one separator. `C:`, `C:\x`, `//server`, the empty string and null
/// are not. The same on both systems.
ZORVEL_API bool zvIsRootDir(const char* s);

/// @}

// ---------------------------------------------------------------------------
// Path strings
// ---------------------------------------------------------------------------

/// @defgroup pathstrings Path strings
/// @brief Strings that keep a path in form, and the form itself.
///
/// @dontinclude full_path.cpp
/// @skip becomes
/// @until directoryPart
///
/// @{

/// Puts a text into the form that a path string keeps. A normaliser may be
/// shared by any number of path strings; one with state must then be safe for
/// all their threads. An exception leaves the call that asked for the form.
template <class P>
class zvStringNormalizer
{
public:
    /// With the last path string that it is installed in.
    virtual ~zvStringNormalizer() {}

    /// Assigns the range to the target and normalises it.
    virtual void assignNormalized(P& target, const char* text, std::size_t length) = 0;

    /// Normalises the target where it stands.
    virtual void normalize(P& target) = 0;
};

/// The standard normaliser: `/` becomes `\`, doubled separators become one (a
/// leading pair stays), white space (backspace counts as such) goes at both ends.
/// Trailing separators and letter case stay. It has no state: any thread may use one object.
template <class P>
class zvWellFormedPathNormalizer : public zvStringNormalizer<P>
{
public:
    /// Takes `length` bytes, NUL among them; text is not null.
    void assignNormalized(P& target, const char* text, std::size_t length) override;

    /// Normalises the target where it stands.
    void normalize(P& target) override;
};

/// A path that normalises every text assigned to it and searches itself by
/// character. Everything else is the standard byte string's.
///
/// A copy shares the text and the active normaliser; nothing is normalised
/// again. One thread at a time. Exhausted memory leaves as std::bad_alloc.
template <class S>
class zvPathString_ : public S
{
public:
    /// What can be installed as the normaliser.
    typedef zvStringNormalizer<zvPathString_<S>> normalizer_type;

    /// A normaliser is shared.
    typedef boost::shared_ptr<normalizer_type> normalizer_ptr;

    /// One piece of a join: a terminated text (null is an empty one) or a
    /// pointer and a length. It refers to the caller's bytes.
    struct component
    {
        /// The bytes must live until the join is done. Null is an empty piece.
        /// @{
        component(const char* t) : text(t ? t : ""), length(t ? std::strlen(t) : 0) {}
        component(const char* t, std::size_t n) : text(t ? t : ""), length(t ? n : 0) {}
        component(const std::string& t) : text(t.data()), length(t.size()) {}
        /// @}

        const char* text;    ///< never null; not necessarily terminated
        std::size_t length;  ///< in bytes
    };

    /// The empty path, with the standard normaliser.
    zvPathString_();

    /// The normalised text, with the standard normaliser. Null is the empty text.
    /// @{
    zvPathString_(const char* text);
    zvPathString_(const std::string& text);
    /// @}

    /// The text as it is, and the other's active normaliser.
    zvPathString_(const zvPathString_& other);

    /// A directory and a name below it. An empty or null name gives a copy of
    /// the directory's text; otherwise both are joined. The new string has the
    /// standard normaliser.
    zvPathString_(const zvPathString_& directory, const char* name);

    /// Takes over the other's text as it is, and its active normaliser.
    zvPathString_& operator=(const zvPathString_& other);

    /// As assign().
    /// @{
    zvPathString_& operator=(const char* text) { return assign(text); }
    zvPathString_& operator=(const std::string& text) { return assign(text.data(), text.size()); }
    /// @}

    /// Installs a normaliser; an empty pointer brings back the standard one.
    /// The present text is not normalised.
    void setNormalizer(const normalizer_ptr& normalizer);

    /// Replaces the text through the normaliser. Null is the empty text. An
    /// exception of the normaliser leaves it installed.
    /// @{
    zvPathString_& assign(const char* text, std::size_t length);
    zvPathString_& assign(const char* text) { return assign(text, text ? std::strlen(text) : 0); }
    zvPathString_& assign(const std::string& text) { return assign(text.data(), text.size()); }
    /// @}

    /// The index of the first character at or after `from` at which `text`
    /// stands, compared by character (see zvMBCSSafeString), or npos. Indices
    /// count bytes. The second byte of a double-byte character never begins a
    /// match. An empty text is found at `from` itself; `from` at or past the end,
    /// or null: npos.
    /// @{
    std::size_t find(const char* text, std::size_t from = 0) const;
    std::size_t find(const S& text, std::size_t from = 0) const;
    /// @}

    /// As find() with a text of this one character: a character of one byte, and
    /// never a half of a double-byte one.
    std::size_t find(char character, std::size_t from = 0) const { return find(S(1, character), from); }

    /// Appends the components with exactly one separator between them, then
    /// normalises the whole once. Components may lie inside this string. Returns
    /// this string.
    ///
    ///     "C:\dir\" + "\\name" => "C:\dir\name"
    zvPathString_& join(std::initializer_list<component> components);

    /// The text before the last separator; a root keeps its separator; a bare
    /// name gives the empty string (the current directory). The result has this
    /// string's normaliser.
    ///
    ///     "C:\dir\name" => "C:\dir"   "\name" => "\"   "name" => ""
    zvPathString_ directoryPart() const;

private:
    class Detached;

    static normalizer_ptr standardNormalizer();
    void appendComponent(std::string& joined, const component& piece) const;

    normalizer_ptr m_active;
    normalizer_ptr m_default;
};

/// The path type of the lock classes.
typedef zvPathString_<zvMBCSSafeString> zvPathString;

/// @}

/// @}

#include <zorvel/detail/path_string.h>
