#pragma once

#include "tests/multiprocess/scene.h"
#include "tests/multiprocess/semaphore_user.h"

#include <cstddef>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace zorvel {
namespace test {

/// Processes that go in and out of a semaphore, open and close it, and are
/// killed and replaced.
class Roamers
{
public:
    Roamers(unsigned seed, int count);

    /// Lets them go for a while, kills some, up to so many, and stops the
    /// others. Each that is left looks for the sign to stop at least once a
    /// second. Who was inside may have taken the token along.
    void round(std::size_t mostVictims);
    /// Lets them go for a while and kills all.
    void roundWithoutSurvivors();
    /// The same, and nobody comes after them.
    void end();

    void report() const;

    const std::string& name() const { return m_name; }

    /// When nobody is left, the token must be there again. Not where other
    /// threads start processes: one that is being started has open for a moment
    /// what this process has.
    bool startsAlone = false;

    int rounds = 0;
    int kills = 0;
    int withoutSurvivors = 0;
    int tokensLost = 0;
    long visits = 0;

private:
    typedef std::unique_ptr<SemaphoreUser> User;

    void goForAWhile();
    void killSome(std::size_t mostVictims);
    void killAll();
    std::size_t alive() const;
    void goOnWithWhoIsLeft();
    void kill(User& victim);
    void stopTheOthers();
    void replaceTheDead();
    void hearParked(SemaphoreUser& user);
    void expectOneToken(bool mayBeLost);

    std::mt19937 m_random;
    const unsigned m_seed;
    const std::string m_name;
    const Scene m_scene;
    std::vector<User> m_users;
};

}  // namespace test
}  // namespace zorvel
