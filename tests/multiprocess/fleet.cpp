#include "tests/multiprocess/fleet.h"

#include <algorithm>
#include <cstdlib>
#include <iomanip>
#include <iostream>
#include <sstream>
#include <stdexcept>

namespace zorvel {
namespace test {

namespace {

/// Words of a command, separated by blanks.
Launcher words(const std::string& command)
{
    Launcher result;
    std::size_t from = 0;
    while ((from = command.find_first_not_of(' ', from)) != std::string::npos) {
        const std::size_t to = std::min(command.find(' ', from), command.size());
        result.push_back(command.substr(from, to - from));
        from = to;
    }
    return result;
}

std::vector<std::string> commandLine(const Launcher& launcher, const std::string& directory, int id, const Part& part,
                                     int victim)
{
    std::vector<std::string> command = launcher;
    command.push_back(part.role);
    command.push_back(directory);
    for (const int number : {id, part.holds, part.holdMsec, part.pauseMsec, victim})
        command.push_back(std::to_string(number));
    return command;
}

}  // namespace

std::vector<Launcher> launchers()
{
    // One command a line, set by the build for each run.
    const char* commands = std::getenv("ZORVEL_WORKERS");
    if (!commands)
        throw std::runtime_error("ZORVEL_WORKERS is not set");
    std::vector<Launcher> result;
    std::string rest = commands;
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find('|'), rest.size());
        result.push_back(words(rest.substr(0, end)));
        rest.erase(0, end + 1);
    }
    return result;
}

std::string storyLine(int number, int worker, const std::string& what)
{
    std::ostringstream line;
    line << '[' << std::setw(7) << number << "] worker " << worker << ' ' << what;
    return line.str();
}

Worker::Worker(const Launcher& launcher, const std::string& directory, int id, const Part& part, int victim,
               std::atomic<int>& numbers)
    : m_id(id),
      m_numbers(numbers),
      m_process(commandLine(launcher, directory, id, part, victim)),
      m_ended(false),
      m_reader([this] { read(); })
{
}

Worker::~Worker()
{
    if (m_reader.joinable()) {
        m_process.kill();
        m_reader.join();
    }
}

void Worker::read()
{
    std::string line;
    while (m_process.readLine(line)) {
        const boost::lock_guard<boost::mutex> lock(m_mutex);
        note(line);
        m_changed.notify_all();
    }
    const boost::lock_guard<boost::mutex> lock(m_mutex);
    m_ended = true;
    m_changed.notify_all();
}

void Worker::note(const std::string& line)
{
    std::istringstream words(line);
    std::string first;
    std::string name;
    words >> first;
    ++m_said[first];
    Mark mark = Mark();
    mark.worker = m_id;
    if (first == "mark" && words >> mark.number >> mark.event)
        m_marks.push_back(mark);
    else if (first == "mark?" && words >> mark.event)
        answer(mark.event);
    else if (first == "wrong:")
        m_complaints.push_back("worker " + std::to_string(m_id) + ' ' + line);
    else if (words >> name)
        noteClaim(first, name);
}

void Worker::noteClaim(const std::string& how, const std::string& name)
{
    if (how == "made" || how == "took")
        m_owned.insert(name);
    else if (how == "gone")
        m_owned.erase(name);
    else if (how != "cleared")
        return;
    m_claims.push_back(storyLine(m_numbers, m_id, how + ' ' + name));
}

std::set<std::string> Worker::owned() const
{
    const boost::lock_guard<boost::mutex> lock(m_mutex);
    return m_owned;
}

void Worker::answer(const std::string& event)
{
    m_marks.push_back(Mark{m_numbers++, m_id, event});
    m_process.writeLine(std::to_string(m_marks.back().number));
}

bool Worker::waitSaid(const std::string& word, int times)
{
    boost::unique_lock<boost::mutex> lock(m_mutex);
    const int& said = m_said[word];
    m_changed.wait(lock, [&] { return said >= times || m_ended; });
    return said >= times;
}

int Worker::said(const std::string& word) const
{
    const boost::lock_guard<boost::mutex> lock(m_mutex);
    const auto found = m_said.find(word);
    return found == m_said.end() ? 0 : found->second;
}

void Worker::waitReady()
{
    if (!waitSaid("ready", 1))
        throw std::runtime_error("a worker ended before it was ready");
}

void Worker::go()
{
    m_process.writeLine("go");
}

void Worker::kill()
{
    m_process.kill();
}

int Worker::finish()
{
    m_reader.join();
    std::string errors;
    const int status = m_process.finish(nullptr, &errors);
    if (!errors.empty())
        std::cerr << "worker " << m_id << ": " << errors;
    return status;
}

Fleet::Fleet(const std::string& directory, int size, int holds, int holdMsec)
    : Fleet(directory, std::vector<Part>(size, Part{"exclusive", holds, holdMsec, 0}))
{
}

Fleet::Fleet(const std::string& directory, const std::vector<Part>& parts, int victim)
    : Fleet(launchers(), directory, parts, victim)
{
}

Fleet::Fleet(const std::vector<Launcher>& kinds, const std::string& directory, const std::vector<Part>& parts,
             int victim)
    : m_numbers(0)
{
    for (std::size_t i = 0; i < parts.size(); ++i)
        m_workers.emplace_back(
            new Worker(kinds[i % kinds.size()], directory, static_cast<int>(i), parts[i], victim, m_numbers));
}

void Fleet::waitReady()
{
    for (const auto& worker : m_workers)
        worker->waitReady();
}

void Fleet::go()
{
    for (const auto& worker : m_workers)
        worker->go();
}

int Fleet::held() const
{
    return said("held");
}

int Fleet::said(const std::string& word) const
{
    int sum = 0;
    for (const auto& worker : m_workers)
        sum += worker->said(word);
    return sum;
}

std::vector<Mark> Fleet::marks() const
{
    std::vector<Mark> all;
    for (const auto& worker : m_workers)
        all.insert(all.end(), worker->marks().begin(), worker->marks().end());
    return all;
}

std::vector<std::string> Fleet::complaints() const
{
    std::vector<std::string> all;
    for (const auto& worker : m_workers)
        all.insert(all.end(), worker->complaints().begin(), worker->complaints().end());
    return all;
}

}  // namespace test
}  // namespace zorvel
