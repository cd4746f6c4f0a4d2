#include "suite/qx.h"

#include "tests/support/temporary_tree.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <vector>

using namespace zorvel::test;

namespace {

/// The current directory of the process, for a scope.
class Inside
{
public:
    explicit Inside(const std::filesystem::path& path) : m_before(std::filesystem::current_path())
    {
        std::filesystem::current_path(path);
    }
    ~Inside() { std::filesystem::current_path(m_before); }
    Inside(const Inside&) = delete;
    Inside& operator=(const Inside&) = delete;

private:
    const std::filesystem::path m_before;
};

std::filesystem::path standardPath(std::string path)
{
    for (char& byte : path)
        byte = byte == '\\' ? '/' : byte;
    return path;
}

}  // namespace

TEST(CurrentDirectory, IsWrittenAsAPathOfTheLibrary)
{
    TemporaryTree tree;
    tree.directory("inner");
    const Inside inside(standardPath(tree.path("inner")));
    char buffer[2562];
    EXPECT_EQ(buffer, qxGetcwd(buffer, sizeof buffer));
    EXPECT_EQ(tree.path("inner"), buffer);
}

TEST(CurrentDirectory, ARootIsItsSeparator)
{
    const Inside inside(std::filesystem::current_path().root_path());
    char buffer[2562];
    ASSERT_EQ(buffer, qxGetcwd(buffer, sizeof buffer));
    EXPECT_EQ('\\', buffer[std::strlen(buffer) - 1]);
    EXPECT_GE(3u, std::strlen(buffer));
}

TEST(CurrentDirectory, MustFitWithItsTerminator)
{
    TemporaryTree tree;
    const Inside inside(standardPath(tree.root()));
    const std::string expected = tree.root();
    for (std::size_t size = 0; size <= expected.size() + 2; ++size) {
        std::vector<char> buffer(size + 8, '#');
        char* const result = qxGetcwd(buffer.data(), size);
        EXPECT_EQ(size > expected.size() ? buffer.data() : nullptr, result) << size;
        if (result) {
            EXPECT_EQ(expected, result);
        }
        EXPECT_EQ("########", std::string(buffer.end() - 8, buffer.end())) << size;
    }
}
