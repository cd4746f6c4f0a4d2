#include "examples/deploy_demo/worker/writer.h"

namespace zorvel {
namespace demo {

Writer::Writer(const Place& place, const Part& part) : Player(place), m_part(part), m_lock(lock().getWriteLock()) {}

void Writer::run()
{
    for (int i = 1; i <= m_part.releases; ++i)
        turn(i == m_part.stallAt);
}

void Writer::turn(bool stalls)
{
    pause(600, 1400);
    take(m_lock);
    sayMet(m_marks.enterAsWriter(m_name));
    const int release = m_store.next();
    deploy(release, stalls);
    if (m_part.verifies)
        verifyAsReader(release);
    else
        end();
}

void Writer::deploy(int release, bool stalls)
{
    sayHalf(release);
    say(Word::start, release);
    m_store.begin(release, m_name);
    for (int file = 0; file < ReleaseStore::FILES_PER_RELEASE; ++file) {
        if (stalls && file == ReleaseStore::FILES_PER_RELEASE / 2)
            stall(release);
        m_store.write(release, file, m_name);
        pause(50, 110);
    }
    const bool published = m_store.publish(release, m_name);
    const Manifest present = m_store.manifest();
    const bool own = present.release == release && present.author == m_name && m_store.isWhole();
    say(published && own ? Word::deployed : Word::spoiled, release);
}

/// What somebody else did not finish is written anew, from the first file on.
void Writer::sayHalf(int release) const
{
    const Manifest found = m_store.manifest();
    if (found.state == Manifest::unfinished)
        say(Word::half, m_store.filesOf(release), found.author);
}

void Writer::end()
{
    m_marks.leaveAsWriter(m_name);
    give(m_lock);
}

/// Other readers may come in meanwhile, but no writer: what it reads must be
/// what it wrote. The reader's mark is there before the writer's goes.
void Writer::verifyAsReader(int release)
{
    sayMet(m_marks.enterAsReader(m_name));
    m_marks.leaveAsWriter(m_name);
    say(Word::lower, release);
    zvDirectoryReadWriteLock::ReadLock reading = m_lock.downgrade();
    if (!reading.isAcquired() || m_lock.isAcquired())
        throw std::runtime_error("a downgrade without a time limit failed");
    const Manifest manifest = m_store.manifest();
    const Word finding = examine(manifest, [this](int) { pause(25, 50); });
    const bool own = manifest.release == release && manifest.author == m_name;
    say(own ? finding : Word::spoiled, release, m_name);
    m_marks.leaveAsReader(m_name);
    give(reading);
}

}  // namespace demo
}  // namespace zorvel
