#pragma once

#include <zorvel/export.h>
#include <zorvel/suite.h>

#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>

#include <cstddef>
#include <cstring>
#include <initializer_list>
#include <string>

// ---------------------------------------------------------------------------
// Lead bytes
// ---------------------------------------------------------------------------

/// A test that answers whether a byte begins a double-byte character.
typedef bool (*zvMultiByteLeadTest)(unsigned char byte);

/// Asks the installed lead-byte test and returns its answer unchanged; false
/// while null is installed. At load the test is qxIsMultiByteLead.
ZORVEL_API bool zvIsMultiByteLead(unsigned char byte);

/// Installs another lead-byte test for the whole process and returns the one
/// installed before. Not synchronised: call it once at start-up, before any
/// thread uses paths. Strings already built are not looked at again.
ZORVEL_API zvMultiByteLeadTest zvSetIsMultiByteLead(zvMultiByteLeadTest test);

// ---------------------------------------------------------------------------
// Multibyte-safe strings
// ---------------------------------------------------------------------------

/// A byte string whose == and != compare characters instead of bytes:
/// double-byte characters whole, letters without case, '/' equal to '\'.
/// Trailing separators count. Embedded NUL bytes are ordinary bytes.
///
/// One thread at a time for changes; comparisons may run concurrently.
class ZORVEL_API zvMBCSSafeString : public std::string
{
public:
    using std::string::string;
    zvMBCSSafeString() = default;
    zvMBCSSafeString(const std::string& text) : std::string(text) {}
};

/// A const char* operand is taken up to its NUL; a null one equals nothing.
ZORVEL_API bool operator==(const zvMBCSSafeString& left, const char* right);
ZORVEL_API bool operator!=(const zvMBCSSafeString& left, const char* right);
ZORVEL_API bool operator==(const char* left, const zvMBCSSafeString& right);
ZORVEL_API bool operator!=(const char* left, const zvMBCSSafeString& right);
ZORVEL_API bool operator==(const zvMBCSSafeString& left, const zvMBCSSafeString& right);
ZORVEL_API bool operator!=(const zvMBCSSafeString& left, const zvMBCSSafeString& right);

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

// ---------------------------------------------------------------------------
// Separators and path editing. "String" is a NUL-terminated byte string.
// None of these functions allocates, throws or keeps a pointer; all may be
// called from any thread as long as the buffers are not shared.
// ---------------------------------------------------------------------------

/// Whether a character is '\' or '/'.
ZORVEL_API bool zvIsPathSep(int character);

/// Whether the byte at p, inside the string that begins at start, is a
/// separator and not the second byte of a double-byte character. When start
/// does not lie before p only the byte itself is looked at. False for a null p.
ZORVEL_API bool zvIsPathSepByPtr(const char* p, const char* start);

/// The last separator between first and last (both inclusive), or null: when
/// there is none, when first lies after last, or when either is null.
///   "C:\a\b" => the second '\'
ZORVEL_API const char* zvFindLastSep(const char* first, const char* last);

/// The last byte of the last character between first and last (both
/// inclusive) that is not a separator, or null as for zvFindLastSep.
///   "dir\\" => the 'r'
ZORVEL_API const char* zvFindLastNotSep(const char* first, const char* last);

/// Ends a string with '\'. The buffer needs room for one more byte; nothing is
/// written when the string ends in '\' already. False only for null.
///   "" => "\"   "C:\dir" => "C:\dir\"   "C:\dir/" => "C:\dir\"
/// The last byte is looked at alone: a name that ends in a double-byte
/// character whose second byte is 0x5C gets no separator.
ZORVEL_API bool zvAddPathSep(char* s);

/// Inserts '\' before the byte at index unless the byte before it is a
/// separator; at index 0 always. The buffer needs room for one more byte.
/// Returns 1 when it inserted, 0 when it did not (null, or an index outside
/// the string).
///   ("abc", 3) => "abc\", 1   ("ab\c", 3) => 0   ("abc", 0) => "\abc", 1
ZORVEL_API int zvAddPathSepAt(char* s, int index);

/// Overwrites every separator byte with c, byte by byte: not aware of
/// double-byte characters. Null and empty strings are left alone.
ZORVEL_API void zvReplacePathSeps(char* s, char c);

/// Overwrites every separator byte with '\', byte by byte: not aware of
/// double-byte characters. Null is left alone.
ZORVEL_API void zvWashPathSep(char* s);

/// Removes "." and ".." components as the system's path service does and
/// returns out. out has at least 260 bytes (MAX_PATH). An input that is null
/// or does not fit leaves out empty. Only '\' separates here. Null out: null.
ZORVEL_API char* zvCollapsePath(char* out, const char* in);

