#pragma once

#include "fuzz/naive/separators.h"

namespace zorvel {
namespace naive {

/// A path as directory part and last component.
struct SeparatedPath
{
    std::string directory;
    std::string name;
};

/// The last separator goes, unless nothing but separators stands before it.
SeparatedPath separated(const std::string& path, LeadTest isLead);

/// A name behind a path, with one separator between them.
std::string concatenated(const std::string& path, const std::string& name, LeadTest isLead);

}  // namespace naive
}  // namespace zorvel
