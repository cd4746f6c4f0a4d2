#pragma once

#include <zorvel/errors.h>
#include <zorvel/lockfile.h>

namespace zorvel {
namespace lockfile {

/// A lock without a file system can do nothing: an empty pointer is refused
/// where it is handed over, not at the first use.
inline const boost::shared_ptr<zvAbstractFS>& requireFS(const boost::shared_ptr<zvAbstractFS>& fs)
{
    if (!fs)
        throw zvFileAccessError("No file system was given");
    return fs;
}

}  // namespace lockfile
}  // namespace zorvel
