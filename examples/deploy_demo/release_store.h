#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace zorvel {
namespace demo {

/// What is said about the release in a store.
struct Manifest
{
    enum State
    {
        none,        ///< nothing is said
        unfinished,  ///< somebody has begun to write it
        finished,    ///< all its files are written
    };
    State state = none;
    int release = 0;
    std::string author;
    /// Of a finished release: the checksum of each file.
    std::vector<std::uint32_t> sums;
};

bool operator==(const Manifest& left, const Manifest& right);

/// The directory that a release lives in. The next one is written over it, file
/// by file, so that who reads meanwhile reads a mixture of both.
///
///   live/file.I               the files
///   live/manifest             release, author and the files' checksums
///   live/manifest.unfinished  release and author of one that is being written
///   closed                    there will be no further release
///
/// Nothing here excludes anybody: that is the lock's part. Failures of the file
/// system leave as std::filesystem::filesystem_error or std::runtime_error.
class ReleaseStore
{
public:
    static const int FILES_PER_RELEASE = 8;

    explicit ReleaseStore(const std::filesystem::path& root);

    /// Makes the store, with a first release by `author` in it.
    void create(const std::string& author);

    Manifest manifest() const;

    /// The release that is to be written next: one that was not finished, or
    /// the one after the present.
    int next() const;

    /// How many files of a release, finished or not, are there.
    int filesOf(int release) const;

    /// From now on the release there is unfinished.
    void begin(int release, const std::string& author);
    void write(int release, int file, const std::string& author);
    /// Makes it finished, in one step for whoever looks. False: somebody else
    /// did something to it meanwhile.
    bool publish(int release, const std::string& author);

    /// Whether a file is what the manifest says.
    bool matches(const Manifest& manifest, int file) const;

    /// Whether the release there is finished and all its files match.
    bool isWhole() const;

    void close();
    bool isClosed() const;

private:
    std::filesystem::path file(int index) const;

    const std::filesystem::path m_root;
    const std::filesystem::path m_live;
};

}  // namespace demo
}  // namespace zorvel
