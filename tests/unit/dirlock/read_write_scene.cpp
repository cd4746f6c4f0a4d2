#include "tests/unit/dirlock/read_write_scene.h"

namespace zorvel {
namespace test {

ReadWriteScene::ReadWriteScene(const std::string& directory)
    : Scene(directory), m_both(directory, sharedFs()), m_reader(m_both.getReadLock()), m_writer(m_both.getWriteLock())
{
}

}  // namespace test
}  // namespace zorvel
