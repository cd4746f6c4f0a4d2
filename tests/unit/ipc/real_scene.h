#pragma once

#include "platform/process.h"
#include "tests/support/semaphore_facts.h"
#include "tests/support/system_facts.h"
#include "tests/unit/ipc/caught_errors.h"

#include <zorvel/ipc.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace zorvel {
namespace test {

/// Semaphores of the system, with messages in English.
class RealScene : public testing::Test
{
protected:
    /// A name that nobody else uses, now or before; no character of it is
    /// escaped.
    static std::string freshName()
    {
        static int count = 0;
        return "zorvel-test-" + std::to_string(platform::processId()) + '-' + std::to_string(++count);
    }

    /// A semaphore that is open.
    static std::unique_ptr<zvSemaphoreIPC> opened(const std::string& name, int timeOut = 1)
    {
        std::unique_ptr<zvSemaphoreIPC> semaphore(new zvSemaphoreIPC(name, timeOut, false));
        EXPECT_TRUE(semaphore->Open()) << name.substr(0, 80);
        return semaphore;
    }

    std::string messages() { return m_errors.take(); }

    static std::string openFailed(const std::string& name, unsigned long code) { return failed("open", name, code); }
    static std::string waitFailed(const std::string& name, unsigned long code) { return failed("lock", name, code); }
    static std::string releaseFailed(const std::string& name, unsigned long code)
    {
        return failed("release (increment)", name, code);
    }

private:
    /// As far as a message reaches.
    static std::string failed(const std::string& what, const std::string& name, unsigned long code)
    {
        const std::string text =
            "Failed to " + what + " semaphore '" + name + "'. \n System error: " + systemTextOf(code);
        return text.substr(0, 2046) + '\n';
    }

    CaughtErrors m_errors;
};

}  // namespace test
}  // namespace zorvel
