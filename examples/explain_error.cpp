/// Prints what the system says of its error codes.
///
///   explain_error CODE...

#include <zorvel/errors.h>

#include <cstdlib>
#include <iostream>

int main(int argc, char** argv)
{
    // Runs at the end, whichever way it comes to that.
    const zvCleanupFunctionGuard flushed([] { std::cout.flush(); });

    for (int i = 1; i < argc; ++i) {
        const unsigned long code = std::strtoul(argv[i], nullptr, 10);
        const std::string text = zvGetWinErrorMessage(code);
        // On Windows the texts end with a line end.
        std::cout << code << ": " << (text.empty() ? "unknown" : text.substr(0, text.find_first_of("\r\n"))) << '\n';
    }
    return 0;
}
