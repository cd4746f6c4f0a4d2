#pragma once

#include <set>
#include <string>
#include <vector>

namespace zorvel {
namespace test {

/// Libraries that a test makes up. fake_loader.cpp defines the functions of
/// platform/loader.h: a test program that lists it among its own sources has
/// these libraries everywhere. One thread at a time.
namespace fake_loader {

/// A library that can be loaded from a path, with what it exports.
void add(const std::string& path, const std::set<std::string>& symbols);

/// What was done, in order: "load PATH", "find SYMBOL in PATH", "unload PATH";
/// "refused: " before what a library that is not loaded was asked.
const std::vector<std::string>& log();

/// No libraries and an empty log, at the beginning and at the end of a test.
class Scope
{
public:
    Scope();
    ~Scope();
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;
};

}  // namespace fake_loader
}  // namespace test
}  // namespace zorvel
