#pragma once

/// @file
/// Exceptions of the locks, texts of system errors, scope guards. What is here:
/// @ref errors.

#include <zorvel/export.h>

#include <exception>
#include <memory>
#include <string>
#include <utility>

/// @defgroup errors Errors
/// @brief What the locks throw, what the system says of an error code, and what cleans up behind an exception.
///
/// | you catch | when |
/// |---|---|
/// | zvNoSuchDirectory | the directory of a lock is missing, or its name cannot be one |
/// | zvPermissionDenied | access was denied, for half a second in a row where it is tried again |
/// | zvFileNotFoundError | a file is missing whose time was asked for |
/// | zvFileAccessError | anything else the file system reported; an empty pointer to a file system |
/// | zvFileBasedLockError | any of these; and, as itself, a failure while waiting in the queue of a lock |
///
/// The exceptions hold nothing but their text: a copy has a text of its own and
/// may go to another thread. Copying may throw std::bad_alloc. The texts are
/// English, but for what they quote of the system. The other families report
/// failure by their results. Of what is here only zvGetWinErrorMessage() differs
/// between Windows and Linux.
///
/// A directory lock's failure is caught by its base:
///
/// @dontinclude lock_directory.cpp
/// @skip catch
/// @until return 2
///
/// The system's texts, and a scope guard:
///
/// @include explain_error.cpp
///
/// @{

/// Root of the exceptions that the file-based locks throw. Never thrown as
/// itself but for one case: an acquire that fails while it waits in the queue
/// throws a copy of this base (see zvDirectoryExclusiveLock::acquire()).
class ZORVEL_API zvFileBasedLockError : public std::exception
{
public:
    /// Copies the text.
    /// @{
    zvFileBasedLockError(const zvFileBasedLockError& other);
    zvFileBasedLockError& operator=(const zvFileBasedLockError& other);
    /// @}

    /// Frees the text.
    ~zvFileBasedLockError() override;

    /// The complete text, owned by the exception. Never null.
    const char* what() const noexcept override;

protected:
    /// An exception with this text. Only the members of the family are made.
    explicit zvFileBasedLockError(const std::string& text);

private:
    std::string message;
};

/// The directory of a lock does not exist, or cannot: its name holds a NUL.
///
/// The text is `"Tried to obtain a lock on a non-existent directory: "` and the
/// detail.
class ZORVEL_API zvNoSuchDirectory : public zvFileBasedLockError
{
public:
    /// The detail is the path that it happened to, or a sentence.
    explicit zvNoSuchDirectory(const std::string& detail);

    /// Copies the text.
    /// @{
    zvNoSuchDirectory(const zvNoSuchDirectory&) = default;
    zvNoSuchDirectory& operator=(const zvNoSuchDirectory&) = default;
    /// @}

    /// Frees the text.
    ~zvNoSuchDirectory() override;
};

/// The system refused access to a lock file or its directory.
///
/// The text is `"Tried to obtain a lock on a directory without write
/// permission: "` and the detail.
class ZORVEL_API zvPermissionDenied : public zvFileBasedLockError
{
public:
    /// The detail is the path that it happened to, or a sentence.
    explicit zvPermissionDenied(const std::string& detail);

    /// Copies the text.
    /// @{
    zvPermissionDenied(const zvPermissionDenied&) = default;
    zvPermissionDenied& operator=(const zvPermissionDenied&) = default;
    /// @}

    /// Frees the text.
    ~zvPermissionDenied() override;
};

/// The file system reported something that has no class of its own, or no file
/// system was given.
///
/// The text is `"File system error occurred: "` and the detail.
class ZORVEL_API zvFileAccessError : public zvFileBasedLockError
{
public:
    /// The detail is the path that it happened to, or a sentence.
    explicit zvFileAccessError(const std::string& detail);

    /// Copies the text.
    /// @{
    zvFileAccessError(const zvFileAccessError&) = default;
    zvFileAccessError& operator=(const zvFileAccessError&) = default;
    /// @}

    /// Frees the text.
    ~zvFileAccessError() override;
};

/// A file is missing whose modification time was asked for. An acquire does not
/// let it out: there a file that vanishes means that its owner is done.
///
/// The text is `"File not found: "` and the detail.
class ZORVEL_API zvFileNotFoundError : public zvFileBasedLockError
{
public:
    /// The detail is the path that it happened to, or a sentence.
    explicit zvFileNotFoundError(const std::string& detail);

    /// Copies the text.
    /// @{
    zvFileNotFoundError(const zvFileNotFoundError&) = default;
    zvFileNotFoundError& operator=(const zvFileNotFoundError&) = default;
    /// @}

    /// Frees the text.
    ~zvFileNotFoundError() override;
};

/// The system's own text for an error code, exactly as the system gives it
/// (on Windows with its trailing carriage return and line feed); empty when
/// the system knows none. Never throws but for exhausted memory.
///
/// All bits of 32 (or of the whole unsigned long) set stand for the calling
/// thread's last error: ask before anything else on that thread has replaced
/// it. 0 is an ordinary code. Any thread may call.
///
/// Windows: codes of `GetLastError`, texts in the user's language, with a line
/// end; a text that wants inserts comes out empty. Linux: `errno` values and the
/// C library's text in the language of the locale, without a line end.
ZORVEL_API std::string zvGetWinErrorMessage(unsigned long code);

/// Runs a callable when it is destroyed, unless disarmed before. An exception
/// of the callable leaves the destructor (after the guard has let go of the
/// callable). Not copyable; one thread at a time.
class ZORVEL_API zvCleanupFunctionGuard
{
public:
    /// Keeps a copy of the callable, which takes no argument; its result is
    /// ignored. If the copy cannot be kept, the exception leaves and nothing
    /// is run.
    template <class F>
    explicit zvCleanupFunctionGuard(F callable) : m_holder(new HolderImpl<F>(std::move(callable)))
    {
    }

    /// Runs the callable, unless disarmed.
    ~zvCleanupFunctionGuard() noexcept(false);

    /// Not copyable: the callable runs once.
    /// @{
    zvCleanupFunctionGuard(const zvCleanupFunctionGuard&) = delete;
    zvCleanupFunctionGuard& operator=(const zvCleanupFunctionGuard&) = delete;
    /// @}

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
///
/// @dontinclude each_once.cpp
/// @skip Destroyed at the end
/// @until qx_namehash_destroy
template <class T>
class zvScopedResource
{
public:
    /// Takes the value over and keeps a copy of the function, which is called
    /// with the value. If the holder cannot be allocated the value is released
    /// before std::bad_alloc leaves.
    template <class D>
    zvScopedResource(T value, D release);

    /// Releases the value. An exception of the function ends the program.
    ~zvScopedResource() { delete m_holder; }

    /// Not copyable: the value is released once.
    /// @{
    zvScopedResource(const zvScopedResource&) = delete;
    zvScopedResource& operator=(const zvScopedResource&) = delete;
    /// @}

    /// The stored value, which is released when this object goes; the reference
    /// lives as long. What is assigned to it is what will be released.
    T& get() { return m_holder->get(); }

private:
    class ResourceBase
    {
    public:
        virtual ~ResourceBase() {}
        virtual T& get() = 0;
    };

    template <class D>
    class ResourceImpl final : public ResourceBase
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

/// @}

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
