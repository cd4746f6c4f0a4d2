#include "examples/deploy_demo/worker/player.h"

#include "examples/deploy_demo/text.h"
#include "examples/deploy_demo/worker/watching_fs.h"

#include <boost/make_shared.hpp>

#include <chrono>
#include <iostream>
#include <thread>

namespace zorvel {
namespace demo {

namespace {

std::minstd_rand seedOf(const std::string& name)
{
    std::seed_seq letters(name.begin(), name.end());
    return std::minstd_rand(letters);
}

}  // namespace

Player::Player(const Place& place)
    : m_name(place.name),
      m_store(place.directory),
      m_marks(place.directory),
      m_locked(place.locked),
      m_random(seedOf(place.name)),
      m_fs(boost::make_shared<WatchingFS>(zvGetDefaultFSImp(), [this](const std::string& file) { noteRemoval(file); }))
{
}

zvDirectoryReadWriteLock Player::lock() const
{
    return zvDirectoryReadWriteLock(m_locked, m_fs);
}

void Player::say(Word word, int number, const std::string& name) const
{
    std::cout << lineOf({0, now(), word, number, name}) << std::endl;
    if (!std::cout)
        throw std::runtime_error("nobody listens any more");
}

void Player::pause(int least, int most)
{
    const int length = std::uniform_int_distribution<int>(least, most)(m_random);
    std::this_thread::sleep_for(std::chrono::milliseconds(length));
}

/// The guard's files come and go with every look; only those of readers and
/// writers count.
void Player::noteRemoval(const std::string& file) const
{
    const std::string name = file.substr(file.find_last_of("/\\") + 1);
    if (m_asking && (beginsWith(name, ".deploy_read_lock.") || name == ".deploy_write_lock"))
        say(Word::cleared, 0, name);
}

void Player::sayMet(const std::vector<std::string>& names) const
{
    for (const std::string& name : names)
        say(Word::met, 0, name);
}

Word Player::examine(const Manifest& manifest, const std::function<void(int)>& afterFile) const
{
    if (manifest.state == Manifest::unfinished)
        return Word::unfinished;
    bool whole = manifest.state == Manifest::finished;
    for (int file = 0; file < ReleaseStore::FILES_PER_RELEASE && whole; ++file) {
        whole = m_store.matches(manifest, file);
        afterFile(file);
    }
    return whole && m_store.manifest() == manifest ? Word::served : Word::torn;
}

void Player::stall(int release)
{
    say(Word::stall, release);
    // Long enough to be killed on a busy machine too.
    pause(20 * 1000, 20 * 1000);
    throw std::runtime_error("should have been killed");
}

}  // namespace demo
}  // namespace zorvel
