#include "paths/detail/wide_block.h"

#include "paths/detail/scans.h"

namespace zorvel {
namespace paths {

template struct Scans<wide::Block>;

}  // namespace paths
}  // namespace zorvel
