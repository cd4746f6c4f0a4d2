#include "examples/deploy_demo/release_store.h"

#include <boost/crc.hpp>

#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <system_error>

namespace zorvel {
namespace demo {

namespace fs = std::filesystem;

namespace {

const char finishedName[] = "manifest";
const char unfinishedName[] = "manifest.unfinished";

/// Binary: both systems read each other's files and compare checksums.
void writeAll(const fs::path& name, const std::string& content)
{
    std::ofstream stream(name, std::ios::binary);
    stream << content << std::flush;
    if (!stream)
        throw std::runtime_error("cannot write " + name.string());
}

/// Empty when there is no such file.
std::string readAll(const fs::path& name)
{
    std::ifstream stream(name, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
}

std::uint32_t sumOf(const std::string& content)
{
    boost::crc_32_type sum;
    sum.process_bytes(content.data(), content.size());
    return sum.checksum();
}

std::string headOf(int release)
{
    return "release " + std::to_string(release) + ' ';
}

std::string contentOf(int release, int file, const std::string& author)
{
    const std::string line = headOf(release) + "file " + std::to_string(file) + " by " + author + '\n';
    std::string content;
    for (int i = 0; i < 64; ++i)
        content += line;
    return content;
}

std::string titleOf(int release, const std::string& author)
{
    return headOf(release) + "by " + author + '\n';
}

Manifest parse(const std::string& text, Manifest::State state)
{
    std::istringstream stream(text);
    std::string word;
    Manifest manifest;
    if (!(stream >> word >> manifest.release >> word >> manifest.author))
        return Manifest();
    manifest.state = state;
    for (std::uint32_t sum; stream >> sum;)
        manifest.sums.push_back(sum);
    return manifest;
}

}  // namespace

bool operator==(const Manifest& left, const Manifest& right)
{
    return left.state == right.state && left.release == right.release && left.author == right.author &&
           left.sums == right.sums;
}

ReleaseStore::ReleaseStore(const fs::path& root) : m_root(root), m_live(root / "live") {}

void ReleaseStore::create(const std::string& author)
{
    fs::create_directories(m_live);
    begin(1, author);
    for (int i = 0; i < FILES_PER_RELEASE; ++i)
        write(1, i, author);
    if (!publish(1, author))
        throw std::runtime_error("cannot make a first release in " + m_root.string());
}

Manifest ReleaseStore::manifest() const
{
    const Manifest manifest = parse(readAll(m_live / finishedName), Manifest::finished);
    return manifest.state == Manifest::finished ? manifest
                                                : parse(readAll(m_live / unfinishedName), Manifest::unfinished);
}

int ReleaseStore::next() const
{
    const Manifest present = manifest();
    return present.state == Manifest::unfinished ? present.release : present.release + 1;
}

int ReleaseStore::filesOf(int release) const
{
    int count = 0;
    for (int i = 0; i < FILES_PER_RELEASE; ++i)
        count += readAll(file(i)).rfind(headOf(release), 0) == 0 ? 1 : 0;
    return count;
}

void ReleaseStore::begin(int release, const std::string& author)
{
    writeAll(m_live / unfinishedName, titleOf(release, author));
    fs::remove(m_live / finishedName);
}

void ReleaseStore::write(int release, int index, const std::string& author)
{
    writeAll(file(index), contentOf(release, index, author));
}

bool ReleaseStore::publish(int release, const std::string& author)
{
    std::string text = titleOf(release, author);
    for (int i = 0; i < FILES_PER_RELEASE; ++i)
        text += std::to_string(sumOf(contentOf(release, i, author))) + '\n';
    const fs::path prepared = m_live / unfinishedName;
    const bool undisturbed = readAll(prepared) == titleOf(release, author);
    writeAll(prepared, text);
    std::error_code failure;
    fs::rename(prepared, m_live / finishedName, failure);
    return undisturbed && !failure;
}

bool ReleaseStore::matches(const Manifest& manifest, int index) const
{
    const std::size_t entry = static_cast<std::size_t>(index);
    return entry < manifest.sums.size() && sumOf(readAll(file(index))) == manifest.sums[entry];
}

bool ReleaseStore::isWhole() const
{
    const Manifest present = manifest();
    bool whole = present.state == Manifest::finished;
    for (int i = 0; i < FILES_PER_RELEASE; ++i)
        whole = whole && matches(present, i);
    return whole;
}

void ReleaseStore::close()
{
    writeAll(m_root / "closed", std::string());
}

bool ReleaseStore::isClosed() const
{
    return fs::exists(m_root / "closed");
}

fs::path ReleaseStore::file(int index) const
{
    return m_live / ("file." + std::to_string(index));
}

}  // namespace demo
}  // namespace zorvel
