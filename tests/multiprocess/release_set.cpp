#include "tests/multiprocess/release_set.h"

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <random>
#include <sstream>
#include <stdexcept>
#include <thread>

namespace zorvel {
namespace test {

namespace {

std::uint64_t sumOf(const std::vector<std::string>& payloads)
{
    std::uint64_t sum = 14695981039346656037u;
    for (const std::string& payload : payloads)
        for (const unsigned char byte : payload)
            sum = (sum ^ byte) * 1099511628211u;
    return sum;
}

/// Of another length each time, so that a mixture is found by its length too.
std::string payloadOf(int generation, int writer, int index)
{
    std::mt19937 random(generation * 8191u + writer * 131u + index);
    std::string payload(100 + random() % 3000, ' ');
    for (char& byte : payload)
        byte = static_cast<char>('a' + random() % 26);
    return payload;
}

std::string headerOf(int generation, int writer, std::uint64_t sum)
{
    return std::to_string(generation) + ' ' + std::to_string(writer) + ' ' + std::to_string(sum) + '\n';
}

std::string contentOf(const std::filesystem::path& path)
{
    std::ifstream stream(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
}

void put(const std::filesystem::path& path, const std::string& content)
{
    std::ofstream stream(path, std::ios::binary | std::ios::trunc);
    stream.write(content.data(), static_cast<std::streamsize>(content.size()));
    stream.close();
    if (!stream)
        throw std::runtime_error("cannot write " + path.string());
}

/// What is wrong with the files, or nothing. The files of a whole release have
/// the same first line.
std::string faultIn(const std::vector<std::string>& files, int& generation, int& writer)
{
    const std::string header = files[0].substr(0, files[0].find('\n') + 1);
    std::uint64_t sum = 0;
    if (!(std::istringstream(header) >> generation >> writer >> sum) || header != headerOf(generation, writer, sum))
        return "file 0 is no file of a release";
    std::vector<std::string> payloads;
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (files[i].compare(0, header.size(), header) != 0)
            return "file " + std::to_string(i) + " is not of the generation of file 0";
        payloads.push_back(files[i].substr(header.size()));
    }
    return sumOf(payloads) == sum ? std::string() : "the sum is wrong";
}

}  // namespace

std::vector<std::string> releaseFiles(int generation, int writer)
{
    std::vector<std::string> files;
    for (int i = 0; i < releaseSize; ++i)
        files.push_back(payloadOf(generation, writer, i));
    const std::string header = headerOf(generation, writer, sumOf(files));
    for (std::string& file : files)
        file.insert(0, header);
    return files;
}

Look judge(const std::vector<std::string>& files, const std::set<int>& writing)
{
    Look look;
    look.files = files;
    look.writing = writing;
    look.fault = faultIn(files, look.generation, look.writer);
    return look;
}

std::set<int> numbersIn(const std::vector<std::string>& names, const std::string& opening)
{
    std::set<int> numbers;
    for (const std::string& name : names)
        if (name.compare(0, opening.size() + 1, opening + '.') == 0)
            numbers.insert(std::atoi(name.c_str() + opening.size() + 1));
    return numbers;
}

ReleaseSet::ReleaseSet(const std::filesystem::path& directory) : m_directory(directory) {}

void ReleaseSet::write(int generation, int writer, const std::function<void()>& halfWay) const
{
    const std::set<int> killed = writers();
    put(writingFile(writer), std::string());
    replace(generation, writer, halfWay);
    for (const int other : killed)
        std::filesystem::remove(writingFile(other));
    std::filesystem::remove(writingFile(writer));
}

void ReleaseSet::replace(int generation, int writer, const std::function<void()>& halfWay) const
{
    const std::vector<std::string> files = releaseFiles(generation, writer);
    for (int i = 0; i < releaseSize; ++i) {
        if (i == releaseSize / 2)
            halfWay();
        put(file(i), files[i]);
        std::this_thread::yield();
    }
}

Look ReleaseSet::look() const
{
    const std::set<int> writing = writers();
    Look look = content();
    look.writing = writing;
    return look;
}

Look ReleaseSet::content() const
{
    std::vector<std::string> files;
    for (int i = 0; i < releaseSize; ++i)
        files.push_back(contentOf(file(i)));
    return judge(files, std::set<int>());
}

std::filesystem::path ReleaseSet::file(int index) const
{
    return m_directory / ("release." + std::to_string(index));
}

std::filesystem::path ReleaseSet::writingFile(int writer) const
{
    return m_directory / ("writing." + std::to_string(writer));
}

std::set<int> ReleaseSet::writers() const
{
    return numbersIn(namesIn(m_directory), "writing");
}

std::vector<std::string> namesIn(const std::filesystem::path& directory)
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(directory))
        names.push_back(entry.path().filename().string());
    return names;
}

}  // namespace test
}  // namespace zorvel
