/// Takes a semaphore, keeps it until Enter is pressed or for some seconds, and
/// gives it back. Start it twice: the second waits for the first.
///
///   one_at_a_time NAME [SECONDS]

#include <zorvel/ipc.h>

#include <chrono>
#include <cstdlib>
#include <iostream>
#include <thread>

int main(int argc, char** argv)
{
    if (argc < 2) {
        std::cerr << "usage: one_at_a_time NAME [SECONDS]\n";
        return 2;
    }

    // Where something fails, a message on std::cerr says why.
    zvSemaphoreIPC semaphore(argv[1], 0, false);
    if (!semaphore.Open())
        return 1;
    if (!semaphore.TryAcquire()) {
        std::cout << "waiting: somebody else has it" << std::endl;
        if (!semaphore.Acquire(false))
            return 1;
    }

    std::cout << "it is mine" << std::endl;
    if (argc > 2)
        std::this_thread::sleep_for(std::chrono::seconds(std::atoi(argv[2])));
    else
        std::cin.get();

    if (!semaphore.Release())
        return 1;
    std::cout << "it is free" << std::endl;
    return 0;
}
