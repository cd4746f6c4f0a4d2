/// Objects of other kinds under the name of a semaphore.

#include "tests/support/windows/named_event.h"
#include "tests/unit/ipc/real_scene.h"

using namespace zorvel::test;

namespace {

class WindowsNames : public RealScene
{
};

TEST_F(WindowsNames, ANameOfAnotherKindOfObjectIsRefused)
{
    const std::string name = freshName();
    zvSemaphoreIPC semaphore(name, 1, false);
    {
        const NamedEvent event(name);
        EXPECT_FALSE(semaphore.Open());
        EXPECT_EQ(openFailed(name, codeOfClosedHandle()), messages()) << "the system has no code of its own for that";
        EXPECT_FALSE(semaphore.TryAcquire());
    }
    EXPECT_TRUE(semaphore.Open());
    EXPECT_TRUE(semaphore.TryAcquire());
}

}  // namespace
