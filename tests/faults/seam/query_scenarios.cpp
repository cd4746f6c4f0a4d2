#include "tests/faults/seam/scenario.h"
#include "tests/support/temporary_tree.h"

#include <zorvel/fsutil.h>

#include <gtest/gtest.h>

namespace zorvel {
namespace test {
namespace seam {

namespace {

using namespace seam_faults;

class QueryRun : public Run
{
public:
    QueryRun() { m_tree.file("file", "seven b"); }
    void check(const std::string&, const Faults&) override { EXPECT_EQ("seven b", m_tree.content("file")); }

protected:
    std::string file() const { return m_tree.path("file"); }

    const TemporaryTree m_tree;
};

class FileSize : public QueryRun
{
public:
    std::string act() override { return std::to_string(zvGetFileSize(file().c_str())); }
};

class Kinds : public QueryRun
{
public:
    std::string act() override
    {
        const bool isThere = zvFileOrDirExists(file().c_str());
        const bool isFile = zvFileExists(file().c_str());
        const bool isDirectory = zvIsDirectory(file().c_str());
        return std::string(textOf(isThere)) + "," + textOf(isFile) + "," + textOf(isDirectory);
    }
};

/// All bits are set when the space cannot be told.
class Space : public QueryRun
{
public:
    std::string act() override
    {
        zvUInt64 bytes = 0;
        const bool isKnown = zvGetFileSystemAvailableSpace(m_tree.root().c_str(), &bytes);
        EXPECT_EQ(!isKnown, bytes == ~zvUInt64(0));
        return textOf(isKnown);
    }
};

/// Read, taken away, given back.
class Permissions : public QueryRun
{
public:
    std::string act() override
    {
        const std::string path = file();
        const bool isRead = zvGetFilePermissions(path.c_str()) != 0;
        const unsigned short before = zvDisableWritePermission(path.c_str());
        const unsigned short between = zvEnableWritePermission(path.c_str());
        const bool isSet = before != 0 && zvSetFilePermissions(path.c_str(), before) == 0;
        return std::string(textOf(isRead)) + "," + textOf(before != 0) + "," + textOf(between != 0) + "," +
               textOf(isSet);
    }
};

}  // namespace

Scenarios queryScenarios()
{
    const Persistence once = Persistence::once;
    const Persistence ever = Persistence::ever;
    const Persistence both = Persistence::both;
    const Rules kinds = {
        {entryKind, "none", once, "false,true,false true,false,false true,true,false"},
        {entryKind, "none", ever, "false,false,false true,false,false true,true,false"},
        {entryKind, "directory link", once, "true,true,false true,false,false true,true,true"},
        {entryKind, "directory link", ever, "true,false,true true,true,true"},
    };
    // The third is asked of a mode that the second has changed.
    const Rules permissions = {
        {fileStatus, "", once, "false,true,true,true true,false,true,false true,true,false,true"},
        {fileStatus, "", ever, "false,false,false,false true,false,false,false true,true,false,true"},
        {changeMode, "", once, "true,true,true,true true,true,true,false"},
        {changeMode, "", ever, "true,true,true,false"},
    };
    return {
        {"file_size", &make<FileSize>, "7", {{fileStatus, "", both, "0"}}},
        {"kinds", &make<Kinds>, "true,true,false", kinds},
        {"space", &make<Space>, "true", {{availableSpace, "", both, "false"}}},
        {"permissions", &make<Permissions>, "true,true,true,true", permissions, 1000, "true,true,false,false"},
    };
}

}  // namespace seam
}  // namespace test
}  // namespace zorvel
