#include "tests/simulation/process.h"

#include "tests/simulation/world.h"

#include <boost/date_time/posix_time/posix_time.hpp>
#include <boost/thread/thread.hpp>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <utility>

namespace zorvel {
namespace sim {

namespace {

const std::uint64_t faultKinds = 6;

const std::uint32_t strandsOfOneProcess = 100000;

std::string wordFor(int code)
{
    switch (code) {
    case 0: return "done";
    case ENOENT: return "not there";
    case EEXIST: return "is there";
    default: return "error";
    }
}

const char* remarkOf(Fault fault)
{
    static const char* const remarks[] = {"", " (not sent)", " (reply lost)", " (sent twice)", " (denied)", " (busy)"};
    return remarks[static_cast<std::size_t>(fault)];
}

/// Lets an operation happen, or not, and gives its answer. Who has a file open
/// may write to it.
int answerWith(Fault fault, const std::string& what, long long now, const std::function<int(long long)>& effect)
{
    switch (fault) {
    case Fault::none: return effect(now);
    case Fault::replyLost: effect(now); return EIO;
    case Fault::sentTwice: effect(now); return effect(now);
    case Fault::denied: return what.compare(0, 5, "write") == 0 ? EIO : EACCES;
    case Fault::busy: return EBUSY;
    default: return EIO;
    }
}

}  // namespace

boost::posix_time::ptime Machine::timeAt(Time now) const
{
    static const boost::posix_time::ptime start(boost::gregorian::date(2031, 3, 14),
                                                boost::posix_time::time_duration(9, 26, 53, 589793));
    const Time jump = now >= m_plan.jumpAt ? m_plan.jump : 0;
    return start + boost::posix_time::microseconds(now + m_plan.offset + now / 1000000 * m_plan.ppm + jump);
}

bool Machine::remembers(const std::string& file, std::size_t id, Time now, long long& time) const
{
    const std::map<std::string, Memory>::const_iterator memory = m_memory.find(file);
    if (memory == m_memory.end() || memory->second.id != id || now >= memory->second.since + m_cached)
        return false;
    time = memory->second.time;
    return true;
}

void Machine::remember(const std::string& file, std::size_t id, Time now, long long time)
{
    if (m_cached > 0)
        m_memory[file] = Memory{time, id, now};
}

Process::Process(World& world, int processNumber, const ProcessPlan& plan, Machine& itsMachine)
    : number(processNumber),
      pid(plan.pid),
      machine(itsMachine),
      numbers(plan.pid),
      m_world(world),
      m_timers(0),
      m_operations(0),
      m_dead(false),
      m_isSpared(false),
      m_faults(0),
      m_pausedUntil(0),
      m_pausedInAll(0)
{
}

Process* Process::current()
{
    const World* const world = World::current();
    return world && world->strands.current() ? world->strands.current()->process : nullptr;
}

void Process::start(std::function<void()> body)
{
    const auto whole = [body] {
        try {
            body();
        } catch (const Crashed&) {
        }
    };
    Strand& main = m_world.strands.add(static_cast<std::uint32_t>(number) * strandsOfOneProcess, this, whole);
    m_strands.push_back(&main);
    m_world.pace.begin(main, 0);
}

Strand& Process::startTimer(Time after, std::function<void()> body)
{
    const std::uint32_t id = static_cast<std::uint32_t>(number) * strandsOfOneProcess + ++m_timers;
    const auto whole = [=] {
        body();
        const std::map<std::uint32_t, Strand*>::const_iterator waiting = m_joiners.find(id);
        if (waiting != m_joiners.end())
            m_world.pace.stir(*waiting->second);
    };
    Strand& timer = m_world.strands.add(id, this, whole);
    m_strands.push_back(&timer);
    m_world.pace.begin(timer, after);
    return timer;
}

void Process::endTimer(Strand& timer)
{
    if (!timer.hasStarted()) {
        timer.drop();
        return;
    }
    timer.interrupt();
    m_world.pace.stir(timer);
    m_joiners[timer.id] = m_world.strands.current();
    while (!timer.isDone() && !m_dead)
        m_world.pace.waitToBeStirred();
    m_joiners.erase(timer.id);
}

void Process::leaveIfDead() const
{
    if (m_dead)
        throw Crashed();
}

bool Process::isPaused() const
{
    return m_world.pace.now() < m_pausedUntil;
}

/// One that stands still does not notice the end of its wait before it goes on,
/// and the dead wait for nothing.
void Process::await(Time until, bool canBeInterrupted)
{
    using namespace boost::this_thread;
    for (;;) {
        const Time end = std::max(until, m_pausedUntil);
        if (m_world.pace.now() >= end)
            break;
        m_world.pace.sleep(end - m_world.pace.now());
        if (m_dead || m_world.pace.isTimeless())
            break;
        if (canBeInterrupted && !isPaused() && interruption_enabled() && interruption_requested())
            break;
    }
}

Time Process::way()
{
    const Plan& plan = m_world.plan;
    const std::uint32_t strand = m_world.strands.current()->id;
    const std::uint64_t stretched = static_cast<std::uint64_t>(plan.oneWay * plan.stretch);
    const std::uint64_t longer = m_world.choices.draw(strand, plan.jitter, stretched);
    const std::uint64_t slower =
        m_world.choices.draw(strand, m_isSpared ? 0 : plan.slow, static_cast<std::uint64_t>(plan.slowest));
    return plan.oneWay + static_cast<Time>(longer + slower);
}

void Process::stirAll()
{
    for (Strand* strand : m_strands)
        m_world.pace.stir(*strand);
}

void Process::crash()
{
    if (m_dead)
        return;
    m_dead = true;
    m_world.judge.died(number);
    for (Strand* strand : m_strands)
        if (!strand->hasStarted())
            strand->drop();
    stirAll();
}

void Process::pause(Time duration)
{
    const std::string length = std::to_string(duration / millisecond);
    m_world.trace.event(m_world.pace.now(), number, "stands still for " + length + " ms");
    m_pausedUntil = m_world.pace.now() + duration;
    m_pausedInAll += duration;
}

void Process::interrupt()
{
    m_world.trace.event(m_world.pace.now(), number, "is interrupted");
    m_strands.front()->interrupt();
    m_world.pace.stir(*m_strands.front());
}

/// Before each operation: what the plan has for this moment.
void Process::step()
{
    leaveIfDead();
    const int operation = m_operations++;
    for (const Mishap& mishap : m_world.plan.mishaps) {
        if (mishap.process != number || mishap.operation != operation)
            continue;
        const Mishap what = mishap;
        m_world.pace.later(what.delay, [this, what] {
            if (what.sort == Mishap::crash)
                crash();
            else if (what.sort == Mishap::pause)
                pause(what.duration);
            else
                interrupt();
        });
    }
}

/// What befalls the next operation.
Fault Process::nextFault(const std::string& verb)
{
    const unsigned odds = verb == "look" ? m_world.plan.failingLooks : m_world.plan.faults;
    const std::uint32_t strand = m_world.strands.current()->id;
    const Fault fault = static_cast<Fault>(m_world.choices.draw(strand, m_isSpared ? 0 : odds, faultKinds - 1));
    if (fault != Fault::none)
        ++m_faults;
    return fault;
}

int Process::request(const char* verb, const std::string& file, std::function<int(long long)> effect)
{
    step();
    await(m_world.pace.now(), false);
    leaveIfDead();
    const Fault fault = nextFault(verb);
    const std::shared_ptr<int> answer = std::make_shared<int>(EIO);
    World& world = m_world;
    const int self = number;
    const std::string what = std::string(verb) + ' ' + shortName(file);
    const auto arrival = [=, &world] {
        const std::uint64_t before = world.server.changes();
        *answer = answerWith(fault, what, world.serverTime(), effect);
        if (world.pace.isTimeless())
            world.pace.learnt(mixed(world.server.digestOf(file) + static_cast<std::uint64_t>(*answer)) + digest(what));
        if (world.trace.isOn())
            world.trace.operation(world.pace.now(), self, what, wordFor(*answer) + remarkOf(fault),
                                  before != world.server.changes());
    };
    const Time there = way();
    const Time back = way();
    const Time begin = m_world.pace.now();
    m_world.pace.exchange(there, back, arrival);
    await(begin + there + back, false);
    leaveIfDead();
    return *answer;
}

void Process::sleep(Time duration)
{
    leaveIfDead();
    boost::this_thread::interruption_point();
    if (duration > 0)
        await(m_world.pace.now() + duration, true);
    leaveIfDead();
    boost::this_thread::interruption_point();
}

void Process::spend(Time duration)
{
    leaveIfDead();
    if (m_world.pace.isTimeless() && duration > 0)
        m_world.pace.exchange(0, 0, [this] { m_world.pace.learnt(1); });
    else
        await(m_world.pace.now() + duration, false);
    leaveIfDead();
}

/// Somebody else may come first here too. It throws nothing: destructors read
/// the clock.
boost::posix_time::ptime Process::clock()
{
    const Plan& plan = m_world.plan;
    const std::uint32_t strand = m_world.strands.current()->id;
    const std::uint64_t longest = static_cast<std::uint64_t>(plan.oneWay * 2);
    if (const std::uint64_t delay = m_dead ? 0 : m_world.choices.draw(strand, plan.jitter / 4, longest))
        await(m_world.pace.now() + static_cast<Time>(delay), false);
    return machine.timeAt(m_world.pace.now());
}

}  // namespace sim
}  // namespace zorvel
