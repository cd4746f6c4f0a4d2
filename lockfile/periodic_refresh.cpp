#include "lockfile/detail/periodic_refresh.h"

namespace zorvel {
namespace lockfile {

namespace {

thread_local bool refreshing = false;

}  // namespace

PeriodicRefresh::PeriodicRefresh()
{
    refreshing = true;
}

PeriodicRefresh::~PeriodicRefresh()
{
    refreshing = false;
}

bool PeriodicRefresh::underWay()
{
    return refreshing;
}

}  // namespace lockfile
}  // namespace zorvel
