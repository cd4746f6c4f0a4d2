/// What the tests run under zvlock:
///
///   zvlock_command status N            ends with status N
///   zvlock_command arguments WORD...   writes each word on a line, in brackets
///   zvlock_command copy                copies its input to its output, and says so on the error stream
///   zvlock_command list DIRECTORY      writes the names in it, sorted
///   zvlock_command hold                says "holding", waits for a line, or the end, of its input
///   zvlock_command note FILE WORD      appends a line to a file
///   zvlock_command interrupted         makes the file "ready", makes a line in the file "told" at each interruption,
///                                      ends with status 9 when there is a file "go"
///   zvlock_command count FILE          adds one to the number in a file, by reading and writing it

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <thread>
#include <vector>

/// The C start-up code of Windows expands `*` and `?` in the arguments unless
/// this says no.
extern "C" {
int _dowildcard = 0;
}

namespace {

using Words = std::vector<std::string>;

int show(const Words& words)
{
    for (const std::string& word : words)
        std::cout << '[' << word << "]\n";
    return 0;
}

int copy()
{
    std::cout << std::cin.rdbuf() << std::flush;
    std::cerr << "copied\n";
    return 0;
}

int list(const std::string& directory)
{
    Words names;
    for (const auto& entry : std::filesystem::directory_iterator(directory))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    for (const std::string& name : names)
        std::cout << name << '\n';
    return 0;
}

int hold()
{
    std::cout << "holding" << std::endl;
    std::string line;
    std::getline(std::cin, line);
    return 0;
}

int note(const std::string& file, const std::string& word)
{
    std::ofstream(file, std::ios::app) << word << '\n';
    return 0;
}

volatile std::sig_atomic_t interruptions = 0;

extern "C" void onInterrupt(int signal)
{
    std::signal(signal, onInterrupt);
    interruptions = interruptions + 1;
}

int countInterruptions()
{
    std::signal(SIGINT, onInterrupt);
    note("ready", "ready");
    for (int noted = 0; !std::filesystem::exists("go");) {
        for (; noted < interruptions; ++noted)
            note("told", "told");
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return 9;
}

/// Leaves the others time to come in between, if they can.
int count(const std::string& file)
{
    int number = 0;
    std::ifstream(file) >> number;
    for (int i = 0; i < 100; ++i)
        std::this_thread::yield();
    std::ofstream(file) << number + 1 << '\n';
    return 0;
}

}  // namespace

int main(int argc, char** argv)
{
    const Words words(argv + 1, argv + argc);
    const std::string what = words.empty() ? "" : words[0];
    if (what == "status")
        return std::stoi(words.at(1));
    if (what == "arguments")
        return show(Words(words.begin() + 1, words.end()));
    if (what == "copy")
        return copy();
    if (what == "list")
        return list(words.at(1));
    if (what == "hold")
        return hold();
    if (what == "note")
        return note(words.at(1), words.at(2));
    if (what == "interrupted")
        return countInterruptions();
    if (what == "count")
        return count(words.at(1));
    std::cerr << "zvlock_command: what is " << what << "?\n";
    return 2;
}
