// The suite's path library: kpSeparatePathName, kpConcatPathName, kpIsAbsolutePath.
//
// Input: codeset ('0' C, '1' Shift_JIS), the sizes of three buffers, a name, '|', the path.

#include "fuzz/naive/kpath.h"
#include "fuzz/support/heap_text.h"
#include "fuzz/support/locales.h"
#include "fuzz/support/require.h"
#include "suite/kpath.h"

using namespace zorvel;

namespace {

/// What a buffer of '#' holds after a text of so many bytes was, or was not,
/// written to it.
std::string buffer(bool written, const std::string& text, std::size_t size)
{
    std::string content(size, '#');
    return written ? content.replace(0, text.size() + 1, text.c_str(), text.size() + 1) : content;
}

void checkSeparate(const std::string& path, std::size_t directorySize, std::size_t nameSize, naive::LeadTest isLead)
{
    const naive::SeparatedPath parts = naive::separated(path, isLead);
    const bool fits = parts.directory.size() < directorySize && parts.name.size() < nameSize;
    fuzz::HeapText in = fuzz::HeapText::terminated(path);
    fuzz::HeapText directory(directorySize);
    fuzz::HeapText name(nameSize);
    fuzz::requireSame(fits, kpSeparatePathName(in.data(), directory.data(), directorySize, name.data(), nameSize),
                      "whether the parts fit");
    fuzz::requireSame(buffer(fits, parts.directory, directorySize), directory.str(), "directory part");
    fuzz::requireSame(buffer(fits, parts.name, nameSize), name.str(), "last component");
}

/// The directory buffer may be the path.
void checkSeparateInPlace(const std::string& path, naive::LeadTest isLead)
{
    const naive::SeparatedPath parts = naive::separated(path, isLead);
    fuzz::HeapText both = fuzz::HeapText::terminated(path, 1);
    fuzz::HeapText name(path.size() + 1);
    fuzz::require(kpSeparatePathName(both.data(), both.data(), path.size() + 2, name.data(), path.size() + 1),
                  "the parts fit");
    fuzz::requireSame(parts.directory, std::string(both.data()), "directory part in place");
    fuzz::requireSame(parts.name, std::string(name.data()), "last component beside it");
}

void checkConcat(const std::string& path, const std::string& name, std::size_t spare, naive::LeadTest isLead)
{
    const std::string expected = naive::concatenated(path, name, isLead);
    const std::size_t size = path.size() + 1 + spare;
    const bool fits = expected.size() < size;
    fuzz::HeapText in = fuzz::HeapText::terminated(name);
    fuzz::HeapText both = fuzz::HeapText::terminated(path, spare);
    fuzz::requireSame(fits, kpConcatPathName(both.data(), size, in.data()), "whether the path fits");
    fuzz::requireSame(fits ? expected : path, std::string(both.data()), "path and name");

    fuzz::HeapText unterminated = fuzz::HeapText::exact(path);
    fuzz::require(!kpConcatPathName(unterminated.data(), path.size(), in.data()), "no terminator");
    fuzz::requireSame(path, unterminated.str(), "no terminator");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::Input input(data, size);
    const naive::LeadTest isLead = fuzz::chooseCodeset(input);
    const std::size_t directorySize = input.choice(256);
    const std::size_t nameSize = input.choice(256);
    const std::size_t spare = input.choice(256);
    const std::string name = fuzz::untilNul(input.text());
    const std::string path = fuzz::untilNul(input.rest());

    checkSeparate(path, directorySize, nameSize, isLead);
    checkSeparateInPlace(path, isLead);
    checkConcat(path, name, spare, isLead);
    fuzz::requireSame(!path.empty() && naive::isSeparator(path[0]), kpIsAbsolutePath(path.c_str()), "absolute");
    return 0;
}
