#pragma once

#include "tests/support/process_resources.h"

#include <string>

namespace zorvel {
namespace test {
namespace seam {

/// What the process has at a moment.
class Residue
{
public:
    Residue();

    /// What it has more of by now, in words; empty when nothing.
    static std::string growthSince(const Residue& before);

private:
    ProcessResources m_resources;
    long m_blocks;
};

/// Says which run was under way should the process break down in it.
class Announcement
{
public:
    explicit Announcement(const std::string& run);
    ~Announcement();

    Announcement(const Announcement&) = delete;
    Announcement& operator=(const Announcement&) = delete;
};

}  // namespace seam
}  // namespace test
}  // namespace zorvel
