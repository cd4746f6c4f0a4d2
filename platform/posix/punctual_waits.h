#pragma once

namespace zorvel {
namespace platform {
namespace posix {

/// While it lives, waits of the thread that made it end as soon as their time is
/// over, and not up to 50 microseconds later, together with others', to save
/// power.
class PunctualWaits
{
public:
    PunctualWaits();
    ~PunctualWaits();

    PunctualWaits(const PunctualWaits&) = delete;
    PunctualWaits& operator=(const PunctualWaits&) = delete;

private:
    unsigned long m_slackBefore;
};

}  // namespace posix
}  // namespace platform
}  // namespace zorvel
