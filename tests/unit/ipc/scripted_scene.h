#pragma once

#include "tests/support/system_facts.h"
#include "tests/unit/ipc/caught_errors.h"
#include "tests/unit/ipc/fake_language.h"
#include "tests/unit/ipc/fake_semaphore.h"

#include <zorvel/ipc.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace zorvel {
namespace test {

typedef std::vector<std::string> Calls;

/// Semaphores on a scripted system, in English.
class ScriptedScene : public testing::Test
{
protected:
    ScriptedScene()
    {
        fake_semaphore::reset();
        setLanguage("en");
    }

    static Calls calls() { return fake_semaphore::takeCalls(); }

    /// What was written since the last time.
    std::string messages() { return m_errors.take(); }

    /// The text for what the scripted system refuses.
    static std::string refusal() { return systemTextOf(codeOfMissingFile()); }

    /// Opens it and forgets what that asked.
    void open(zvSemaphoreIPC& semaphore)
    {
        ASSERT_TRUE(semaphore.Open());
        calls();
    }

private:
    CaughtErrors m_errors;
};

}  // namespace test
}  // namespace zorvel
