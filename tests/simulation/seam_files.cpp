#include "platform/files.h"

#include "tests/simulation/seam_files.h"
#include "tests/simulation/world.h"

#include <cerrno>
#include <memory>

// The seam's files, on the simulated server. There is one directory, and its lock files are all that lies in it.

namespace zorvel {
namespace sim {

namespace {

const char lockFilesBegin = '.';

/// An answer that may come after whoever asked has gone.
struct TimeAnswer
{
    long long time = 0;
    std::size_t id = 0;
};

/// What a client that goes by names alone takes for the same file.
const std::size_t anyFile = 0;

std::size_t identityOf(std::size_t id)
{
    return World::current()->plan.cachedByName ? anyFile : id;
}

struct OpenFile
{
    std::string name;
    std::size_t id;
};

/// What a descriptor stands for. Files are written at once after they were
/// opened, so far fewer than this are open at a time.
std::vector<OpenFile>& openFiles()
{
    static std::vector<OpenFile>* const files = new std::vector<OpenFile>(1000);
    return *files;
}

int descriptorOf(const std::string& name, std::size_t id)
{
    static std::size_t count = 0;
    const std::size_t descriptor = count++ % openFiles().size();
    openFiles()[descriptor] = OpenFile{name, id};
    return static_cast<int>(descriptor);
}

int askForTime(const char* verb, const std::string& name, std::int64_t& seconds)
{
    const std::shared_ptr<TimeAnswer> answer = std::make_shared<TimeAnswer>();
    World& world = *World::current();
    Process& process = *Process::current();
    const int code = process.request(verb, name, [=, &world](long long) {
        answer->id = world.server.idOf(name);
        return world.server.timeOf(name, answer->time);
    });
    if (code == 0) {
        seconds = answer->time;
        process.machine.remember(name, identityOf(answer->id), world.pace.now(), answer->time);
    }
    return code;
}

}  // namespace

std::string fileOf(const char* path)
{
    const std::string whole(path ? path : "");
    const std::string::size_type separator = whole.find_last_of("/\\");
    const std::string last = separator == std::string::npos ? whole : whole.substr(separator + 1);
    return !last.empty() && last[0] == lockFilesBegin && last.size() > 1 ? last : std::string();
}

}  // namespace sim

namespace platform {

using sim::fileOf;
using sim::Process;
using sim::World;

/// A client knows for certain that its directory is there.
EntryKind entryKind(const char* path)
{
    const std::string name = fileOf(path);
    if (name.empty())
        return EntryKind::directory;
    World& world = *World::current();
    const int code = Process::current()->request("look", name, [=, &world](long long) {
        return world.server.has(name) ? 0 : ENOENT;
    });
    return code == 0 ? EntryKind::file : EntryKind::none;
}

int fileStatus(const char* path, FileStatus& status)
{
    status.mode = 0;
    status.size = 0;
    return modificationTime(path, status.modificationTime);
}

int modificationTime(const char* path, std::int64_t& seconds)
{
    const World& world = *World::current();
    const std::size_t id = sim::identityOf(world.server.idOf(fileOf(path)));
    long long remembered = 0;
    if (Process::current()->machine.remembers(fileOf(path), id, world.pace.now(), remembered)) {
        seconds = remembered;
        return 0;
    }
    return sim::askForTime("time", fileOf(path), seconds);
}

int modificationTimeAtServer(const char* path, std::int64_t& seconds)
{
    return sim::askForTime("time again", fileOf(path), seconds);
}

int changeMode(const char*, unsigned short)
{
    return 0;
}

bool availableSpace(const char*, std::uint64_t& bytes)
{
    bytes = 0;
    return true;
}

int makeDirectory(const char*)
{
    return EEXIST;
}

int removeFile(const char* path)
{
    const std::string name = fileOf(path);
    World& world = *World::current();
    Process& process = *Process::current();
    const int self = process.number;
    const int code =
        process.request("remove", name, [=, &world](long long) { return world.server.remove(name, self); });
    process.machine.forget(name);
    return code;
}

int WritableFile::open(const char* path, OpenMode mode)
{
    close();
    const std::string name = fileOf(path);
    const bool isNew = mode == OpenMode::createNew;
    World& world = *World::current();
    Process& process = *Process::current();
    const int self = process.number;
    const std::shared_ptr<std::size_t> id = std::make_shared<std::size_t>(0);
    const int code = process.request(isNew ? "create" : "open", name, [=, &world](long long now) {
        return isNew ? world.server.createNew(name, self, now, *id) : world.server.createOrOpen(name, self, now, *id);
    });
    if (code != 0)
        return code;
    process.machine.forget(name);
    m_descriptor = sim::descriptorOf(name, *id);
    return 0;
}

int WritableFile::write(const void*, std::size_t)
{
    if (m_descriptor == -1)
        return EBADF;
    const sim::OpenFile file = sim::openFiles()[static_cast<std::size_t>(m_descriptor)];
    World& world = *World::current();
    Process& process = *Process::current();
    const int self = process.number;
    const int code = process.request("write", file.name, [=, &world](long long now) {
        return world.server.write(file.name, file.id, self, now);
    });
    process.machine.forget(file.name);
    return code;
}

int WritableFile::flush()
{
    return 0;
}

void WritableFile::close()
{
    m_descriptor = -1;
}

}  // namespace platform
}  // namespace zorvel
