#include "tests/faults/seam/scenario.h"

#include "tests/support/system_facts.h"
#include "tests/unit/modules/real_libraries.h"

#include <zorvel/modules.h>

#include <boost/system/system_error.hpp>

#include <gtest/gtest.h>

#include <cstring>

namespace zorvel {
namespace test {
namespace seam {

namespace {

using namespace seam_faults;

const std::size_t pathSize = 2562;

class ModuleRun : public Run
{
public:
    void check(const std::string&, const Faults&) override {}
};

/// The names of all modules; one that the system cannot tell is the one before.
class List : public ModuleRun
{
public:
    std::string act() override
    {
        const zvLoadedModuleList modules;
        std::size_t count = 0;
        std::size_t named = 0;
        const zvLoadedModuleListIterator end = modules.end();
        for (zvLoadedModuleListIterator module = modules.begin(); module != end; ++module) {
            ++count;
            named += **module != '\0';
        }
        return count < 2 ? "few" : named == count ? "all" : named == 0 ? "unnamed" : "some";
    }
};

/// More than fit in the list itself, so that the system is asked twice. The
/// caller is told which of the two failed.
class ListOfMany : public ModuleRun
{
public:
    ListOfMany()
    {
        for (int index = 0; index < 130; ++index) {
            const std::string name = "many" + std::to_string(index) + librarySuffix();
            copyPlainLibrary(m_tree, name);
            m_libraries.emplace_back(new Loaded(m_tree.path(name)));
        }
    }

    std::string act() override
    {
        try {
            const zvLoadedModuleList modules;
            return modules.end().getIndex() > 130 ? "all" : "few";
        } catch (const boost::system::system_error& error) {
            return std::strstr(error.what(), "on second call") ? "second" : "first";
        }
    }

    void check(const std::string& ending, const Faults& faults) override
    {
        if (contains(faults, listModules)) {
            EXPECT_EQ(faults[0].call == 1 ? "first" : "second", ending);
        }
    }

private:
    const TemporaryTree m_tree;
    std::vector<std::unique_ptr<Loaded>> m_libraries;
};

/// By a part of its name, with a symbol that it must export.
class Lookup : public ModuleRun
{
public:
    explicit Lookup(const char* symbol = nullptr) : m_symbol(symbol) { std::strcpy(m_path, "left"); }

    std::string act() override
    {
        char* const found = zvGetLoadedModuleFullPath(m_path, systemLibrary(), m_symbol ? &m_symbol : nullptr, 1);
        EXPECT_TRUE(!found || found == m_path);
        return found ? "found" : "null";
    }

    void check(const std::string& ending, const Faults&) override
    {
        EXPECT_EQ(ending == "found", std::strstr(m_path, systemLibrary()) != nullptr) << m_path;
        EXPECT_EQ(ending != "found", std::strcmp(m_path, "left") == 0) << m_path;
    }

private:
    const char* m_symbol;
    char m_path[pathSize];
};

class LookupOfSymbol : public Lookup
{
public:
    LookupOfSymbol() : Lookup(systemSymbol()) {}
};

class OwnPath : public ModuleRun
{
public:
    std::string act() override
    {
        std::memset(m_path, 'x', sizeof m_path);
        return textOf(zvGetCurrentModulePath(nullptr, m_path, sizeof m_path));
    }

    void check(const std::string& ending, const Faults&) override
    {
        EXPECT_EQ(ending == "true", *m_path != '\0');
        EXPECT_EQ('\0', m_path[sizeof m_path - 1]);
    }

private:
    char m_path[pathSize];
};

}  // namespace

Scenarios moduleScenarios()
{
    const Persistence once = Persistence::once;
    const Persistence ever = Persistence::ever;
    const Persistence both = Persistence::both;
    const Rules listing = {{listModules, "", both, "system_error"}};
    const Rules naming =
        Rules{
            {moduleFileName, "", once, "all some"},
            {moduleFileName, "", ever, "all unnamed"},
        } +
        listing;
    const Rules looking =
        Rules{
            {moduleFileName, "", once, "found null"},
            {moduleFileName, "", ever, "null"},
            {loadLibrary, "", both, "null"},
            {findSymbol, "", both, "null"},
        } +
        listing;
    return {
        {"module_list", &make<List>, "all", naming, 4},
        {"module_list_of_many", &make<ListOfMany>, "all", {{listModules, "", both, "first second"}}, 2},
        {"module_lookup", &make<Lookup>, "found", looking},
        {"module_lookup_of_symbol", &make<LookupOfSymbol>, "found", looking},
        {"module_own_path", &make<OwnPath>, "true", {{ownModuleFileName, "", both, "false"}}},
    };
}

}  // namespace seam
}  // namespace test
}  // namespace zorvel
