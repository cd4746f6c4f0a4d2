#pragma once

#include <semaphore.h>

namespace zorvel {
namespace sim {

/// What a thread waits for until it is its turn. One that was passed before
/// anybody waited is not lost.
class Baton
{
public:
    Baton() { sem_init(&m_semaphore, 0, 0); }
    ~Baton() { sem_destroy(&m_semaphore); }
    Baton(const Baton&) = delete;
    Baton& operator=(const Baton&) = delete;

    void pass() { sem_post(&m_semaphore); }

    void await()
    {
        while (sem_wait(&m_semaphore) != 0) {
        }
    }

private:
    sem_t m_semaphore;
};

}  // namespace sim
}  // namespace zorvel
