#include "tests/simulation/strands.h"

#include "tests/simulation/posix/baton.h"

#include <boost/thread/thread.hpp>

#include <utility>

namespace zorvel {
namespace sim {

/// A thread that runs one strand after another: starting one for each would
/// take longer than most strands do. Workers live as long as the program.
class Worker
{
public:
    static Worker* idle();

    void run(Strands& strands, Strand& strand);
    void wait() { m_baton.await(); }
    void goOn() { m_baton.pass(); }
    void interrupt() { m_thread.interrupt(); }

private:
    Worker() : m_strands(nullptr), m_strand(nullptr), m_thread(&Worker::work, this) {}

    static std::vector<Worker*>& pool();
    void work();

    Strands* m_strands;
    Strand* m_strand;
    Baton m_baton;
    boost::thread m_thread;
};

std::vector<Worker*>& Worker::pool()
{
    static std::vector<Worker*>* const idleOnes = new std::vector<Worker*>;
    return *idleOnes;
}

Worker* Worker::idle()
{
    if (pool().empty())
        return new Worker;
    Worker* const worker = pool().back();
    pool().pop_back();
    return worker;
}

void Worker::run(Strands& strands, Strand& strand)
{
    m_strands = &strands;
    m_strand = &strand;
    m_baton.pass();
}

/// An interruption that the strand did not come to notice is not the next
/// one's.
void Worker::work()
{
    for (;;) {
        m_baton.await();
        m_strand->m_body();
        try {
            boost::this_thread::interruption_point();
        } catch (const boost::thread_interrupted&) {
        }
        pool().push_back(this);
        m_strands->end(*m_strand);
    }
}

Strand::Strand(std::uint32_t strandId, Process* strandProcess, std::function<void()> strandBody)
    : id(strandId),
      process(strandProcess),
      m_body(std::move(strandBody)),
      m_worker(nullptr),
      m_started(false),
      m_done(false)
{
}

Strand::~Strand() = default;

void Strand::interrupt()
{
    if (m_worker)
        m_worker->interrupt();
}

Order::~Order() = default;

namespace {

/// Of whoever called run().
Baton& callersBaton()
{
    static Baton* const baton = new Baton;
    return *baton;
}

}  // namespace

Strands::Strands(Order& order) : m_order(order), m_current(nullptr) {}

Strands::~Strands() = default;

Strand& Strands::add(std::uint32_t id, Process* process, std::function<void()> body)
{
    m_all.emplace_back(new Strand(id, process, std::move(body)));
    return *m_all.back();
}

void Strands::run()
{
    Strand* const first = m_order.next();
    if (!first)
        return;
    pass(first);
    callersBaton().await();
}

void Strands::wait()
{
    Strand* const self = m_current;
    Strand* const next = m_order.next();
    if (next == self)
        return;
    Worker* const worker = self->m_worker;
    pass(next);
    worker->wait();
}

void Strands::pass(Strand* strand)
{
    m_current = strand;
    if (!strand) {
        callersBaton().pass();
    } else if (strand->m_started) {
        strand->m_worker->goOn();
    } else {
        strand->m_started = true;
        strand->m_worker = Worker::idle();
        strand->m_worker->run(*this, *strand);
    }
}

void Strands::end(Strand& strand)
{
    strand.m_done = true;
    strand.m_worker = nullptr;
    pass(m_order.next());
}

}  // namespace sim
}  // namespace zorvel
