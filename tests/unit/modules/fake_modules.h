#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace zorvel {
namespace test {

/// Modules that a test makes up. fake_modules.cpp defines the functions of
/// platform/modules.h: a test program that lists it among its own sources has
/// these modules everywhere in the library. One thread at a time.
namespace fake_modules {

/// What one enumeration answers, and how it was asked.
struct Enumeration
{
    bool done;                   ///< whether it succeeds
    unsigned long code;          ///< the last error that a failure leaves
    std::vector<void*> handles;  ///< as many as fit are stored
    std::uint32_t needed;        ///< the bytes reported
};

struct Enumerated
{
    void* process;
    std::uint32_t size;
};

/// What the name of a module was asked with. The process is null where the
/// question was about the calling process.
struct NameQuestion
{
    void* process;
    void* module;
    std::uint32_t size;
};

/// The process of all questions.
void* process();

/// The handle number `index`, and as many from number `first` on.
void* handle(std::size_t index);
std::vector<void*> handles(std::size_t first, std::size_t count);

/// The name that module number `index` has after addModules().
std::string nameOf(std::size_t index);

/// An enumeration to come. Without any left an enumeration reports no module.
void answer(const Enumeration& next);
void answerWith(const std::vector<void*>& modules);
void answerWithFailure(unsigned long code);

/// Gives a handle a name; a handle without one has none.
void setName(void* module, const std::string& name);
void removeName(void* module);

/// So many modules with names, reported by every enumeration that a snapshot
/// of them needs.
void addModules(std::size_t count);
/// The same with given names.
void addModules(const std::vector<std::string>& names);

const std::vector<Enumerated>& enumerations();
const std::vector<NameQuestion>& nameQuestions();

/// No modules and nothing asked, at the beginning and at the end of a test.
class Scope
{
public:
    Scope();
    ~Scope();
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;
};

}  // namespace fake_modules
}  // namespace test
}  // namespace zorvel
