#include "examples/deploy_demo/table.h"

#include <algorithm>
#include <iomanip>
#include <sstream>

namespace zorvel {
namespace demo {

namespace {

std::string seconds(Microseconds duration)
{
    std::ostringstream text;
    text << std::fixed << std::setprecision(2) << static_cast<double>(duration) / 1e6 << " s";
    return text.str();
}

std::string milliseconds(Microseconds duration)
{
    std::ostringstream text;
    text << std::fixed << std::setprecision(1) << static_cast<double>(duration) / 1e3 << " ms";
    return text.str();
}

std::string name(const History& history, std::size_t process)
{
    return history.members()[process].name;
}

bool wasKilled(const History& history, std::size_t process)
{
    return std::any_of(history.deaths().begin(), history.deaths().end(),
                       [&](const Death& death) { return death.process == process; });
}

bool somebodyDiedInside(const History& history)
{
    return std::any_of(history.deaths().begin(), history.deaths().end(),
                       [](const Death& death) { return death.inside; });
}

void printWaits(std::ostream& out, const Waits& waits)
{
    const std::string none = "-";
    out << std::setw(11) << (waits.count ? seconds(waits.mean) : none) << std::setw(10)
        << (waits.count ? seconds(waits.longest) : none);
}

void printHead(std::ostream& out, bool two)
{
    out << std::left << std::setw(9) << "process" << std::setw(9) << "runs on" << std::setw(8) << "role" << std::right
        << std::setw(5) << "holds" << std::setw(11) << "mean wait" << std::setw(10) << "longest"
        << (two ? " mean wait*  longest*" : "") << std::setw(10) << "verified" << '\n';
}

void printMembers(std::ostream& out, const History& history, const Figures& figures)
{
    const bool two = somebodyDiedInside(history);
    printHead(out, two);
    for (std::size_t i = 0; i < history.members().size(); ++i) {
        const Member& member = history.members()[i];
        out << std::left << std::setw(9) << member.name << std::setw(9) << member.kind << std::setw(8)
            << (member.role == Role::writer ? "writer" : "reader") << std::right << std::setw(5)
            << figures.members[i].holds;
        printWaits(out, figures.members[i].all);
        if (two)
            printWaits(out, figures.members[i].ordinary);
        out << std::setw(10) << history.readings()[i].verified << (wasKilled(history, i) ? "   killed" : "") << '\n';
    }
    if (two)
        out << "* without the waits for a dead process's lock, which keeps everybody waiting when it wrote and\n"
               "  writers when it read\n";
}

void printReadings(std::ostream& out, const Readings& readings)
{
    out << "reads verified: " << readings.verified << ", torn reads: " << readings.torn
        << ", reads that found an unfinished release and served nothing: " << readings.unfinished << '\n';
    if (readings.unfinished)
        out << "  (a writer that dies half way leaves no finished manifest, so that readers know better than to serve "
               "it;\n  torn would be a finished manifest whose files do not match)\n";
}

void printHandovers(std::ostream& out, const char* whom, const Handovers& handovers)
{
    out << whom << ": median " << milliseconds(handovers.median) << ", longest " << milliseconds(handovers.longest)
        << " (" << handovers.count << " times)";
}

void printRun(std::ostream& out, const History& history, const Figures& figures)
{
    printReadings(out, figures.readings);
    out << "releases deployed: " << history.deployed() << ", downgrades: " << history.downgrades().size()
        << " (other writers before the reading that followed had ended: " << figures.intruders << ")\n";
    printHandovers(out, "handover from the last hold in the way to a waiting reader", figures.toReaders);
    out << '\n';
    printHandovers(out, "                                       to a waiting writer", figures.toWriters);
    out << "\noverlaps found: " << history.strangersMet() + figures.overlapsOfIntervals
        << " (by marks in the directory: " << history.strangersMet() << ", by times: " << figures.overlapsOfIntervals
        << ", in " << figures.holds << " holds)\n";
}

void printReplacement(std::ostream& out, const History& history, const Death& death)
{
    if (death.replaced)
        out << "  " << name(history, death.replacedBy) << " found " << death.foundFiles
            << " files of the unfinished release " << death.release << " and deployed it anew\n";
}

void printDeath(std::ostream& out, const History& history, const Death& death)
{
    const bool wrote = history.members()[death.process].role == Role::writer;
    const std::string deed = (wrote ? "half way through release " : "reading release ") + std::to_string(death.release);
    out << "killed: " << name(history, death.process) << " (kill -9) at " << seconds(death.time - history.begin())
        << ", " << (death.inside ? deed : "but not inside") << '\n';
    if (!death.inside)
        return;
    if (death.cleared)
        out << "  its stale lock file was removed " << seconds(death.clearedAt - death.time) << " later by "
            << name(history, death.heir) << '\n';
    else
        out << "  its lock file was not removed\n";
    printReplacement(out, history, death);
}

}  // namespace

void printTable(std::ostream& out, const History& history, const Figures& figures)
{
    printMembers(out, history, figures);
    out << '\n';
    printRun(out, history, figures);
    for (const Death& death : history.deaths())
        printDeath(out, history, death);
    if (somebodyDiedInside(history))
        out << "(a lock file is stale 30 s after its last refresh, which came up to a second before the kill and is\n"
               " noted in whole seconds)\n";
}

}  // namespace demo
}  // namespace zorvel
