#include "fuzz/naive/canonical.h"

namespace zorvel {
namespace naive {

std::vector<std::string> split(const std::string& text, char separator, LeadTest isLead)
{
    std::vector<std::string> pieces(1);
    for (const Character& character : charactersOf(text, isLead)) {
        if (character.separates && text[character.index] == separator)
            pieces.push_back(std::string());
        else
            pieces.back().append(text, character.index, character.length);
    }
    return pieces;
}

std::string together(const std::vector<std::string>& pieces, char separator)
{
    std::string text;
    for (std::size_t i = 0; i < pieces.size(); ++i)
        text += (i ? std::string(1, separator) : std::string()) + pieces[i];
    return text;
}

std::string collapsed(const std::string& text, LeadTest isLead)
{
    if (text.size() >= 260)
        return "";
    if (text.empty())
        return "\\";
    const bool singleByte = !isLead(static_cast<unsigned char>(text[0]));
    std::string prefix;
    if (text.substr(0, 2) == "\\\\")
        prefix = "\\\\";
    else if (text[0] == '\\')
        prefix = "\\";
    else if (singleByte && text.size() >= 3 && text.substr(1, 2) == ":\\")
        prefix = text.substr(0, 3);

    const bool relative = prefix.empty();
    const std::size_t kept = prefix == "\\\\" ? 1 : 0;
    std::vector<std::string> names;
    for (const std::string& name : split(text.substr(prefix.size()), '\\', isLead)) {
        const bool first = relative && prefix.empty() && names.empty();
        if (name == "." || (first && name.empty()))
            continue;
        if (name != ".." || first)
            names.push_back(name);
        else if (names.size() > kept)
            names.pop_back();
        // A relative path that has lost its first name goes on from the root.
        if (relative && names.empty())
            prefix = "\\";
    }
    const std::string result = prefix + together(names, '\\');
    if (result.empty())
        return ".";
    const bool driveAlone = result.size() == 2 && result[1] == ':' && !isLead(static_cast<unsigned char>(result[0]));
    return driveAlone ? result + "\\" : result;
}

std::string nativePath(const std::string& path, LeadTest isLead)
{
    std::string native;
    for (const Character& character : charactersOf(path, isLead)) {
        if (character.separates)
            native += '/';
        else
            native.append(path, character.index, character.length);
    }
    return native;
}

std::string fullPath(const std::string& path, const std::string& directory, LeadTest isLead)
{
    if (path.size() >= 4096)
        return "";
    std::string native = nativePath(path, isLead);
    const bool separated = !native.empty() && native.back() == '/';
    if (native.empty() || native[0] != '/')
        native = directory + "/" + native;
    std::vector<std::string> names;
    for (const std::string& name : split(native, '/', &noLeadByte)) {
        if (name == ".." && !names.empty())
            names.pop_back();
        else if (name != ".." && name != "." && !name.empty())
            names.push_back(name);
    }
    return "\\" + together(names, '\\') + (separated && !names.empty() ? "\\" : "");
}

bool isSpace(char byte)
{
    return std::string(" \t\n\v\f\r").find(byte) != std::string::npos;
}

Canonical canonicalized(const std::string& memory, std::size_t length, std::size_t size, const std::string& directory,
                        LeadTest isLead)
{
    const std::string input = memory.substr(0, length);
    const std::string text = input.substr(0, input.find('\0'));
    std::size_t skipped = 0;
    while (skipped < text.size() && isSpace(text[skipped]))
        ++skipped;
    const bool copied = length < 2562;
    const bool blank = skipped == text.size();
    const std::string all = copied ? text : memory.substr(0, memory.find('\0'));
    const std::string path = blank ? "." : all.substr(skipped);

    if (size > 0 && isSeparator(path[0])) {
        const std::string result = collapsed(path, isLead);
        return {true, result.size() < size ? result : "", false};
    }
    const std::string full = isSeparator(path[0]) ? "" : fullPath(path, directory, isLead);
    if (!full.empty() && full.size() < size)
        return {true, full, false};
    if (blank)
        return {false, ".", false};
    const bool depends = copied && skipped > 0 && text.size() == length;
    const std::string own = memory.substr(0, memory.find('\0'));
    const bool unterminated = depends && length < memory.size() && memory[length] != '\0';
    return {false, unterminated ? own : own.substr(skipped), depends};
}

}  // namespace naive
}  // namespace zorvel
