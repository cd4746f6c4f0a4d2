#include <zorvel/errors.h>

zvFileBasedLockError::zvFileBasedLockError(const std::string& text) : message(text) {}

zvFileBasedLockError::zvFileBasedLockError(const zvFileBasedLockError& other)
    : std::exception(other), message(other.message)
{
}

zvFileBasedLockError& zvFileBasedLockError::operator=(const zvFileBasedLockError& other)
{
    std::exception::operator=(other);
    message = other.message;
    return *this;
}

zvFileBasedLockError::~zvFileBasedLockError() = default;

const char* zvFileBasedLockError::what() const noexcept
{
    return message.c_str();
}

zvNoSuchDirectory::zvNoSuchDirectory(const std::string& detail)
    : zvFileBasedLockError("Tried to obtain a lock on a non-existent directory: " + detail)
{
}

zvNoSuchDirectory::~zvNoSuchDirectory() = default;

zvPermissionDenied::zvPermissionDenied(const std::string& detail)
    : zvFileBasedLockError("Tried to obtain a lock on a directory without write permission: " + detail)
{
}

zvPermissionDenied::~zvPermissionDenied() = default;

zvFileAccessError::zvFileAccessError(const std::string& detail)
    : zvFileBasedLockError("File system error occurred: " + detail)
{
}

zvFileAccessError::~zvFileAccessError() = default;

zvFileNotFoundError::zvFileNotFoundError(const std::string& detail) : zvFileBasedLockError("File not found: " + detail)
{
}

zvFileNotFoundError::~zvFileNotFoundError() = default;
