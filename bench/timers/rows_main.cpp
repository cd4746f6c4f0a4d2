#include "bench/timers/rows.h"

int main(int argc, char** argv)
{
    return zorvel::bench::measureRows(argc, argv, [](zorvel::bench::RowFile& rows, bool quick) {
        zorvel::bench::measureMemory(rows, quick ? 2 : 5);
        zorvel::bench::measurePunctuality(rows, quick ? 1 : 13);
    });
}
