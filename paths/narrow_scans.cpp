#include "paths/detail/narrow_block.h"

#include "paths/detail/scans.h"

namespace zorvel {
namespace paths {

template struct Scans<narrow::Block>;

}  // namespace paths
}  // namespace zorvel
