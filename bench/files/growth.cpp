#include "bench/files/growth.h"

#include "bench/files/tree_pool.h"

#include <cstring>
#include <fstream>
#include <iostream>
#include <memory>
#include <sstream>

namespace zorvel {
namespace bench {

namespace {

const char* unitOf(const std::string& growth)
{
    return growth.find("memory") != std::string::npos ? "MiB" : "ms";
}

std::string listOf(const std::vector<double>& samples)
{
    std::ostringstream list;
    for (const double sample : samples)
        list << (list.tellp() > 0 ? ", " : "") << sample;
    return list.str();
}

struct Step
{
    std::uint64_t files;
    int walks;
    int removals;
};

/// A million files take most of the time: one removal of them must do.
std::vector<Step> steps(bool isQuick)
{
    if (isQuick)
        return {{1000, 3, 3}, {5000, 3, 2}, {20000, 3, 1}};
    return {{1000, 7, 5}, {10000, 7, 5}, {100000, 5, 2}, {1000000, 3, 1}};
}

void walkAll(Growth& growth, const Step& step, const std::string& path)
{
    costOf("walk", "zorvel", path);
    for (int sample = 0; sample < step.walks; ++sample) {
        for (const char* const contestant : {"zorvel", "fts", "std-filesystem"}) {
            const Cost cost = costOf("walk", contestant, path);
            growth.add("walk", contestant, step.files, cost.milliseconds);
            growth.add("walk-memory", contestant, step.files, cost.mebibytes);
        }
    }
}

void measure(Growth& growth, const Step& step, TreePool& trees)
{
    for (int removal = 0; removal < step.removals; ++removal) {
        const std::string path = trees.take();
        if (removal == 0)
            walkAll(growth, step, path);
        const Cost cost = costOf("remove", "zorvel", path);
        growth.add("removal", "zorvel", step.files, cost.milliseconds);
        growth.add("removal-memory", "zorvel", step.files, cost.mebibytes);
    }
    std::cerr << "growth: " << step.files << " files measured" << std::endl;
}

void measureAll(Growth& growth, const std::vector<Step>& steps)
{
    std::vector<std::unique_ptr<TreePool>> pools;
    for (const Step& step : steps)
        pools.emplace_back(new TreePool("grown-" + std::to_string(step.files), Tree(step.files),
                                        static_cast<std::size_t>(step.removals)));
    for (std::size_t i = 0; i < steps.size(); ++i)
        measure(growth, steps[i], *pools[i]);
}

}  // namespace

void Growth::add(const std::string& growth, const std::string& contestant, std::uint64_t x, double sample)
{
    m_curves[Name(growth, contestant)][x].push_back(sample);
}

std::string Growth::json() const
{
    std::ostringstream text;
    const char* separator = "[\n";
    for (const auto& curve : m_curves) {
        for (const auto& point : curve.second) {
            text << separator << R"(  {"growth": ")" << curve.first.first;
            text << R"(", "contestant": ")" << curve.first.second << R"(", "x": )" << point.first;
            text << R"(, "unit": ")" << unitOf(curve.first.first) << R"(", "samples": [)";
            text << listOf(point.second) << "]}";
            separator = ",\n";
        }
    }
    text << "\n]\n";
    return text.str();
}

}  // namespace bench
}  // namespace zorvel

int main(int argc, char** argv)
{
    using namespace zorvel::bench;
    if (isWorker(argc, argv))
        return 0;
    std::string out;
    bool wantsLess = isQuick();
    for (int i = 1; i < argc; ++i) {
        wantsLess = wantsLess || std::strcmp(argv[i], "--quick") == 0;
        if (std::strcmp(argv[i], "--out") == 0 && i + 1 < argc)
            out = argv[++i];
    }
    if (out.empty()) {
        std::cerr << "usage: bench_rows_files --out FILE [--quick]" << std::endl;
        return 2;
    }
    Growth growth;
    measureAll(growth, steps(wantsLess));
    return (std::ofstream(out) << growth.json()).flush().good() ? 0 : 1;
}
