#include "bench/paths/scene.h"

#include <zorvel/paths.h>

#include <algorithm>
#include <langinfo.h>
#include <string.h>

/// Separators: the last one of a path, and how fast 4096 bytes are gone through for them.
namespace zorvel {
namespace bench {
namespace {

const std::size_t longSize = 4096;

/// A text whose only separator is its first byte: everything behind it has to be looked at. In code page 932 every
/// other name is Japanese; none of its bytes is that of a separator, so that the peers, which look at bytes, do the
/// same work.
std::string longText(const Texts& texts)
{
    // アイカキ
    const std::string name = isDoubleByte(texts) ? "\203\101\203\103\203\112\203\114-reports." : "releases-reports.";
    std::string text = "\\";
    while (text.size() < longSize)
        text += name;
    text.resize(longSize);
    if ((text.back() & 0x80) != 0)
        text.back() = 'x';
    return text;
}

/// Paths written with '\' alone, so that who looks for one kind of separator finds the same.
Texts withBackslashes(const Texts& texts)
{
    Texts changed;
    for (const std::string& text : texts)
        changed.push_back(zvPathString(text));
    return changed;
}

const char* ours(const std::string& text)
{
    return zvFindLastSep(text.data(), text.data() + text.size() - 1);
}

/// Looks for one of the two separators, and for bytes instead of characters.
const char* withMemrchr(const std::string& text)
{
    return static_cast<const char*>(memrchr(text.data(), '\\', text.size()));
}

const char* withStrrchr(const std::string& text)
{
    return strrchr(text.c_str(), '\\');
}

/// Both separators, as bytes.
const char* withMemrchrTwice(const std::string& text)
{
    const char* const back = withMemrchr(text);
    const char* const from = back ? back : text.data();
    const void* const slash = memrchr(from, '/', static_cast<std::size_t>(text.data() + text.size() - from));
    return slash ? static_cast<const char*>(slash) : back;
}

const char* withFindLastOf(const std::string& text)
{
    const std::size_t found = text.find_last_of("\\/");
    return found == std::string::npos ? nullptr : text.data() + found;
}

template <class Find>
void lastOfPaths(benchmark::State& state, const Texts& texts, Find find)
{
    const Texts paths = withBackslashes(texts);
    for (const std::string& path : paths) {
        if (!require(state, find(path) == ours(path)))
            return;
    }
    overTexts(state, paths.size(), [&](std::size_t i) { return find(paths[i]); });
}

template <class Find>
void lastOfPathIn(const CodePage& page, const char* contestant, Find find)
{
    inCodePage(page, "last-separator", contestant,
               [find](benchmark::State& state, const Texts& texts) { lastOfPaths(state, texts, find); });
}

/// One look for one separator, and in code page 932 one question which codeset it is: without it nobody knows whether
/// the byte behind one from 0x80 is a character.
void lastOfPathFloors()
{
    lastOfPathIn(codePages()[0], "memrchr", &withMemrchr);
    lastOfPathIn(codePages()[1], "memrchr-and-codeset", [](const std::string& text) {
        return strcmp(nl_langinfo(CODESET), "WINDOWS-31J") == 0 ? withMemrchr(text) : nullptr;
    });
}

template <class Find>
void throughLongText(const char* contestant, Find find)
{
    inBothCodePages("separator-scan", contestant, [find](benchmark::State& state, const Texts& texts) {
        const std::string text = longText(texts);
        if (!require(state, find(text) == text.data()))
            return;
        overTexts(state, 1, [&](std::size_t) { return find(text); });
        state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * text.size()));
    });
}

/// Rewrites the separators of a terminated text, one in each 16 bytes. Rewriting does not depend on characters.
template <class Wash>
void wash(const char* contestant, Wash rewrite)
{
    const std::string name = std::string("separator-wash/") + contestant;
    benchmark::RegisterBenchmark(name.c_str(), [rewrite](benchmark::State& state) {
        std::string text = longText(codePages()[0].texts);
        for (std::size_t i = 0; i < text.size(); i += 16)
            text[i] = '/';
        overTexts(state, 1, [&](std::size_t) {
            text[0] = '/';
            rewrite(&text[0]);
            return text.data();
        });
        require(state, text.find('/') == std::string::npos);
        state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * text.size()));
    });
}

template <class Register>
void everybody(Register add)
{
    add("zorvel", &ours);
    add("memrchr-twice", &withMemrchrTwice);
    add("strrchr", &withStrrchr);
    add("find_last_of", &withFindLastOf);
}

}  // namespace

void registerScan()
{
    everybody([](const char* contestant, auto find) {
        for (const CodePage& page : codePages())
            lastOfPathIn(page, contestant, find);
        throughLongText(contestant, find);
    });
    lastOfPathFloors();
    throughLongText("memrchr", &withMemrchr);
    wash("zorvel", &zvWashPathSep);
    wash("std-replace", [](char* text) { std::replace(text, text + strlen(text), '/', '\\'); });
}

}  // namespace bench
}  // namespace zorvel
