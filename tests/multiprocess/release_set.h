#pragma once

#include <filesystem>
#include <functional>
#include <set>
#include <string>
#include <vector>

namespace zorvel {
namespace test {

/// What somebody saw of a release.
struct Look
{
    /// Every file carries the same generation and writer, and the sum over all
    /// of them is right.
    bool whole() const { return fault.empty(); }
    /// Nothing has changed between two looks.
    bool sameAs(const Look& other) const { return files == other.files && writing == other.writing; }

    /// What is wrong with it.
    std::string fault;
    int generation = -1;
    int writer = -1;
    /// Who has begun to write and not ended.
    std::set<int> writing;
    /// The bytes of all files.
    std::vector<std::string> files;
};

/// The number of files of a release.
const int releaseSize = 8;

/// What the files of a release hold.
std::vector<std::string> releaseFiles(int generation, int writer);

/// What is to be said of these files while these workers are writing.
Look judge(const std::vector<std::string>& files, const std::set<int>& writing);

/// The numbers behind the dot in names of the kind "OPENING.number".
std::set<int> numbersIn(const std::vector<std::string>& names, const std::string& opening);

/// A release: several files that are right only together. Nothing here locks;
/// the files are written and read one after another.
class ReleaseSet
{
public:
    explicit ReleaseSet(const std::filesystem::path& directory);

    /// Replaces the release. From the first file to the last a file of the
    /// writer's says so; it stays when the writer is killed, and the next
    /// writer takes it away. `halfWay` is called with half of the files
    /// written.
    void write(int generation, int writer, const std::function<void()>& halfWay) const;

    Look look() const;

    /// The same two without a file that says who writes: `writing` is empty.
    void replace(int generation, int writer, const std::function<void()>& halfWay) const;
    Look content() const;

private:
    std::filesystem::path file(int index) const;
    std::filesystem::path writingFile(int writer) const;
    std::set<int> writers() const;

    const std::filesystem::path m_directory;
};

/// The names in a directory.
std::vector<std::string> namesIn(const std::filesystem::path& directory);

}  // namespace test
}  // namespace zorvel
