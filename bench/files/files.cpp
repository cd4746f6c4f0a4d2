#include "bench/files/contestants.h"
#include "bench/files/tree.h"
#include "bench/files/tree_pool.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <memory>

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

/// The pool must live until all have run.
void addRemoval(const char* name, const Tree& tree, int repetitions, std::unique_ptr<TreePool>& pool)
{
    std::vector<Contestant> all = contestants();
    const auto doesNotRemove = [](const Contestant& contestant) { return !contestant.remove; };
    all.erase(std::remove_if(all.begin(), all.end(), doesNotRemove), all.end());
    pool.reset(new TreePool(name, tree, all.size() * static_cast<std::size_t>(repetitions)));
    TreePool* const trees = pool.get();
    const ChangeRow row(
        named(name), 1, repetitions, [trees] { return trees->take(); },
        [](const std::string& path) { return !exists(path); });
    for (const Contestant& contestant : all)
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
    const auto prepare = [top, path] {
        clear(top);
        makeFolder(top);
        return path;
    };
    const ChangeRow fresh(named("create-new"), amounts.creations, amounts.repetitions, prepare, &exists);
    const std::string there = chain(inTreeRoot("existing"));
    standardFilesystem().keep(there);
    const auto isThere = [there] { return there; };
    const ChangeRow existing(named("create-existing"), amounts.creations * 400, amounts.repetitions, isThere, &exists);
    const ChangeRow starting(named("create-existing"), amounts.creations, amounts.repetitions, isThere, &exists);
    for (const Contestant& contestant : contestants()) {
        fresh.add(contestant.name, contestant.create);
        (contestant.isProcess ? starting : existing).add(contestant.name, contestant.keep);
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
    std::unique_ptr<TreePool> pools[2];
    addRemoval("remove", Tree(wanted.removed), wanted.removals, pools[0]);
    if (wanted.removedLarge != 0)
        addRemoval("remove-large", Tree(wanted.removedLarge), 3, pools[1]);
    addCreation(wanted);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
