#include <zorvel/errors.h>

zvCleanupFunctionGuard::~zvCleanupFunctionGuard() noexcept(false)
{
    if (!m_holder)
        return;
    // The holder goes also when the callable throws; the exception leaves. The
    // guard has let go of it before: the callable may disarm its own guard.
    const std::unique_ptr<Holder> holder(m_holder);
    m_holder = nullptr;
    holder->call();
}

void zvCleanupFunctionGuard::disarm()
{
    delete m_holder;
    m_holder = nullptr;
}
