#include "suite/qx.h"
#include "tests/unit/modules/real_libraries.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

using namespace zorvel::test;

namespace {

const char guard = '#';

/// A buffer of which a part is handed out.
struct Buffer
{
    explicit Buffer(std::size_t handedOut) : size(handedOut), bytes(handedOut + 100, guard) {}

    bool ask(void* module) { return zvGetCurrentModulePath(module, &bytes[0], static_cast<unsigned long>(size)); }
    std::string text() const { return bytes.substr(0, bytes.find('\0')); }
    bool isClearedBehind(std::size_t length) const
    {
        return bytes.substr(length) == std::string(size - length, '\0') + std::string(100, guard);
    }

    std::size_t size;
    std::string bytes;
};

}  // namespace

TEST(RealModulePath, NullIsTheExecutable)
{
    Buffer buffer(2562);
    EXPECT_TRUE(buffer.ask(nullptr));
    EXPECT_EQ(buffer.text(), executable());
    EXPECT_TRUE(buffer.isClearedBehind(executable().size()));
}

TEST(RealModulePath, OfALibraryByItsHandle)
{
    const Loaded library(plainLibrary());
    ASSERT_TRUE(library.get());
    Buffer buffer(2562);
    EXPECT_TRUE(buffer.ask(library.get()));
    EXPECT_EQ(buffer.text(), plainLibrary());
    EXPECT_TRUE(buffer.isClearedBehind(plainLibrary().size()));
}

TEST(RealModulePath, OfALibraryThatIsGone)
{
    Loaded library(plainLibrary());
    void* const handle = library.get();
    ASSERT_TRUE(handle);
    library.unload();
    Buffer buffer(2562);
    EXPECT_FALSE(buffer.ask(handle));
    EXPECT_TRUE(buffer.isClearedBehind(0));
}

TEST(RealModulePath, OfWhatIsNoModule)
{
    const std::unique_ptr<int> onTheHeap(new int(0));
    int onTheStack = 0;
    for (void* const address : {static_cast<void*>(onTheHeap.get()), static_cast<void*>(&onTheStack)}) {
        Buffer buffer(2562);
        EXPECT_FALSE(buffer.ask(address));
        EXPECT_TRUE(buffer.isClearedBehind(0));
    }
}

TEST(RealModulePath, WithoutABuffer)
{
    EXPECT_FALSE(zvGetCurrentModulePath(nullptr, nullptr, 0));
    EXPECT_FALSE(zvGetCurrentModulePath(nullptr, nullptr, 2562));
    Buffer buffer(0);
    EXPECT_FALSE(buffer.ask(nullptr));
    EXPECT_TRUE(buffer.isClearedBehind(0));
}

TEST(RealModulePath, WithJustEnoughRoom)
{
    Buffer buffer(executable().size() + 1);
    EXPECT_TRUE(buffer.ask(nullptr));
    EXPECT_EQ(buffer.text(), executable());
    EXPECT_TRUE(buffer.isClearedBehind(executable().size()));
}

TEST(RealModulePath, IsCutWhereItDoesNotFit)
{
    for (const std::size_t size : {std::size_t(2), std::size_t(5), executable().size() - 3, executable().size()}) {
        Buffer buffer(size);
        EXPECT_TRUE(buffer.ask(nullptr)) << size;
        EXPECT_EQ(buffer.text(), executable().substr(0, size - 1)) << size;
        EXPECT_TRUE(buffer.isClearedBehind(size - 1)) << size;
    }
}

TEST(RealModulePath, IsCutToNothing)
{
    Buffer buffer(1);
    EXPECT_TRUE(buffer.ask(nullptr));
    EXPECT_TRUE(buffer.isClearedBehind(0));
}
