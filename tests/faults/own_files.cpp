#include "tests/faults/own_files.h"

namespace zorvel {
namespace test {

namespace {

bool begins(const std::string& text, const std::string& beginning)
{
    return text.compare(0, beginning.size(), beginning) == 0;
}

bool isOwn(const RecordingFs& fs, const std::string& file)
{
    bool own = false;
    for (const std::string& line : fs.log()) {
        const bool done = line.find(" -> true") != std::string::npos;
        if (done && (begins(line, "create " + file + ' ') || begins(line, "refresh " + file + ' ')))
            own = true;
        if (done && begins(line, "remove " + file + ' '))
            own = false;
    }
    return own;
}

}  // namespace

std::vector<std::string> ownFiles(const RecordingFs& fs)
{
    std::vector<std::string> own;
    for (const std::string& file : fs.files())
        if (isOwn(fs, file))
            own.push_back(file);
    return own;
}

bool wasGivenUp(const RecordingFs& fs, const std::string& file)
{
    for (const std::string& line : fs.log())
        if (begins(line, "remove " + file + ' ') && line.find(" -> true") == std::string::npos)
            return true;
    return false;
}

}  // namespace test
}  // namespace zorvel
