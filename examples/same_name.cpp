/// Tells whether two names are the same by character: without case, with '/'
/// as good as '\', a double-byte character as a whole.
///
///   same_name NAME OTHER         in the process's code page
///   same_name NAME OTHER 932     in code page 932

#include <zorvel/paths.h>

#include <iostream>

namespace {

bool isLeadOf932(unsigned char byte)
{
    return (byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC);
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc < 3) {
        std::cerr << "usage: same_name NAME OTHER [932]\n";
        return 2;
    }
    // For the whole process, before any thread uses paths.
    if (argc > 3)
        zvSetIsMultiByteLead(&isLeadOf932);

    const zvMBCSSafeString name(argv[1]);
    std::cout << (name == argv[2] ? "the same" : "not the same") << '\n';
    return 0;
}
