#pragma once

namespace zorvel {
namespace test {

/// A test program that lists fake_console.cpp among its sources has a console
/// as its standard error while this lives, and none otherwise. Wine without a
/// display has no consoles of its own.
class FakeConsole
{
public:
    explicit FakeConsole(unsigned outputCodePage);
    ~FakeConsole();
    FakeConsole(const FakeConsole&) = delete;
    FakeConsole& operator=(const FakeConsole&) = delete;
};

}  // namespace test
}  // namespace zorvel
