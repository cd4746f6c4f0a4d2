#include "examples/deploy_demo/worker/reader.h"

namespace zorvel {
namespace demo {

Reader::Reader(const Place& place, int stallFrom) : Player(place), m_stallFrom(stallFrom), m_lock(lock().getReadLock())
{
}

void Reader::run()
{
    bool last = false;
    while (!last) {
        last = m_store.isClosed();
        turn();
    }
}

/// The pause lets writers in: a steady stream of readers would hold them off.
void Reader::turn()
{
    pause(450, 1150);
    take(m_lock);
    sayMet(m_marks.enterAsReader(m_name));
    serve();
    m_marks.leaveAsReader(m_name);
    give(m_lock);
}

void Reader::serve()
{
    const Manifest manifest = m_store.manifest();
    const bool stalls = m_stallFrom > 0 && manifest.release >= m_stallFrom;
    const Word finding = examine(manifest, [&](int file) {
        if (stalls && file == ReleaseStore::FILES_PER_RELEASE / 2)
            stall(manifest.release);
        pause(30, 65);
    });
    // Nothing is served then; the picture shows that somebody looked.
    if (finding == Word::unfinished)
        pause(150, 150);
    say(finding, manifest.release, manifest.author.empty() ? "-" : manifest.author);
}

}  // namespace demo
}  // namespace zorvel
