#pragma once

/// Memory that runs out when a test says so: a program that lists
/// exhaustible_memory.cpp among its sources (and links with --wrap=realloc)
/// has this allocation.
namespace zorvel {
namespace test {

/// Lets `count` allocations succeed and no further one for its life.
class Exhaustion
{
public:
    explicit Exhaustion(int count);
    ~Exhaustion();
};

}  // namespace test
}  // namespace zorvel
