#include "tests/faults/seam/residue.h"

#include "tests/support/counted_blocks.h"

#include <csignal>
#include <cstring>
#include <thread>

namespace zorvel {
namespace test {
namespace seam {

namespace {

char underWay[256];

void reportRun()
{
    if (!underWay[0])
        return;
    writeAtOnce("broke down in ZORVEL_FAULT=\"");
    writeAtOnce(underWay);
    writeAtOnce("\"\n");
}

/// A joined thread is counted until the system has cleared it away.
ProcessResources settled(std::size_t threads)
{
    ProcessResources now = processResources();
    for (int patience = 2000; now.threads > threads && patience > 0; --patience) {
        std::this_thread::yield();
        now = processResources();
    }
    return now;
}

void onSignal(int signal)
{
    reportRun();
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

}  // namespace

Residue::Residue() : m_resources(processResources()), m_blocks(blocksInUse()) {}

std::string Residue::growthSince(const Residue& before)
{
    const long blocks = blocksInUse() - before.m_blocks;
    const ProcessResources now = settled(before.m_resources.threads);
    std::string growth;
    if (blocks > 0)
        growth += std::to_string(blocks) + " blocks of memory ";
    if (now.descriptors > before.m_resources.descriptors)
        growth += std::to_string(now.descriptors - before.m_resources.descriptors) + " descriptors ";
    if (now.threads > before.m_resources.threads)
        growth += std::to_string(now.threads - before.m_resources.threads) + " threads ";
    return growth;
}

Announcement::Announcement(const std::string& run)
{
    std::strncpy(underWay, run.c_str(), sizeof underWay - 1);
#ifdef ZORVEL_COUNT_NEW
    // Elsewhere a sanitizer has handlers of its own.
    std::signal(SIGSEGV, &onSignal);
#endif
    std::signal(SIGABRT, &onSignal);
}

Announcement::~Announcement()
{
    underWay[0] = '\0';
}

}  // namespace seam
}  // namespace test
}  // namespace zorvel

/// The address sanitizer calls this ahead of its report.
extern "C" void __asan_on_error()
{
    zorvel::test::seam::reportRun();
}
