#include "tests/unit/modules/fake_modules.h"

#include "platform/modules.h"
#include "tests/support/system_facts.h"

#include <algorithm>
#include <cstring>
#include <deque>
#include <map>

namespace zorvel {
namespace test {
namespace fake_modules {

namespace {

struct State
{
    std::deque<Enumeration> answers;
    std::map<void*, std::string> names;
    std::vector<Enumerated> enumerations;
    std::vector<NameQuestion> questions;
};

State& state()
{
    static State only;
    return only;
}

char theProcess;
char theModules[1 << 16];

/// The name in the buffer, cut where it does not fit; the buffer as it was when
/// there is none.
std::uint32_t storeName(void* module, char* buffer, std::uint32_t size)
{
    const std::map<void*, std::string>::const_iterator found = state().names.find(module);
    if (found == state().names.end() || size == 0)
        return 0;
    const std::size_t length = std::min<std::size_t>(found->second.size(), size - 1);
    std::memcpy(buffer, found->second.data(), length);
    buffer[length] = '\0';
    return static_cast<std::uint32_t>(length);
}

}  // namespace

void* process()
{
    return &theProcess;
}

void* handle(std::size_t index)
{
    return theModules + index;
}

std::vector<void*> handles(std::size_t first, std::size_t count)
{
    std::vector<void*> all;
    for (std::size_t index = first; index < first + count; ++index)
        all.push_back(handle(index));
    return all;
}

std::string nameOf(std::size_t index)
{
    return "\\modules\\module" + std::to_string(index);
}

void answer(const Enumeration& next)
{
    state().answers.push_back(next);
}

void answerWith(const std::vector<void*>& modules)
{
    answer(Enumeration{true, 0, modules, static_cast<std::uint32_t>(modules.size() * sizeof(void*))});
}

void answerWithFailure(unsigned long code)
{
    answer(Enumeration{false, code, {}, 0});
}

void setName(void* module, const std::string& name)
{
    state().names[module] = name;
}

void removeName(void* module)
{
    state().names.erase(module);
}

void addModules(const std::vector<std::string>& names)
{
    for (std::size_t index = 0; index < names.size(); ++index)
        setName(handle(index), names[index]);
    answerWith(handles(0, names.size()));
    if (names.size() > 128)
        answerWith(handles(0, names.size()));
}

void addModules(std::size_t count)
{
    std::vector<std::string> names;
    for (std::size_t index = 0; index < count; ++index)
        names.push_back(nameOf(index));
    addModules(names);
}

const std::vector<Enumerated>& enumerations()
{
    return state().enumerations;
}

const std::vector<NameQuestion>& nameQuestions()
{
    return state().questions;
}

Scope::Scope()
{
    state() = State();
}

Scope::~Scope()
{
    state() = State();
}

}  // namespace fake_modules
}  // namespace test

namespace platform {

namespace fake = test::fake_modules;

void* currentProcess()
{
    return fake::process();
}

bool listModules(void* process, void** modules, std::uint32_t size, std::uint32_t& needed)
{
    fake::State& state = fake::state();
    state.enumerations.push_back(fake::Enumerated{process, size});
    fake::Enumeration next{true, 0, {}, 0};
    if (!state.answers.empty()) {
        next = state.answers.front();
        state.answers.pop_front();
    }
    std::copy_n(next.handles.begin(), std::min<std::size_t>(next.handles.size(), size / sizeof(void*)), modules);
    needed = next.needed;
    if (!next.done)
        test::setLastError(next.code);
    return next.done;
}

std::uint32_t moduleFileName(void* process, void* module, char* buffer, std::uint32_t size)
{
    fake::state().questions.push_back(fake::NameQuestion{process, module, size});
    return fake::storeName(module, buffer, size);
}

std::uint32_t moduleFileName(void* module, char* buffer, std::uint32_t size)
{
    return moduleFileName(nullptr, module, buffer, size);
}

}  // namespace platform
}  // namespace zorvel
