#pragma once

#include <string>
#include <vector>

/// Takes the place of the system's semaphores: answers what a test has told it
/// to and remembers what it was asked. One thread.
namespace zorvel {
namespace test {
namespace fake_semaphore {

/// Everything succeeds again, and nothing has been asked.
void reset();

/// What was asked since the last time, in order: "create NAME INITIAL MAXIMUM",
/// "wait HANDLE MILLISECONDS", "release HANDLE", "close HANDLE". The first
/// handle since the reset is 1, the next 2.
std::vector<std::string> takeCalls();

/// From now on. Whatever is refused leaves codeOfMissingFile() as the last
/// error.
void refuseToCreate();
void answerWaits(unsigned long result);
void refuseToRelease();
void answerCloses(int result);

}  // namespace fake_semaphore
}  // namespace test
}  // namespace zorvel
