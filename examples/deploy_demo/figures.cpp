#include "examples/deploy_demo/figures.h"

#include <algorithm>
#include <iomanip>
#include <sstream>

namespace zorvel {
namespace demo {

namespace {

void count(Waits& waits, Microseconds wait)
{
    waits.mean = (waits.mean * waits.count + wait) / (waits.count + 1);
    waits.longest = std::max(waits.longest, wait);
    ++waits.count;
}

/// Whether the interval reaches into the time that the dead holder's lock lay
/// there.
bool spansStaleness(const History& history, const Interval& interval)
{
    return history.kill().inside && interval.to > history.kill().time &&
           (!history.takeOver().happened || interval.from < history.takeOver().time);
}

std::vector<MemberFigures> memberFigures(const History& history)
{
    std::vector<MemberFigures> result(history.members().size());
    std::vector<const Interval*> waited(result.size(), nullptr);
    for (const Interval& interval : history.intervals()) {
        MemberFigures& figures = result[interval.process];
        const Interval*& wait = waited[interval.process];
        if (interval.activity == Activity::queued)
            wait = &interval;
        if (interval.activity != Activity::holding || !wait)
            continue;
        ++figures.acquired;
        count(figures.all, wait->to - wait->from);
        if (!spansStaleness(history, *wait))
            count(figures.ordinary, wait->to - wait->from);
        wait = nullptr;
    }
    return result;
}

std::vector<Interval> holds(const History& history)
{
    std::vector<Interval> result;
    std::copy_if(history.intervals().begin(), history.intervals().end(), std::back_inserter(result),
                 [](const Interval& interval) { return interval.activity == Activity::holding; });
    return result;
}

int overlapsOf(const std::vector<Interval>& holds)
{
    int overlaps = 0;
    Microseconds busyUntil = 0;
    for (const Interval& hold : holds) {
        overlaps += hold.from < busyUntil ? 1 : 0;
        busyUntil = std::max(busyUntil, hold.to);
    }
    return overlaps;
}

bool somebodyWaited(const History& history, const Interval& next, Microseconds since)
{
    return std::any_of(history.intervals().begin(), history.intervals().end(), [&](const Interval& interval) {
        return interval.activity == Activity::queued && interval.from <= since && interval.to > since &&
               interval.to <= next.from;
    });
}

Handovers handoversOf(const History& history, const std::vector<Interval>& holds)
{
    std::vector<Microseconds> gaps;
    for (std::size_t i = 1; i < holds.size(); ++i) {
        const Microseconds freed = holds[i - 1].to;
        const bool died = history.kill().inside && freed == history.kill().time;
        if (!died && holds[i].from >= freed && somebodyWaited(history, holds[i], freed))
            gaps.push_back(holds[i].from - freed);
    }
    Handovers result;
    if (gaps.empty())
        return result;
    std::sort(gaps.begin(), gaps.end());
    result.count = static_cast<int>(gaps.size());
    result.median = gaps[gaps.size() / 2];
    result.longest = gaps.back();
    return result;
}

}  // namespace

Figures figuresOf(const History& history)
{
    Figures figures;
    figures.members = memberFigures(history);
    const std::vector<Interval> all = holds(history);
    figures.acquired = static_cast<int>(all.size());
    figures.handovers = handoversOf(history, all);
    figures.overlapsOfIntervals = overlapsOf(all);
    return figures;
}

namespace {

std::string seconds(Microseconds duration, int digits = 2)
{
    std::ostringstream text;
    text << std::fixed << std::setprecision(digits) << static_cast<double>(duration) / 1e6 << " s";
    return text.str();
}

std::string milliseconds(Microseconds duration)
{
    std::ostringstream text;
    text << std::fixed << std::setprecision(1) << static_cast<double>(duration) / 1e3 << " ms";
    return text.str();
}

void printWaits(std::ostream& out, const Waits& waits)
{
    const std::string none = "-";
    out << std::setw(12) << (waits.count ? seconds(waits.mean) : none) << std::setw(12)
        << (waits.count ? seconds(waits.longest) : none);
}

void printMembers(std::ostream& out, const History& history, const Figures& figures)
{
    const bool two = history.kill().inside;
    out << std::left << std::setw(9) << "process" << std::setw(8) << "runs on" << std::right << std::setw(10)
        << "acquired" << std::setw(12) << "mean wait" << std::setw(12) << "longest"
        << (two ? "  mean wait*    longest*" : "") << '\n';
    for (std::size_t i = 0; i < history.members().size(); ++i) {
        const MemberFigures& member = figures.members[i];
        out << std::left << std::setw(9) << history.members()[i].name << std::setw(8) << history.members()[i].kind
            << std::right << std::setw(10) << member.acquired;
        printWaits(out, member.all);
        if (two)
            printWaits(out, member.ordinary);
        out << (history.kill().happened && history.kill().process == i ? "   killed" : "") << '\n';
    }
    if (two)
        out << "* without the waits for the dead holder's lock\n";
}

void printDeath(std::ostream& out, const History& history)
{
    const Kill& kill = history.kill();
    const TakeOver& next = history.takeOver();
    const std::string dead = history.members()[kill.process].name;
    out << "killed: " << dead << " (kill -9) at " << seconds(kill.time - history.begin()) << ", "
        << (kill.inside ? "inside, half way through release " + std::to_string(kill.release) : "but not inside") << '\n';
    if (!next.happened) {
        out << "its lock was not taken over\n";
        return;
    }
    const std::string heir = history.members()[next.process].name;
    out << "time until its lock was taken over: " << seconds(next.time - kill.time) << ", by " << heir
        << " (stale 30 s after its last refresh, which came up to a second before the kill)\n";
    out << heir << " found " << dead << "'s mark " << (next.foundMark ? "" : "NOT ") << "in the directory and "
        << next.foundFiles << " files of release " << kill.release << ", removed them and deployed it anew\n";
}

}  // namespace

void printTable(std::ostream& out, const History& history, const Figures& figures)
{
    printMembers(out, history, figures);
    out << "\nhandover from release to next acquire: median " << milliseconds(figures.handovers.median) << ", longest "
        << milliseconds(figures.handovers.longest) << " (" << figures.handovers.count
        << " times somebody was waiting)\n";
    out << "overlaps found: " << history.strangersMet() + figures.overlapsOfIntervals << " (by marks in the directory: "
        << history.strangersMet() << ", by times: " << figures.overlapsOfIntervals << ", in " << figures.acquired
        << " acquisitions)\n";
    if (history.kill().happened)
        printDeath(out, history);
}

}  // namespace demo
}  // namespace zorvel
