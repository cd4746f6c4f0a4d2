#pragma once

#include <zorvel/lockfile.h>

#include <string>

namespace zorvel {
namespace lockfile {

/// Translates times stamped by the file server's clock into local time. The
/// clocks are compared once, when it is made, by a file of a unique name in
/// the directory; they are taken to run at the same rate from then on.
class FileTimeCalibration
{
public:
    /// Makes at least one attempt, whatever the deadline. Throws
    /// zvNoSuchDirectory, zvFileAccessError when no unique file could be made,
    /// and what the file system throws. The file is gone afterwards.
    FileTimeCalibration(const zvPathString& directory, const boost::posix_time::ptime& deadline,
                        const boost::shared_ptr<zvAbstractFS>& fs);

    boost::posix_time::ptime operator()(long long time) const;

private:
    /// Returns the file's path; `created` is the local time just before.
    std::string createUniqueFile(const zvPathString& directory, const boost::posix_time::ptime& deadline,
                                 boost::posix_time::ptime& created) const;

    boost::posix_time::ptime localTime;
    long long fileTime;
    boost::shared_ptr<zvAbstractFS> fs;
};

}  // namespace lockfile
}  // namespace zorvel
