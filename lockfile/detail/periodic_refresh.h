#pragma once

namespace zorvel {
namespace lockfile {

/// Tells the file system, which is asked through an interface that knows only
/// one kind of touch, that the calling thread makes the periodic refresh of a
/// lock that is held.
class PeriodicRefresh
{
public:
    PeriodicRefresh();
    ~PeriodicRefresh();
    PeriodicRefresh(const PeriodicRefresh&) = delete;
    PeriodicRefresh& operator=(const PeriodicRefresh&) = delete;

    static bool underWay();
};

}  // namespace lockfile
}  // namespace zorvel
