#include "bench/files/contestants.h"
#include "bench/files/tree.h"

#include <benchmark/benchmark.h>

// Walk, sizes, patterns, removal and creation: who does the same work faster.

namespace zorvel {
namespace bench {

namespace {

std::string named(const char* row)
{
    return amounts(isQuick()).prefix + std::string(row);
}

void addLooks(const Amounts& amounts)
{
    const Tree tree(amounts.looked);
    const std::string path = keptTree(tree);
    const LookRow walk(named("walk"), path, tree.files + 2 * tree.folders, amounts.repetitions);
    const LookRow size(named("size"), path, tree.bytes, amounts.repetitions);
    const LookRow match(named("match"), path, tree.texts, amounts.repetitions);
    for (const Contestant& contestant : contestants()) {
        walk.add(contestant.name, contestant.walk);
        size.add(contestant.name, contestant.size);
        match.add(contestant.name, contestant.match);
    }
    // From here on the tree is in memory.
    standardFilesystem().size(path);
}

void addRemoval(const char* name, const Tree& tree, int repetitions)
{
    const std::string path = inTreeRoot("removed");
    const auto prepare = [path, tree] {
        clear(path);
        makeTree(path, tree);
    };
    const ChangeRow row(named(name), path, 1, repetitions, prepare, [path] { return !exists(path); });
    for (const Contestant& contestant : contestants())
        row.add(contestant.name, contestant.remove);
}

/// Twenty directories in one another.
std::string chain(const std::string& top)
{
    std::string path = top;
    for (int level = 1; level <= 20; ++level)
        path += "/level-" + std::to_string(level);
    return path;
}

void addCreation(const Amounts& amounts)
{
    const std::string top = inTreeRoot("created");
    const std::string path = chain(top);
    const auto prepare = [top] {
        clear(top);
        makeFolder(top);
    };
    const ChangeRow fresh(named("create-new"), path, amounts.creations, amounts.repetitions, prepare,
                          [path] { return exists(path); });
    const std::string there = chain(inTreeRoot("existing"));
    standardFilesystem().keep(there);
    const ChangeRow existing(named("create-existing"), there, amounts.creations, amounts.repetitions, [] {},
                             [there] { return exists(there); });
    for (const Contestant& contestant : contestants()) {
        fresh.add(contestant.name, contestant.create);
        existing.add(contestant.name, contestant.keep);
    }
}

}  // namespace

}  // namespace bench
}  // namespace zorvel

int main(int argc, char** argv)
{
    using namespace zorvel::bench;
    const Amounts wanted = amounts(isQuick());
    describeContestants();
    addLooks(wanted);
    addRemoval("remove", Tree(wanted.removed), (wanted.repetitions + 1) / 2);
    if (wanted.removedOnce != 0)
        addRemoval("remove-large", Tree(wanted.removedOnce), 3);
    addCreation(wanted);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
