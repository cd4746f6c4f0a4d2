// zvPathString: join, the constructor from directory and name, and the directory part.
//
// Input: lead bytes ('0' none, '1' Shift_JIS, '2' every byte, '3' and '4' the library's own test in C and in
// Shift_JIS), the text that stands there first, '|', and three components with '|' between them.

#include "fuzz/naive/path_text.h"
#include "fuzz/support/heap_text.h"
#include "fuzz/support/lead_bytes.h"
#include "fuzz/support/require.h"

using namespace zorvel;

namespace {

naive::LeadTest isLead;

std::string normalized(const std::string& text)
{
    return naive::normalized(text, isLead, fuzz::testIsOwn() ? isLead : &naive::noLeadByte);
}

/// A path string that holds the bytes as they are.
zvPathString plainPath(const std::string& text)
{
    zvPathString path;
    static_cast<std::string&>(path) = text;
    return path;
}

/// A directory and a name.
void checkConstructor(const std::string& directory, const std::string& name)
{
    fuzz::HeapText text = fuzz::HeapText::terminated(name);
    const std::string joined = normalized(naive::joined(naive::joined("", directory, isLead), name, isLead));
    fuzz::requireSame(name.empty() ? directory : joined, std::string(zvPathString(plainPath(directory), text.data())),
                      "directory and name");
}

/// Pieces of the path itself are joined to it as they were.
void checkOwnPieces(const std::string& text)
{
    zvPathString path = plainPath(text);
    const std::size_t half = text.size() / 2;
    path.join({{path.data() + half, path.size() - half}, {path.data(), half}});
    const std::string once = naive::joined(text, text.substr(half), isLead);
    fuzz::requireSame(normalized(naive::joined(once, text.substr(0, half), isLead)), std::string(path), "own pieces");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::Input input(data, size);
    isLead = fuzz::chooseLeadBytes(input);
    const std::string first = input.text();
    const std::string pieces[] = {input.text(), input.text(), input.rest()};
    fuzz::HeapText bytes[] = {fuzz::HeapText::exact(pieces[0]), fuzz::HeapText::exact(pieces[1]),
                              fuzz::HeapText::terminated(fuzz::untilNul(pieces[2]))};

    zvPathString path = plainPath(first);
    path.join({{bytes[0].data(), pieces[0].size()}, {bytes[1].data(), pieces[1].size()}, bytes[2].data()});
    std::string expected = naive::joined(naive::joined(first, pieces[0], isLead), pieces[1], isLead);
    expected = normalized(naive::joined(expected, fuzz::untilNul(pieces[2]), isLead));
    fuzz::requireSame(expected, std::string(path), "joined");

    fuzz::requireSame(naive::directoryPart(path, isLead), std::string(path.directoryPart()), "directory of the whole");
    fuzz::requireSame(naive::directoryPart(first, isLead), std::string(plainPath(first).directoryPart()), "directory");
    checkConstructor(first, fuzz::untilNul(pieces[0]));
    checkOwnPieces(pieces[2]);
    return 0;
}
