#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace zorvel {
namespace bench {

/// How a cost grows with the number of files: samples, by name of the growth,
/// contestant and number.
class Growth
{
public:
    void add(const std::string& growth, const std::string& contestant, std::uint64_t x, double sample);

    /// As bench/README.md says.
    std::string json() const;

private:
    typedef std::pair<std::string, std::string> Name;
    std::map<Name, std::map<std::uint64_t, std::vector<double>>> m_curves;
};

/// What a work took in a process of its own.
struct Cost
{
    double milliseconds;
    double mebibytes;  ///< the most that the process ever had in memory
};

/// Runs a contestant's "walk" or "remove" on a path in a process of its own,
/// which is this program with other arguments.
Cost costOf(const std::string& work, const std::string& contestant, const std::string& path);

/// The other side of it: does the work when the arguments ask for that, and
/// tells whether they did.
bool isWorker(int argc, char** argv);

}  // namespace bench
}  // namespace zorvel
