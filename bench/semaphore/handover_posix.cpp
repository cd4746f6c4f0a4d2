#include "bench/semaphore/semaphores_posix.h"
#include "bench/support/row_file.h"

#include <chrono>
#include <memory>

#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

/// Two processes hand a token to and fro by two semaphores, so that each sleeps until the other has released: from
/// the release in one process to the return of the acquire in the other.
namespace zorvel {
namespace bench {
namespace {

/// Gives back whatever it gets, until it is killed.
template <class Semaphore>
[[noreturn]] void giveBack(const std::string& name)
{
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    Semaphore there(name + "-there");
    Semaphore back(name + "-back");
    while (there.acquire() && back.release()) {
    }
    ::_exit(1);
}

/// The two semaphores, both taken, and the other process.
class Exchange
{
public:
    virtual ~Exchange() {}

    /// Microseconds of one handover, the mean of so many exchanges.
    virtual double measure(int exchanges) = 0;
};

template <class Semaphore>
class ExchangeBy : public Exchange
{
public:
    explicit ExchangeBy(const std::string& name) : m_name(name), m_there(name + "-there"), m_back(name + "-back")
    {
        m_there.acquire();
        m_back.acquire();
        m_child = ::fork();
        if (m_child == 0)
            giveBack<Semaphore>(name);
    }

    ~ExchangeBy() override
    {
        ::kill(m_child, SIGKILL);
        ::waitpid(m_child, nullptr, 0);
        Semaphore::remove(m_name + "-there");
        Semaphore::remove(m_name + "-back");
    }

    double measure(int exchanges) override
    {
        const auto begin = std::chrono::steady_clock::now();
        for (int i = 0; i < exchanges; ++i) {
            m_there.release();
            m_back.acquire();
        }
        const std::chrono::duration<double, std::micro> time = std::chrono::steady_clock::now() - begin;
        return time.count() / (2.0 * exchanges);
    }

private:
    const std::string m_name;
    Semaphore m_there;
    Semaphore m_back;
    pid_t m_child;
};

struct Contestant
{
    const char* name;
    std::unique_ptr<Exchange> exchange;
};

template <class Semaphore>
Contestant contestant(const char* name)
{
    const std::string unique = "zorvel-bench-" + std::string(name) + "-" + std::to_string(::getpid());
    return {name, std::make_unique<ExchangeBy<Semaphore>>(unique)};
}

void measure(RowFile& rows, bool quick)
{
    Contestant contestants[] = {contestant<OurSemaphore>("zorvel"), contestant<PosixSemaphore>("sem_t"),
                                contestant<BoostSemaphore>("boost-named")};
    for (const Contestant& each : contestants)
        each.exchange->measure(100);
    for (int round = 0; round < (quick ? 10 : 50); ++round) {
        for (const Contestant& each : contestants)
            rows.add("semaphore-handover", each.name, "us", each.exchange->measure(1000));
    }
}

}  // namespace
}  // namespace bench
}  // namespace zorvel

int main(int argc, char** argv)
{
    return zorvel::bench::measureRows(argc, argv, &zorvel::bench::measure);
}
