#include <zorvel/errors.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <stdexcept>
#include <type_traits>
#include <vector>

namespace {

std::vector<void*> released;

void release(void* value)
{
    released.push_back(value);
}

class ScopedResource : public testing::Test
{
protected:
    void SetUp() override { released.clear(); }

    char m_buffer[4] = "abc";
};

TEST_F(ScopedResource, ReleasesItsValueOnce)
{
    {
        const zvScopedResource<char*> resource(m_buffer, &release);
        EXPECT_TRUE(released.empty());
    }
    EXPECT_EQ(std::vector<void*>{m_buffer}, released);
}

TEST_F(ScopedResource, ReleasesNullToo)
{
    {
        const zvScopedResource<char*> resource(nullptr, &release);
    }
    EXPECT_EQ(std::vector<void*>{nullptr}, released);
}

TEST_F(ScopedResource, GetRefersToTheStoredValue)
{
    char other[4] = "xyz";
    {
        zvScopedResource<char*> resource(m_buffer, &release);
        EXPECT_EQ(m_buffer, resource.get());
        EXPECT_EQ(&resource.get(), &resource.get());
        resource.get() = other;
    }
    EXPECT_EQ(std::vector<void*>{other}, released);
}

TEST_F(ScopedResource, ReleasesWhenAnExceptionLeavesTheScope)
{
    EXPECT_THROW(
        {
            const zvScopedResource<char*> resource(m_buffer, &release);
            throw std::runtime_error("scope left");
        },
        std::runtime_error);
    EXPECT_EQ(std::vector<void*>{m_buffer}, released);
}

TEST_F(ScopedResource, TakesTheReleaseFunctionOfTheRuntime)
{
    zvScopedResource<char*> resource(static_cast<char*>(std::malloc(16)), &std::free);
    EXPECT_NE(nullptr, resource.get());
}

TEST_F(ScopedResource, TakesAnyCallable)
{
    int calls = 0;
    {
        const zvScopedResource<char*> resource(m_buffer, [&](char* value) { calls += value == m_buffer ? 1 : 100; });
    }
    EXPECT_EQ(1, calls);
}

/// A release function that cannot be copied while `refuse` is set: making the
/// holder then fails like exhausted memory does.
struct Reluctant
{
    explicit Reluctant(bool* refuse) : m_refuse(refuse) {}
    Reluctant(const Reluctant& other) : m_refuse(other.m_refuse)
    {
        if (*m_refuse)
            throw std::bad_alloc();
        *m_refuse = true;  // the parameter's own copy passes, the holder's does not
    }
    void operator()(char* value) const { release(value); }

    bool* m_refuse;
};

TEST_F(ScopedResource, ReleasesTheValueWhenItCannotBeHeld)
{
    bool refuse = false;
    const Reluctant reluctant(&refuse);
    EXPECT_THROW(zvScopedResource<char*>(m_buffer, reluctant), std::bad_alloc);
    EXPECT_EQ(std::vector<void*>{m_buffer}, released);
}

TEST_F(ScopedResource, CannotBeCopied)
{
    EXPECT_FALSE(std::is_copy_constructible<zvScopedResource<char*>>::value);
    EXPECT_FALSE(std::is_copy_assignable<zvScopedResource<char*>>::value);
}

}  // namespace
