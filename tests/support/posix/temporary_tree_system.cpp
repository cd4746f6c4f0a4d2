#include "tests/support/temporary_tree_system.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <fstream>
#include <iterator>
#include <memory>
#include <stdexcept>

namespace zorvel {
namespace test {
namespace native {

namespace {

void check(bool done, const std::string& path)
{
    if (!done)
        throw std::runtime_error(path + ": " + std::strerror(errno));
}

/// The length of the character at the beginning, in the current locale; what
/// is no character counts as one byte.
std::size_t characterLength(const char* text, std::size_t size)
{
    std::mbstate_t state = std::mbstate_t();
    const std::size_t length = std::mbrlen(text, size, &state);
    return length == 0 || length > size ? 1 : length;
}

/// `\` separates, unless it is the second byte of a character.
std::string nativePath(std::string path)
{
    for (std::size_t at = 0; at < path.size(); at += characterLength(&path[at], path.size() - at))
        if (path[at] == '\\')
            path[at] = '/';
    return path;
}

std::string libraryPath(std::string path)
{
    for (char& byte : path)
        if (byte == '/')
            byte = '\\';
    return path;
}

std::vector<std::string> namesIn(const std::string& directory)
{
    const std::unique_ptr<DIR, int (*)(DIR*)> open(opendir(directory.c_str()), &closedir);
    check(open != nullptr, directory);
    std::vector<std::string> found;
    while (const dirent* entry = readdir(open.get()))
        if (std::strcmp(entry->d_name, ".") != 0 && std::strcmp(entry->d_name, "..") != 0)
            found.push_back(entry->d_name);
    return found;
}

/// Takes a native path: names found on disk are never translated.
void removeNative(const std::string& path)
{
    struct stat status;
    check(lstat(path.c_str(), &status) == 0, path);
    if (!S_ISDIR(status.st_mode)) {
        check(unlink(path.c_str()) == 0, path);
        return;
    }
    chmod(path.c_str(), 0700);
    for (const std::string& name : namesIn(path))
        removeNative(path + '/' + name);
    check(rmdir(path.c_str()) == 0, path);
}

struct stat statusOf(const std::string& path)
{
    struct stat status;
    check(stat(nativePath(path).c_str(), &status) == 0, path);
    return status;
}

}  // namespace

std::string makeUniqueDirectory()
{
    const char* const configured = std::getenv("TMPDIR");
    std::string path = std::string(configured ? configured : "/tmp") + "/zorvel-test-XXXXXX";
    check(mkdtemp(&path[0]) != nullptr, path);
    check(chmod(path.c_str(), 0777) == 0, path);
    return libraryPath(path);
}

void makeDirectory(const std::string& path)
{
    check(mkdir(nativePath(path).c_str(), 0777) == 0, path);
}

void makeFile(const std::string& path, const std::string& content)
{
    std::ofstream file(nativePath(path), std::ios::binary | std::ios::trunc);
    check((file << content).flush().good(), path);
}

void makeLink(const std::string& target, const std::string& path)
{
    check(symlink(nativePath(target).c_str(), nativePath(path).c_str()) == 0, path);
}

void removeTree(const std::string& path)
{
    removeNative(nativePath(path));
}

bool exists(const std::string& path)
{
    struct stat status;
    return lstat(nativePath(path).c_str(), &status) == 0;
}

std::string content(const std::string& path)
{
    std::ifstream file(nativePath(path), std::ios::binary);
    check(file.good(), path);
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

std::vector<std::string> names(const std::string& path)
{
    return namesIn(nativePath(path));
}

void moveModificationTime(const std::string& path, long seconds)
{
    const struct stat status = statusOf(path);
    timespec times[2] = {status.st_atim, status.st_mtim};
    times[1].tv_sec += seconds;
    check(utimensat(AT_FDCWD, nativePath(path).c_str(), times, 0) == 0, path);
}

long long modificationTime(const std::string& path)
{
    return statusOf(path).st_mtim.tv_sec;
}

void makeReadOnly(const std::string& path)
{
    check(chmod(nativePath(path).c_str(), statusOf(path).st_mode & 07777 & ~(S_IWUSR | S_IWGRP | S_IWOTH)) == 0, path);
}

bool isReadOnly(const std::string& path)
{
    return (statusOf(path).st_mode & S_IWUSR) == 0;
}

}  // namespace native
}  // namespace test
}  // namespace zorvel
