#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace zorvel {
namespace bench {

/// The work of a contestant on a path; gives what it found, or how much it
/// did.
typedef std::uint64_t (*Work)(const std::string& path);

/// Of a process only its success is known: it stands for the right result.
const std::uint64_t succeeded = ~std::uint64_t(0);

/// A row whose contestants look at one tree, which does not change.
class LookRow
{
public:
    /// expected: what each must find.
    LookRow(const std::string& name, const std::string& path, std::uint64_t expected, int repetitions);

    /// Without work it takes no part.
    void add(const char* contestant, Work work) const;

private:
    std::string m_name;
    std::string m_path;
    std::uint64_t m_expected;
    int m_repetitions;
};

/// A row whose contestants change something, which is prepared before each and
/// checked after it; neither is measured. With several rounds in a repetition
/// the unit is the microsecond.
class ChangeRow
{
public:
    typedef std::function<std::string()> Preparation;  ///< gives the path for the work
    typedef std::function<bool(const std::string& path)> Check;

    ChangeRow(const std::string& name, int rounds, int repetitions, Preparation prepare, Check check);

    /// What the work gives is its success: not 0.
    void add(const char* contestant, Work work) const;

private:
    std::string m_name;
    int m_rounds;
    int m_repetitions;
    Preparation m_prepare;
    Check m_check;
};

}  // namespace bench
}  // namespace zorvel
