#pragma once

#include <zorvel/ipc.h>

#include <boost/interprocess/sync/named_semaphore.hpp>

#include <cstdlib>
#include <string>

#include <fcntl.h>
#include <semaphore.h>

namespace zorvel {
namespace bench {

/// One kind of semaphore of a name, open: made with one token by whoever is first, opened by the others. The name
/// goes when remove() is called; what is open stays open.

class OurSemaphore
{
public:
    explicit OurSemaphore(const std::string& name) : m_semaphore(name, 0, false)
    {
        if (!m_semaphore.Open())
            std::abort();
    }

    bool acquire() { return m_semaphore.Acquire(false); }
    bool release() { return m_semaphore.Release(); }
    static void remove(const std::string&) {}

private:
    zvSemaphoreIPC m_semaphore;
};

class PosixSemaphore
{
public:
    explicit PosixSemaphore(const std::string& name) : m_semaphore(::sem_open(("/" + name).c_str(), O_CREAT, 0600, 1))
    {
        if (m_semaphore == SEM_FAILED)
            std::abort();
    }

    ~PosixSemaphore() { ::sem_close(m_semaphore); }

    PosixSemaphore(const PosixSemaphore&) = delete;
    PosixSemaphore& operator=(const PosixSemaphore&) = delete;

    bool acquire() { return ::sem_wait(m_semaphore) == 0; }
    bool release() { return ::sem_post(m_semaphore) == 0; }
    static void remove(const std::string& name) { ::sem_unlink(("/" + name).c_str()); }

private:
    sem_t* m_semaphore;
};

class BoostSemaphore
{
public:
    explicit BoostSemaphore(const std::string& name) : m_semaphore(boost::interprocess::open_or_create, name.c_str(), 1)
    {
    }

    bool acquire()
    {
        m_semaphore.wait();
        return true;
    }

    bool release()
    {
        m_semaphore.post();
        return true;
    }

    static void remove(const std::string& name) { boost::interprocess::named_semaphore::remove(name.c_str()); }

private:
    boost::interprocess::named_semaphore m_semaphore;
};

}  // namespace bench
}  // namespace zorvel
