#pragma once

/// How exactly the system keeps a wait that is shorter than a blink.
namespace zorvel {
namespace platform {

/// How much of a wait of so many microseconds the system can keep: all of it
/// (Linux), or the whole milliseconds in it (Windows).
long keptByWaits(long microseconds);

/// While it lives, waits of the thread that made it end as soon as their time is
/// over (Linux), and not up to 50 microseconds later, together with others', to
/// save power. Windows has no such thing: nothing changes.
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

}  // namespace platform
}  // namespace zorvel
