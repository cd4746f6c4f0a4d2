#include "examples/deploy_demo/scratch_directory.h"

#include <string>
#include <system_error>

namespace zorvel {
namespace demo {

namespace fs = std::filesystem;

ScratchDirectory::ScratchDirectory(const fs::path& parent)
{
    fs::create_directories(parent);
    int number = 0;
    do
        m_path = fs::absolute(parent) / ("shared." + std::to_string(++number));
    while (!fs::create_directory(m_path));
}

ScratchDirectory::~ScratchDirectory()
{
    std::error_code ignored;
    fs::remove_all(m_path, ignored);
}

}  // namespace demo
}  // namespace zorvel
