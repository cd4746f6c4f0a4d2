#include "tests/support/temporary_tree.h"

#include "tests/support/temporary_tree_system.h"

#include <algorithm>
#include <cstdio>
#include <exception>

namespace zorvel {
namespace test {

TemporaryTree::TemporaryTree() : m_root(native::makeUniqueDirectory()) {}

TemporaryTree::~TemporaryTree()
{
    try {
        native::removeTree(m_root);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "a temporary tree stays: %s\n", error.what());
    }
}

std::string TemporaryTree::path(const std::string& relative) const
{
    return relative.empty() ? m_root : m_root + '\\' + relative;
}

void TemporaryTree::directory(const std::string& relative) const
{
    native::makeDirectory(path(relative));
}

void TemporaryTree::file(const std::string& relative, const std::string& content) const
{
    native::makeFile(path(relative), content);
}

void TemporaryTree::link(const std::string& target, const std::string& relative) const
{
    native::makeLink(path(target), path(relative));
}

void TemporaryTree::removeDirectory(const std::string& relative) const
{
    native::removeTree(path(relative));
}

bool TemporaryTree::exists(const std::string& relative) const
{
    return native::exists(path(relative));
}

std::string TemporaryTree::content(const std::string& relative) const
{
    return native::content(path(relative));
}

std::vector<std::string> TemporaryTree::names(const std::string& relative) const
{
    std::vector<std::string> found = native::names(path(relative));
    std::sort(found.begin(), found.end());
    return found;
}

void TemporaryTree::age(const std::string& relative, long seconds) const
{
    native::moveModificationTime(path(relative), seconds);
}

long long TemporaryTree::modificationTime(const std::string& relative) const
{
    return native::modificationTime(path(relative));
}

void TemporaryTree::makeReadOnly(const std::string& relative) const
{
    native::makeReadOnly(path(relative));
}

bool TemporaryTree::isReadOnly(const std::string& relative) const
{
    return native::isReadOnly(path(relative));
}

}  // namespace test
}  // namespace zorvel
