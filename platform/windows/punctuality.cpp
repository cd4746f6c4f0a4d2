#include "platform/punctuality.h"

namespace zorvel {
namespace platform {

long keptByWaits(long microseconds)
{
    return microseconds / 1000 * 1000;
}

PunctualWaits::PunctualWaits() : m_slackBefore(0) {}

// Nothing was changed.
PunctualWaits::~PunctualWaits() = default;

}  // namespace platform
}  // namespace zorvel
