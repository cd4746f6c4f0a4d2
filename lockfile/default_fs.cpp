#include "lockfile/detail/network_fs.h"

#include <boost/thread/once.hpp>

namespace {

boost::once_flag madeOnce = BOOST_ONCE_INIT;
boost::shared_ptr<zvAbstractFS> instance;

void make()
{
    instance.reset(new zorvel::lockfile::zvNetworkFS);
}

}  // namespace

// The const is part of what callers were compiled against.
// NOLINTNEXTLINE(readability-const-return-type)
const boost::shared_ptr<zvAbstractFS> zvGetDefaultFSImp()
{
    boost::call_once(madeOnce, &make);
    return instance;
}
