/// Counts at a fixed rate, on another thread.
///
///   ticks COUNT MILLISECONDS

#include <zorvel/timer.h>

#include <boost/date_time/posix_time/posix_time_types.hpp>

#include <cstdlib>
#include <future>
#include <iostream>

int main(int argc, char** argv)
{
    if (argc < 3 || std::atoi(argv[1]) < 1) {
        std::cerr << "usage: ticks COUNT MILLISECONDS\n";
        return 2;
    }
    const int last = std::atoi(argv[1]);
    const boost::posix_time::milliseconds interval(std::atoi(argv[2]));

    int count = 0;
    std::promise<void> done;
    const auto tick = [&] {
        if (++count > last)
            return;
        std::cout << "tick " << count << std::endl;
        if (count == last)
            done.set_value();
    };

    const boost::shared_ptr<zvTimerTask> timer = zvSetTimer(tick, interval, true);
    done.get_future().wait();

    // Afterwards the callback is not running and will not run again, so that
    // what it uses may go.
    timer->cancel();
    return 0;
}
