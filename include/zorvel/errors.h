#pragma once

#include <zorvel/export.h>

#include <exception>
#include <memory>
#include <string>
#include <utility>

/// Root of the exceptions that the file-based locks throw. Never thrown as
/// itself but for one case: an acquire that fails while it waits in the queue
/// throws a copy of this base (see zvDirectoryExclusiveLock::acquire).
class ZORVEL_API zvFileBasedLockError : public std::exception
{
public:
    zvFileBasedLockError(const zvFileBasedLockError& other);
    zvFileBasedLockError& operator=(const zvFileBasedLockError& other);
    ~zvFileBasedLockError() override;

    /// The complete text, owned by the exception.
    const char* what() const noexcept override;

protected:
    explicit zvFileBasedLockError(const std::string& text);

private:
    std::string message;
};

/// "Tried to obtain a lock on a non-existent directory: " and the detail.
class ZORVEL_API zvNoSuchDirectory : public zvFileBasedLockError
{
public:
    explicit zvNoSuchDirectory(const std::string& detail);
    zvNoSuchDirectory(const zvNoSuchDirectory&) = default;
    zvNoSuchDirectory& operator=(const zvNoSuchDirectory&) = default;
    ~zvNoSuchDirectory() override;
};

/// "Tried to obtain a lock on a directory without write permission: " and the
/// detail.
class ZORVEL_API zvPermissionDenied : public zvFileBasedLockError
{
public:
    explicit zvPermissionDenied(const std::string& detail);
    zvPermissionDenied(const zvPermissionDenied&) = default;
    zvPermissionDenied& operator=(const zvPermissionDenied&) = default;
    ~zvPermissionDenied() override;
};

/// "File system error occurred: " and the detail.
class ZORVEL_API zvFileAccessError : public zvFileBasedLockError
{
public:
    explicit zvFileAccessError(const std::string& detail);
    zvFileAccessError(const zvFileAccessError&) = default;
    zvFileAccessError& operator=(const zvFileAccessError&) = default;
    ~zvFileAccessError() override;
};

/// "File not found: " and the detail.
class ZORVEL_API zvFileNotFoundError : public zvFileBasedLockError
{
public:
    explicit zvFileNotFoundError(const std::string& detail);
    zvFileNotFoundError(const zvFileNotFoundError&) = default;
    zvFileNotFoundError& operator=(const zvFileNotFoundError&) = default;
    ~zvFileNotFoundError() override;
};

/// The system's own text for an error code, exactly as the system gives it
/// (on Windows with its trailing carriage return and line feed); empty when
/// the system knows none. Never throws but for exhausted memory.
///
/// All bits of 32 (or of the whole unsigned long) set stand for the calling
/// thread's last error: ask before anything else on that thread has replaced
/// it. 0 is an ordinary code. Windows: codes of GetLastError. Linux: errno
/// values and the C library's text.
ZORVEL_API std::string zvGetWinErrorMessage(unsigned long code);

/// Runs a callable when it is destroyed, unless disarmed before. An exception
/// of the callable leaves the destructor (after the guard has let go of the
/// callable). Not copyable; one thread at a time.
class ZORVEL_API zvCleanupFunctionGuard
{
public:
    /// Keeps a copy of the callable, which takes no argument; its result is
    /// ignored.
    template <class F>
    explicit zvCleanupFunctionGuard(F callable) : m_holder(new HolderImpl<F>(std::move(callable)))
    {
    }

    ~zvCleanupFunctionGuard() noexcept(false);

    zvCleanupFunctionGuard(const zvCleanupFunctionGuard&) = delete;
    zvCleanupFunctionGuard& operator=(const zvCleanupFunctionGuard&) = delete;

    /// Lets go of the callable without running it. Twice is harmless.
    void disarm();

private:
    class Holder
    {
    public:
        virtual ~Holder() {}
        virtual void call() = 0;
    };

    template <class F>
    class HolderImpl : public Holder
    {
    public:
        explicit HolderImpl(F callable) : m_callable(std::move(callable)) {}
        void call() override { m_callable(); }

    private:
        F m_callable;
    };

    Holder* m_holder;
};

/// Owns a raw resource and releases it through the function given with it,
/// also when the value is null. Not copyable; one thread at a time.
template <class T>
class zvScopedResource
{
public:
    /// Takes the value over. If the holder cannot be allocated the value is
    /// released before std::bad_alloc leaves.
    template <class D>
    zvScopedResource(T value, D release);

    ~zvScopedResource() { delete m_holder; }

    zvScopedResource(const zvScopedResource&) = delete;
    zvScopedResource& operator=(const zvScopedResource&) = delete;

    /// The stored value.
    T& get() { return m_holder->get(); }

private:
    class ResourceBase
    {
    public:
        virtual ~ResourceBase() {}
        virtual T& get() = 0;
    };

    template <class D>
    class ResourceImpl : public ResourceBase
    {
    public:
        ResourceImpl(D release, T value) : m_release(release), m_value(value) {}
        ~ResourceImpl() override { m_release(m_value); }
        T& get() override { return m_value; }

    private:
        D m_release;
        T m_value;
    };

    ResourceBase* m_holder;
};

template <class T>
template <class D>
zvScopedResource<T>::zvScopedResource(T value, D release) : m_holder(nullptr)
{
    try {
        m_holder = new ResourceImpl<D>(release, value);
    } catch (...) {
        release(value);
        throw;
    }
}