/// The canonical absolute form of a path.
///
/// in: inLen characters, not necessarily terminated when inLen is below 2562;
/// a longer input must carry its own NUL, which may lie behind them. White
/// space at both ends does not count as a name: nothing else left means the
/// current directory. The byte in[inLen] is read in one case of a shorter
/// input: it begins with white space, holds no NUL, and no absolute form could
/// be made. It must be readable then; it tells whether the input is terminated.
///
/// Returns a pointer that need not be out: always use the returned pointer.
/// An absolute path is put into out with "." and ".." removed (empty when it
/// does not fit outSize or 260 bytes); a relative path is made absolute in
/// out; when the system cannot do that, or out is null or outSize is 0, the
/// input itself is returned: from its first byte that is not white space when
/// it is terminated, else as it is; nothing was written to out then. out may be
/// in. Null for a null input.
///
/// Absolute is, on Windows, a drive with a separator or two leading
/// separators; on Linux one leading separator (a drive letter is an ordinary
/// name there).
ZORVEL_API const char* zvCanonicalizePath(char* out, std::size_t outSize, const char* in, std::size_t inLen);

/// Whether the whole string is a root: one separator, or letters (or none), a
/// colon and one separator. "C:", "C:\x", "\\server" and "" are not.
ZORVEL_API bool zvIsRootDir(const char* s);

// ---------------------------------------------------------------------------
// Path strings
// ---------------------------------------------------------------------------

/// Puts a text into the form that a path string keeps. A normaliser may be
/// shared by any number of path strings.
template <class P>
class zvStringNormalizer
{
public:
    virtual ~zvStringNormalizer() {}

    /// Assigns the range to the target and normalises it.
    virtual void assignNormalized(P& target, const char* text, std::size_t length) = 0;

    /// Normalises the target where it stands.
    virtual void normalize(P& target) = 0;
};

/// The standard normaliser: '/' becomes '\', doubled separators become one (a
/// leading pair stays), white space goes at both ends. Trailing separators and
/// letter case stay. It has no state.
template <class P>
class zvWellFormedPathNormalizer : public zvStringNormalizer<P>
{
public:
    void assignNormalized(P& target, const char* text, std::size_t length) override;
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
    typedef zvStringNormalizer<zvPathString_<S>> normalizer_type;
    typedef boost::shared_ptr<normalizer_type> normalizer_ptr;

    /// One piece of a join: a terminated text (null is an empty one) or a
    /// pointer and a length. It refers to the caller's bytes.
    struct component
    {
        component(const char* t) : text(t ? t : ""), length(t ? std::strlen(t) : 0) {}
        component(const char* t, std::size_t n) : text(t ? t : ""), length(t ? n : 0) {}
        component(const std::string& t) : text(t.data()), length(t.size()) {}

        const char* text;
        std::size_t length;
    };

    zvPathString_();
    zvPathString_(const char* text);
    zvPathString_(const std::string& text);
    zvPathString_(const zvPathString_& other);

    /// A directory and a name below it. An empty or null name gives a copy of
    /// the directory's text; otherwise both are joined. The new string has the
    /// standard normaliser.
    zvPathString_(const zvPathString_& directory, const char* name);

    zvPathString_& operator=(const zvPathString_& other);
    zvPathString_& operator=(const char* text) { return assign(text); }
    zvPathString_& operator=(const std::string& text) { return assign(text.data(), text.size()); }

    /// Installs a normaliser; an empty pointer brings back the standard one.
    /// The present text is not normalised.
    void setNormalizer(const normalizer_ptr& normalizer);

    /// Replaces the text through the normaliser. Null is the empty text.
    zvPathString_& assign(const char* text, std::size_t length);
    zvPathString_& assign(const char* text) { return assign(text, text ? std::strlen(text) : 0); }
    zvPathString_& assign(const std::string& text) { return assign(text.data(), text.size()); }

    /// The index of the first character at or after `from` at which `text`
    /// stands, compared by character (see zvMBCSSafeString), or npos. The
    /// second byte of a double-byte character never begins a match. An empty
    /// text is found at `from` itself; `from` at or past the end, or null:
    /// npos.
    std::size_t find(const char* text, std::size_t from = 0) const;
    std::size_t find(const S& text, std::size_t from = 0) const;
    /// A character of one byte; never a half of a double-byte one.
    std::size_t find(char character, std::size_t from = 0) const { return find(S(1, character), from); }

    /// Appends the components with exactly one separator between them, then
    /// normalises the whole once. Components may lie inside this string.
    ///   "C:\dir\" + "\\name" => "C:\dir\name"
    zvPathString_& join(std::initializer_list<component> components);

    /// The text before the last separator; a root keeps its separator; a bare
    /// name gives the empty string (the current directory).
    ///   "C:\dir\name" => "C:\dir"   "\name" => "\"   "name" => ""
    zvPathString_ directoryPart() const;

private:
    class Detached;

    void appendComponent(std::string& joined, const component& piece) const;

    normalizer_ptr m_active;
    normalizer_ptr m_default;
};

/// The path type of the lock classes.
typedef zvPathString_<zvMBCSSafeString> zvPathString;

#include <zorvel/detail/path_string.h>
