#include "examples/deploy_demo/table.h"

#include "examples/deploy_demo/text.h"

#include <algorithm>
#include <iomanip>
#include <sstream>

namespace zorvel {
namespace demo {

namespace {

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
    out << std::setw(11) << (waits.count ? seconds(waits.mean, 2) : none) << std::setw(10)
        << (waits.count ? seconds(waits.longest, 2) : none);
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

/// By whom a writer's lock was turned into a reader's.
std::string downgraders(const History& history)
{
    std::vector<std::string> names;
    for (const Downgrade& downgrade : history.downgrades())
        if (std::find(names.begin(), names.end(), name(history, downgrade.process)) == names.end())
            names.push_back(name(history, downgrade.process));
    return names.empty() ? std::string() : ", all by " + enumeration(names);
}

void printRun(std::ostream& out, const History& history, const Figures& figures)
{
    printReadings(out, figures.readings);
    out << "releases deployed: " << history.deployed() << ", downgrades: " << history.downgrades().size()
        << downgraders(history) << " (other writers before the reading that followed had ended: " << figures.intruders
        << ")\n";
    printHandovers(out, "handover from the last hold in the way to a waiting reader", figures.toReaders);
    out << '\n';
    printHandovers(out, "                                       to a waiting writer", figures.toWriters);
    out << "\noverlaps found: " << history.strangersMet() + figures.overlapsOfIntervals
        << " (by the marks that each process leaves while it is inside: " << history.strangersMet()
        << ", by times: " << figures.overlapsOfIntervals << ", in " << figures.holds << " holds)\n";
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
    out << "killed: " << name(history, death.process) << " (kill -9) at " << seconds(death.time - history.begin(), 2)
        << ", " << (death.inside ? deed : "but not inside") << '\n';
    if (!death.inside)
        return;
    if (death.cleared)
        out << "  its stale lock file was removed " << seconds(death.clearedAt - death.time, 2) << " later by "
            << name(history, death.heir) << " (stale 30 s after its last refresh)\n";
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
        out << "(the last refresh came up to a second before the kill, and its time is in whole seconds)\n";
}

}  // namespace demo
}  // namespace zorvel
