#include "tests/support/process.h"

#include "tests/support/native_process.h"

#include <algorithm>
#include <thread>

namespace zorvel {
namespace test {

namespace {

void readToEnd(native::Child& child, native::Child::Stream stream, std::string& to)
{
    char buffer[4096];
    while (const std::size_t got = child.read(stream, buffer, sizeof buffer))
        to.append(buffer, got);
}

/// A carriage return stands in no text that a test compares, so all of them go.
std::string withoutCarriageReturns(std::string text)
{
    text.erase(std::remove(text.begin(), text.end(), '\r'), text.end());
    return text;
}

}  // namespace

/// Standard error has a reader of its own, so that a child that writes much of
/// it never waits for a test that is reading the other stream.
struct Process::State
{
    State(const std::vector<std::string>& command, const ProcessOptions& options)
        : child(native::spawn(command, options)),
          errorReader([this] { readToEnd(*child, native::Child::errors, errors); })
    {
    }

    bool takeLine(std::string& line);
    /// A last line that has no line end.
    bool takeRest(std::string& line);
    void reap();

    std::unique_ptr<native::Child> child;
    std::string output;
    std::string errors;
    std::thread errorReader;
    bool running = true;
    int status = -1;
};

bool Process::State::takeLine(std::string& line)
{
    const std::size_t end = output.find('\n');
    if (end == std::string::npos)
        return false;
    line = withoutCarriageReturns(output.substr(0, end));
    output.erase(0, end + 1);
    return true;
}

bool Process::State::takeRest(std::string& line)
{
    line = withoutCarriageReturns(output);
    output.clear();
    return !line.empty();
}

void Process::State::reap()
{
    if (!running)
        return;
    errorReader.join();
    status = child->wait();
    running = false;
}

Process::Process(const std::vector<std::string>& command, const ProcessOptions& options)
    : m_state(new State(command, options))
{
}

Process::~Process()
{
    kill();
    m_state->reap();
    delete m_state;
}

bool Process::readLine(std::string& line)
{
    char buffer[4096];
    while (!m_state->takeLine(line)) {
        const std::size_t got = m_state->child->read(native::Child::output, buffer, sizeof buffer);
        if (got == 0)
            return m_state->takeRest(line);
        m_state->output.append(buffer, got);
    }
    return true;
}

void Process::writeLine(const std::string& line)
{
    m_state->child->write(line + '\n');
}

void Process::kill()
{
    if (m_state->running)
        m_state->child->kill();
}

void Process::pause()
{
    m_state->child->pause();
}

void Process::resume()
{
    m_state->child->resume();
}

int Process::finish(std::string* output, std::string* errors)
{
    m_state->child->closeInput();
    readToEnd(*m_state->child, native::Child::output, m_state->output);
    m_state->reap();
    if (output)
        *output = withoutCarriageReturns(m_state->output);
    if (errors)
        *errors = withoutCarriageReturns(m_state->errors);
    return m_state->status;
}

}  // namespace test
}  // namespace zorvel
