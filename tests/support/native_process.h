#pragma once

#include "tests/support/process.h"

#include <cstddef>
#include <memory>

/// What the systems do differently about child processes; the rest is in
/// process.cpp.
namespace zorvel {
namespace test {
namespace native {

/// The file of the running program, in the system's own form.
std::string programPath();

/// A child and this side's ends of its three streams. The destructor closes
/// the ends; it neither ends the child nor waits for it.
class Child
{
public:
    virtual ~Child() {}

    enum Stream
    {
        output,
        errors
    };

    /// Waits for bytes; 0 at the end of the stream.
    virtual std::size_t read(Stream stream, char* buffer, std::size_t size) = 0;
    /// What cannot be written, because the child has gone, is dropped.
    virtual void write(const std::string& bytes) = 0;
    virtual void closeInput() = 0;
    virtual void kill() = 0;
    /// All threads have stopped when this returns.
    virtual void pause() = 0;
    virtual void resume() = 0;
    /// To be called once; 128 + signal where a signal ended it.
    virtual int wait() = 0;
};

/// Throws std::runtime_error where the system cannot start the program; a
/// program that is started but not found ends with status 127.
std::unique_ptr<Child> spawn(const std::vector<std::string>& command, const ProcessOptions& options);

}  // namespace native
}  // namespace test
}  // namespace zorvel
