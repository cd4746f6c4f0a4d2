#pragma once

namespace zorvel {
namespace test {

/// A /dev/shm that only this process and its children see, empty at first, for
/// as long as the object lives. The process leaves the system's mount namespace
/// with the first one. Throws std::runtime_error where the system does not let
/// it (root may).
class OwnSharedMemory
{
public:
    OwnSharedMemory();
    ~OwnSharedMemory();

    OwnSharedMemory(const OwnSharedMemory&) = delete;
    OwnSharedMemory& operator=(const OwnSharedMemory&) = delete;

    /// Room for so many files beside its root directory.
    void limitFiles(unsigned count);
    /// Room for so many bytes, in whole pages.
    void limitBytes(unsigned long count);
    void makeReadOnly();
    void makeWritable();

    /// Takes all of /dev away, for as long as the object lives.
    class Missing
    {
    public:
        Missing();
        ~Missing();
        Missing(const Missing&) = delete;
        Missing& operator=(const Missing&) = delete;
    };
};

}  // namespace test
}  // namespace zorvel
