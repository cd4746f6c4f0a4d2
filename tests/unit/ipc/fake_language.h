#pragma once

#include <string>

namespace zorvel {
namespace test {

/// Takes the place of the system's choice of a language: English, until a test
/// asks for another. Texts in code page 932 are shown as they are.
void setLanguage(const std::string& language);

}  // namespace test
}  // namespace zorvel
