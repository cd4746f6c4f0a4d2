#include <zorvel/errors.h>

zvCleanupFunctionGuard::~zvCleanupFunctionGuard() noexcept(false)
{
    if (!m_holder)
        return;
    // The holder goes also when the callable throws; the exception leaves.
    const std::unique_ptr<Holder> holder(m_holder);
    holder->call();
}

void zvCleanupFunctionGuard::disarm()
{
    delete m_holder;
    m_holder = nullptr;
}
