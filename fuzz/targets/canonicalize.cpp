// zvCanonicalizePath.
//
// Input: codeset ('0' C, '1' Shift_JIS), what lies behind the input ('0' its terminator, '1' more bytes, '2' nothing
// that may be read), the size of the buffer (values from 250 on stand for larger ones), a text that may be stretched.

#include "fuzz/naive/canonical.h"
#include "fuzz/support/heap_text.h"
#include "fuzz/support/locales.h"
#include "fuzz/support/require.h"

#include <zorvel/paths.h>

#include <filesystem>

using namespace zorvel;

namespace {

const std::string& currentDirectory()
{
    static const std::string directory = std::filesystem::current_path().string();
    return directory;
}

std::size_t chooseSize(fuzz::Input& input)
{
    const std::size_t large[] = {259, 260, 261, 2561, 4096, 9000};
    const std::size_t size = input.choice(256);
    return size < 250 ? size : large[size - 250];
}

/// A call and what it must give. memory: from the input's first byte to the last that may be read.
void check(const std::string& memory, std::size_t length, std::size_t size, naive::LeadTest isLead)
{
    const naive::Canonical expected = naive::canonicalized(memory, length, size, currentDirectory(), isLead);
    fuzz::HeapText in = fuzz::HeapText::exact(memory);
    fuzz::HeapText out(size);
    const char* const result = zvCanonicalizePath(out.data(), size, in.data(), length);
    fuzz::requireSame(expected.written, result == out.data(), "whether the buffer is returned");
    if (!expected.written)
        fuzz::requireSame(std::string(size, '#'), out.str(), "the buffer is left alone");
    fuzz::requireSame(in.str(), memory, "the input is left alone");
    if (expected.written || memory.find('\0') != std::string::npos)
        fuzz::requireSame(expected.text, std::string(result), "canonical");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::Input input(data, size);
    const naive::LeadTest isLead = fuzz::chooseCodeset(input);
    const std::size_t behind = input.choice(3);
    const std::size_t outSize = chooseSize(input);
    const std::string text = fuzz::stretchedText(input, {250, 2556, 4090});

    if (behind == 1 && text.size() > 1)
        check(text + '\0', text.size() / 2, outSize, isLead);
    else if (behind == 0 || text.size() >= 2562)
        check(text + '\0', text.size(), outSize, isLead);
    else if (!naive::canonicalized(text, text.size(), outSize, currentDirectory(), isLead).dependsOnNextByte)
        check(text, text.size(), outSize, isLead);

    fuzz::HeapText in = fuzz::HeapText::terminated(text);
    const char* const own = zvCanonicalizePath(nullptr, outSize, in.data(), text.size());
    fuzz::requireSame(naive::canonicalized(text + '\0', text.size(), 0, currentDirectory(), isLead).text,
                      std::string(own), "no buffer");
    return 0;
}
