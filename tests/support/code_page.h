#pragma once

namespace zorvel {
namespace test {
namespace native {

/// Whether the process has the ANSI code page that the run asked for in
/// ZORVEL_CODE_PAGE: tests of double-byte names prove nothing in another one.
/// True where nothing was asked for, and where there is no such code page.
bool hasWantedCodePage();

}  // namespace native
}  // namespace test
}  // namespace zorvel
