#include "bench/semaphore/placement_posix.h"
#include "bench/semaphore/semaphores_posix.h"
#include "bench/support/row_file.h"

#include <chrono>
#include <memory>
#include <string>
#include <vector>

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
    ExchangeBy(const std::string& name, const Placement& placement)
        : m_name(name), m_processors(placement.first), m_there(name + "-there"), m_back(name + "-back")
    {
        m_there.acquire();
        m_back.acquire();
        m_child = ::fork();
        if (m_child != 0)
            return;
        runOn(placement.second);
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
        runOn(m_processors);
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
    const cpu_set_t m_processors;
    Semaphore m_there;
    Semaphore m_back;
    pid_t m_child;
};

struct Contestant
{
    std::string row;
    const char* name;
    std::unique_ptr<Exchange> exchange;
};

template <class Semaphore>
Contestant contestant(const char* name, const Placement& placement)
{
    const std::string unique = std::string("zorvel-bench-") + name + "-" + placement.row + std::to_string(::getpid());
    return {placement.row, name, std::make_unique<ExchangeBy<Semaphore>>(unique, placement)};
}

void measure(RowFile& rows, bool quick)
{
    std::vector<Contestant> contestants;
    for (const Placement& placement : placements()) {
        contestants.push_back(contestant<OurSemaphore>("zorvel", placement));
        contestants.push_back(contestant<PosixSemaphore>("sem_t", placement));
        contestants.push_back(contestant<BoostSemaphore>("boost-named", placement));
    }
    for (const Contestant& each : contestants)
        each.exchange->measure(100);
    for (int round = 0; round < (quick ? 10 : 50); ++round) {
        for (const Contestant& each : contestants)
            rows.add(each.row, each.name, "us", each.exchange->measure(1000));
    }
}

}  // namespace
}  // namespace bench
}  // namespace zorvel

int main(int argc, char** argv)
{
    return zorvel::bench::measureRows(argc, argv, &zorvel::bench::measure);
}
