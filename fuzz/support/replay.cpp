#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

/// The name goes to the log before the input runs: one that fails aborts.
void run(const std::filesystem::path& file)
{
    std::printf("%s\n", file.c_str());
    std::fflush(stdout);
    std::ifstream stream(file, std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>());
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
}

}  // namespace

/// Runs every file of the folders that are named, once. Fails when there is
/// none.
int main(int argc, char** argv)
{
    int count = 0;
    for (int i = 1; i < argc; ++i) {
        for (const auto& entry : std::filesystem::directory_iterator(argv[i])) {
            run(entry.path());
            ++count;
        }
    }
    std::printf("%d inputs\n", count);
    return count > 0 ? 0 : 1;
}
