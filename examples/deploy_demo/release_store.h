#pragma once

#include <filesystem>
#include <string>

namespace zorvel {
namespace demo {

/// What the processes share: a directory of numbered releases.
///
///   current              the number of the last whole release
///   releases/N/file.I    the files of release N, each naming its author
///   inside/NAME          the mark of the process that is inside now
///
/// Nothing here excludes anybody: that is the lock's part. The mark only shows
/// whether the lock did it. File-system failures leave as
/// std::filesystem::filesystem_error or std::runtime_error.
class ReleaseStore
{
public:
    static const int FILES_PER_RELEASE = 8;

    explicit ReleaseStore(const std::filesystem::path& root);

    /// 0 before the first release.
    int current() const;

    /// Leaves a mark that the operating system creates only if there is none.
    /// False: there is one already.
    bool mark(const std::string& name);

    /// The name in the mark; empty when it has none, or is gone.
    std::string markedBy() const;

    void unmark();

    /// Files of a release that are there; 0 as well when it was not begun.
    int filesOf(int release) const;

    void discard(int release);
    void begin(int release);
    void write(int release, int file, const std::string& author);
    /// Makes a release the current one, in one step for whoever looks.
    void publish(int release);

    /// Whether all files of a release are there and by one author: somebody
    /// else inside would have mixed his own in. An empty author stands for
    /// whoever wrote the first file.
    bool isWhole(int release, std::string author = std::string()) const;

private:
    std::filesystem::path folder(int release) const;
    std::filesystem::path file(int release, int index) const;

    const std::filesystem::path m_root;
};

}  // namespace demo
}  // namespace zorvel
