#pragma once

namespace zorvel {
namespace test {
namespace native {

/// Puts the process into the code page that the run asks for in
/// ZORVEL_CODE_PAGE; false when it is in another one, in which tests of
/// double-byte names would prove nothing. Windows: a number; the process has
/// its ANSI code page from the start. Linux: the name of a codeset; the locale
/// comes from the environment. Without the variable nothing is done.
bool enterWantedCodePage();

}  // namespace native
}  // namespace test
}  // namespace zorvel
