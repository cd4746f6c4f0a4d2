#include "tests/support/child.h"
#include "tests/unit/modules/real_libraries.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <set>
#include <string>

using namespace zorvel::test;

namespace {

const std::size_t number = 150;

std::string nameOf(std::size_t index)
{
    return "many" + std::to_string(index) + librarySuffix();
}

/// Copies of one library, all loaded.
class ManyLibraries
{
public:
    explicit ManyLibraries(const TemporaryTree& tree)
    {
        for (std::size_t index = 0; index < number; ++index) {
            copyPlainLibrary(tree, nameOf(index));
            m_libraries.emplace_back(new Loaded(tree.path(nameOf(index))));
        }
    }

    bool areLoaded() const
    {
        std::set<void*> handles;
        for (const std::unique_ptr<Loaded>& library : m_libraries)
            handles.insert(library->get());
        return handles.size() == number && handles.count(nullptr) == 0;
    }

private:
    std::vector<std::unique_ptr<Loaded>> m_libraries;
};

void say(const char* what, bool holds)
{
    std::printf("%s: %s\n", what, holds ? "yes" : "NO");
}

bool isEachVisitedOnce(const TemporaryTree& tree, const std::vector<std::string>& paths)
{
    const std::multiset<std::string> visited(paths.begin(), paths.end());
    for (std::size_t index = 0; index < number; ++index)
        if (visited.count(tree.path(nameOf(index))) != 1)
            return false;
    return true;
}

std::vector<std::string> walkBack(const zvLoadedModuleList& list)
{
    std::vector<std::string> paths;
    for (zvLoadedModuleListIterator at = list.end(); at != list.begin();)
        paths.insert(paths.begin(), *--at);
    return paths;
}

/// Loads the libraries, and says what it sees of them.
int loadMany(const std::vector<std::string>&)
{
    const zvLoadedModuleList before;
    const TemporaryTree tree;
    const ManyLibraries libraries(tree);
    say("all are loaded", libraries.areLoaded());
    const zvLoadedModuleList list;
    const std::vector<std::string> paths = walkThrough(list);
    say("the executable comes first", *list.begin() == executable());
    say("as many as were loaded", list.end().getIndex() >= before.end().getIndex() + number);
    say("each of them once", isEachVisitedOnce(tree, paths));
    say("the same from the end", walkBack(list) == paths);
    const std::string last = nameOf(number - 1);
    say("the last one is found", lookUpReal(last.c_str()) == tree.path(last));
    say("by what it exports", lookUpReal(last.c_str(), {"plain_answer"}) == tree.path(last));
    say("not by what it lacks", lookUpReal("many", {"plain_question"}) == "none");
    return 0;
}

const ChildMode mode("load-many", &loadMany);

}  // namespace

TEST(ManyLibraries, AreAllInTheSnapshot)
{
    const ChildResult child = runChild("load-many");
    EXPECT_EQ(child.status, 0);
    EXPECT_EQ(child.errors, "");
    EXPECT_EQ(child.output, "all are loaded: yes\n"
                            "the executable comes first: yes\n"
                            "as many as were loaded: yes\n"
                            "each of them once: yes\n"
                            "the same from the end: yes\n"
                            "the last one is found: yes\n"
                            "by what it exports: yes\n"
                            "not by what it lacks: yes\n");
}
