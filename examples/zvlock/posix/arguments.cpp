#include "examples/zvlock/arguments.h"

namespace zorvel {
namespace zvlock {

std::vector<NativeText> argumentsOf(int argc, char** argv)
{
    return argc > 0 ? std::vector<NativeText>(argv + 1, argv + argc) : std::vector<NativeText>();
}

std::string inCodePage(const NativeText& text)
{
    return text;
}

}  // namespace zvlock
}  // namespace zorvel
