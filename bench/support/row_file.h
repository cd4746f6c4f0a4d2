#pragma once

#include <fstream>
#include <iostream>
#include <string>
#include <utility>
#include <vector>

namespace zorvel {
namespace bench {

/// The rows that a program measured itself, written as bench/README.md says.
class RowFile
{
public:
    /// One more sample of a contestant.
    void add(const std::string& row, const std::string& contestant, const std::string& unit, double sample)
    {
        entry("\"row\": \"" + row + "\", \"contestant\": \"" + contestant + "\", \"unit\": \"" + unit + "\"")
            .push_back(sample);
    }

    /// One more sample of a contestant at one point of a growth.
    void addAt(const std::string& growth, const std::string& contestant, double x, const std::string& unit,
               double sample)
    {
        entry("\"growth\": \"" + growth + "\", \"contestant\": \"" + contestant + "\", \"x\": " + std::to_string(x) +
              ", \"unit\": \"" + unit + "\"")
            .push_back(sample);
    }

    bool write(const std::string& name) const
    {
        std::ofstream file(name);
        const char* between = "[";
        for (const auto& entry : m_entries) {
            file << between << "\n  {" << entry.first << ", \"samples\": [";
            for (std::size_t i = 0; i < entry.second.size(); ++i)
                file << (i ? ", " : "") << entry.second[i];
            file << "]}";
            between = ",";
        }
        file << "\n]\n";
        return static_cast<bool>(file.flush());
    }

private:
    std::vector<double>& entry(const std::string& head)
    {
        for (auto& known : m_entries) {
            if (known.first == head)
                return known.second;
        }
        m_entries.emplace_back(head, std::vector<double>());
        return m_entries.back().second;
    }

    std::vector<std::pair<std::string, std::vector<double>>> m_entries;
};

/// --out FILE [--quick]
struct RowOptions
{
    std::string out;
    bool quick = false;

    bool read(int argc, char** argv)
    {
        for (int i = 1; i < argc; ++i) {
            const std::string argument = argv[i];
            if (argument == "--quick")
                quick = true;
            else if (argument == "--out" && i + 1 < argc)
                out = argv[++i];
            else
                return false;
        }
        return !out.empty();
    }
};

/// main() of such a program: measure(rows, quick).
template <class Measure>
int measureRows(int argc, char** argv, Measure measure)
{
    RowOptions options;
    if (!options.read(argc, argv)) {
        std::cerr << "usage: " << argv[0] << " --out FILE [--quick]\n";
        return 2;
    }
    RowFile rows;
    measure(rows, options.quick);
    return rows.write(options.out) ? 0 : 1;
}

}  // namespace bench
}  // namespace zorvel
