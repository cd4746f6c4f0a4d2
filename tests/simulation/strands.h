#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

/// Threads of which one runs at a time. A strand is a piece of work with a
/// thread of its own; it runs until it waits, and then somebody else does.
namespace zorvel {
namespace sim {

class Process;
class Worker;

class Strand
{
public:
    /// `id` is the same in every run of a schedule.
    Strand(std::uint32_t strandId, Process* strandProcess, std::function<void()> strandBody);
    ~Strand();
    Strand(const Strand&) = delete;
    Strand& operator=(const Strand&) = delete;

    const std::uint32_t id;
    Process* const process;

    bool hasStarted() const { return m_started; }
    bool isDone() const { return m_done; }

    /// Ends one that has not started.
    void drop() { m_done = true; }

    /// Makes its next interruption point leave with boost::thread_interrupted.
    void interrupt();

private:
    friend class Strands;
    friend class Worker;

    std::function<void()> m_body;
    Worker* m_worker;
    bool m_started;
    bool m_done;
};

/// Says who goes on.
class Order
{
public:
    virtual ~Order();

    /// The strand that runs next; null at the end of the schedule. Called on
    /// the thread of the one that ran last.
    virtual Strand* next() = 0;
};

class Strands
{
public:
    explicit Strands(Order& order);
    ~Strands();
    Strands(const Strands&) = delete;
    Strands& operator=(const Strands&) = delete;

    Strand& add(std::uint32_t id, Process* process, std::function<void()> body);

    /// Lets strands run until the order knows of none; called by whoever is no
    /// strand.
    void run();

    /// The strand that runs; null when none does.
    Strand* current() const { return m_current; }

    /// Gives the turn away. Returns when the order names the caller again.
    void wait();

    const std::vector<std::unique_ptr<Strand>>& all() const { return m_all; }

private:
    friend class Worker;

    void pass(Strand* strand);
    void end(Strand& strand);

    Order& m_order;
    Strand* m_current;
    std::vector<std::unique_ptr<Strand>> m_all;
};

}  // namespace sim
}  // namespace zorvel
