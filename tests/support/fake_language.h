#pragma once

namespace zorvel {
namespace test {
namespace fake_language {

/// What becomes of texts in code page 932 on their way to the output.
enum Output
{
    real,      ///< what the system makes of them
    asStored,  ///< every byte stays
    nothing,   ///< none can be shown
};

/// Another user for a while, in a test program that is made with
/// zorvel_test_with_fake_language(). Set before threads start.
class Scope
{
public:
    explicit Scope(const char* language, Output output = real);
    ~Scope();
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;
};

}  // namespace fake_language
}  // namespace test
}  // namespace zorvel
