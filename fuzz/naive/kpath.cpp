#include "fuzz/naive/kpath.h"

namespace zorvel {
namespace naive {

SeparatedPath separated(const std::string& path, LeadTest isLead)
{
    const std::size_t last = lastSeparator(path, isLead);
    if (last == std::string::npos)
        return {"", path};
    const std::string directory = path.substr(0, last);
    const bool root = directory.find_first_not_of("\\/") == std::string::npos;
    return {root ? path.substr(0, last + 1) : directory, path.substr(last + 1)};
}

std::string concatenated(const std::string& path, const std::string& name, LeadTest isLead)
{
    const bool separates = !path.empty() && !endsInSeparator(path, isLead);
    return path + (separates ? "\\" : "") + name;
}

}  // namespace naive
}  // namespace zorvel
