#include "tests/hosts/hold_figures.h"

#include "tests/multiprocess/scene.h"

#include <algorithm>
#include <map>

namespace zorvel {
namespace test {

int fewestWhenTheFirstWasThrough(const std::vector<Hold>& holds, int workers)
{
    std::map<int, int> all;
    for (const Hold& hold : holds)
        ++all[hold.worker];
    std::vector<int> had(workers, 0);
    for (const Hold& hold : holds)
        if (++had.at(hold.worker) == all[hold.worker])
            break;
    return *std::min_element(had.begin(), had.end());
}

int longestWait(const std::vector<Hold>& holds, int workers)
{
    std::vector<int> turns;
    for (const Hold& hold : holds)
        turns.push_back(hold.worker);
    return longestGap(turns, workers);
}

}  // namespace test
}  // namespace zorvel
