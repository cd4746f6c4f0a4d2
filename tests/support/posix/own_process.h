#pragma once

#include <cstddef>
#include <functional>
#include <string>

/// What a test does to its own process.
namespace zorvel {
namespace test {

/// Which permissions new files do not get, for as long as the object lives.
class FileMask
{
public:
    explicit FileMask(unsigned mask);
    ~FileMask();
    FileMask(const FileMask&) = delete;
    FileMask& operator=(const FileMask&) = delete;

private:
    const unsigned m_before;
};

/// Lets the process open so many files more, for as long as the object lives.
class DescriptorLimit
{
public:
    explicit DescriptorLimit(unsigned more);
    ~DescriptorLimit();
    DescriptorLimit(const DescriptorLimit&) = delete;
    DescriptorLimit& operator=(const DescriptorLimit&) = delete;

private:
    unsigned long m_before;
};

/// No file of the process may grow for as long as the object lives.
class NoGrowth
{
public:
    NoGrowth();
    ~NoGrowth();
    NoGrowth(const NoGrowth&) = delete;
    NoGrowth& operator=(const NoGrowth&) = delete;

private:
    unsigned long m_before;
};

std::size_t openDescriptors();
/// Mappings of files below a directory, removed ones included.
std::size_t mappingsBelow(const std::string& directory);

void makeNamedPipe(const std::string& path);

/// Runs a function in a forked child, without exec, and waits for the child:
/// its status. The child ends without destroying static objects.
int inForkedChild(const std::function<int()>& run);

/// A child made by fork() that does nothing until it is killed, with the object.
class IdleFork
{
public:
    IdleFork();
    ~IdleFork();
    IdleFork(const IdleFork&) = delete;
    IdleFork& operator=(const IdleFork&) = delete;

private:
    const int m_child;
};

}  // namespace test
}  // namespace zorvel
