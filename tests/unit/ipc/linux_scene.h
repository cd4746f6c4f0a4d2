#pragma once

#include "tests/support/posix/own_process.h"
#include "tests/support/posix/own_shared_memory.h"
#include "tests/unit/ipc/real_scene.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace zorvel {
namespace test {

/// Semaphores in a /dev/shm that nobody else uses.
class LinuxScene : public RealScene
{
protected:
    static const char* directory() { return "/dev/shm"; }

    /// Names of the files that are there.
    static std::vector<std::string> files()
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(directory()))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }

    /// The file of a name that nobody has open.
    static std::string fileOf(const std::string& name)
    {
        const std::vector<std::string> before = files();
        const auto semaphore = opened(name);
        for (const std::string& file : files())
            if (!std::binary_search(before.begin(), before.end(), file))
                return directory() + ('/' + file);
        ADD_FAILURE() << "no file appeared for " << name;
        return std::string();
    }

    static void write(const std::string& path, const std::string& content)
    {
        std::ofstream(path, std::ios::binary) << content;
    }
    static std::string read(const std::string& path)
    {
        std::ostringstream content;
        content << std::ifstream(path, std::ios::binary).rdbuf();
        return content.str();
    }

    static bool isFree(const std::string& name)
    {
        const auto visitor = opened(name);
        return visitor->TryAcquire() && visitor->Release();
    }

    /// Every time Open() is false, with the text of the code (0: of any), and
    /// nothing stays behind in the process.
    void expectRefused(const std::string& name, unsigned long code)
    {
        const std::size_t descriptors = openDescriptors();
        const std::size_t mappings = mappingsBelow(directory());
        for (int i = 0; i < 10; ++i) {
            zvSemaphoreIPC semaphore(name, 1, false);
            EXPECT_FALSE(semaphore.Open());
            EXPECT_FALSE(semaphore.IsValid());
            EXPECT_FALSE(semaphore.Acquire(false));
            EXPECT_FALSE(semaphore.Release());
            EXPECT_EQ(openFailed(name, code), messages());
        }
        EXPECT_EQ(descriptors, openDescriptors());
        EXPECT_EQ(mappings, mappingsBelow(directory()));
    }

    OwnSharedMemory memory;
};

}  // namespace test
}  // namespace zorvel
