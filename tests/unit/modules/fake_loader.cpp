#include "tests/unit/modules/fake_loader.h"

#include "platform/loader.h"

#include <map>

namespace zorvel {
namespace test {
namespace fake_loader {

namespace {

struct Library
{
    std::string path;
    std::set<std::string> symbols;
    int holds;
};

struct State
{
    std::map<std::string, Library> libraries;
    std::vector<std::string> log;
};

State& state()
{
    static State only;
    return only;
}

/// The library behind a handle, if it is loaded.
Library* loaded(void* handle)
{
    for (auto& entry : state().libraries)
        if (&entry.second == handle && entry.second.holds > 0)
            return &entry.second;
    return nullptr;
}

void note(const std::string& line)
{
    state().log.push_back(line);
}

char address;

}  // namespace

void add(const std::string& path, const std::set<std::string>& symbols)
{
    state().libraries[path] = Library{path, symbols, 0};
}

const std::vector<std::string>& log()
{
    return state().log;
}

Scope::Scope()
{
    state() = State();
}

Scope::~Scope()
{
    state() = State();
}

}  // namespace fake_loader
}  // namespace test

namespace platform {

namespace fake = test::fake_loader;

void* loadLibrary(const char* path)
{
    fake::note(std::string("load ") + path);
    const auto found = fake::state().libraries.find(path);
    if (found == fake::state().libraries.end())
        return nullptr;
    ++found->second.holds;
    return &found->second;
}

void* findSymbol(void* library, const char* symbol)
{
    if (!symbol)
        return nullptr;
    const fake::Library* const known = fake::loaded(library);
    fake::note((known ? "" : "refused: ") + std::string("find ") + symbol + (known ? " in " + known->path : ""));
    return known && known->symbols.count(symbol) > 0 ? &fake::address : nullptr;
}

bool unloadLibrary(void* library)
{
    fake::Library* const known = fake::loaded(library);
    fake::note(known ? "unload " + known->path : "refused: unload");
    if (known)
        --known->holds;
    return known != nullptr;
}

}  // namespace platform
}  // namespace zorvel
