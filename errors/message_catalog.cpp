#include "errors/messages.h"

#include "errors/detail/message_texts_ja.h"
#include "suite/qx_messages.h"

namespace zorvel {
namespace errors {
namespace {

const std::uint32_t facility = 78;
const std::uint32_t messageCount = 15;
const std::uint32_t none = 0xFFFFFFFF;

const std::uint32_t identifiers[messageCount + 1] = {
    ZORVEL_SEM_NAME_TOO_LONG,
    ZORVEL_SEM_OPEN_FAILED,
    ZORVEL_SEM_CLOSE_FAILED,
    ZORVEL_SEM_UNLINK_FAILED,
    ZORVEL_SEM_UNLINK_ZOMBIE_FAILED,
    ZORVEL_SEM_GETVALUE_FAILED,
    ZORVEL_SEM_GETVALUE_NOT_IMPLEMENTED,
    ZORVEL_SEM_POST_FAILED,
    ZORVEL_SEM_TRYWAIT_FAILED,
    ZORVEL_SEM_WAIT_FAILED,
    ZORVEL_SEM_WAIT_TIMED_OUT,
    ZORVEL_SEM_WAIT_ABANDONED,
    ZORVEL_SEM_INVALID_RETURN_VALUE,
    ZORVEL_SEM_OP_UNSUPPORTED,
    ZORVEL_SYS_CALL_FAILED,
    none,
};

const char* const names[messageCount] = {
    "ZORVEL_SEM_NAME_TOO_LONG",
    "ZORVEL_SEM_OPEN_FAILED",
    "ZORVEL_SEM_CLOSE_FAILED",
    "ZORVEL_SEM_UNLINK_FAILED",
    "ZORVEL_SEM_UNLINK_ZOMBIE_FAILED",
    "ZORVEL_SEM_GETVALUE_FAILED",
    "ZORVEL_SEM_GETVALUE_NOT_IMPLEMENTED",
    "ZORVEL_SEM_POST_FAILED",
    "ZORVEL_SEM_TRYWAIT_FAILED",
    "ZORVEL_SEM_WAIT_FAILED",
    "ZORVEL_SEM_WAIT_TIMED_OUT",
    "ZORVEL_SEM_WAIT_ABANDONED",
    "ZORVEL_SEM_INVALID_RETURN_VALUE",
    "ZORVEL_SEM_OP_UNSUPPORTED",
    "ZORVEL_SYS_CALL_FAILED",
};

/// "abandonded" is how the text was shipped; who looks for it in a log finds it
/// like that.
const char* const texts[messageCount] = {
    "Cannot open semaphore '%s'. The name is %d characters long. Maximum name length is %d.",
    "Failed to open semaphore '%s'. \n System error: %s",
    "Failed to close semaphore '%s'. \n System error: %s",
    "Failed to unlink (delete) semaphore '%s'. \n System error: %s",
    "Failed to unlink (delete) zombie semaphore '%s'. \n System error: %s",
    "Failed to get the value of semaphore '%s'. \n System error: %s",
    "sem_getvalue() is not implemented on this system. Could not get the value of semaphore '%s'. \n System error: %s",
    "Failed to release (increment) semaphore '%s'. \n System error: %s",
    "Failed to lock, with trywait protocol, semaphore '%s'. \n System error: %s",
    "Failed to lock semaphore '%s'. \n System error: %s",
    "Wait on semaphore '%s' timed out after %d seconds.",
    "Wait on semaphore '%s' abandonded because the owning process has terminated.",
    "Function '%s' on semaphore '%s' returned an invalid value %d.",
    "Operation '%s' on semaphore '%s' failed because this platform does not support that operation.",
    "Call to system function '%s' failed.\n System error: %s",
};

const qx_message_table english = {messageCount, facility, identifiers, names, texts, ""};
const qx_language_table japanese = {facility, none, identifiers, textsInJapanese};

}  // namespace

int registerMessages()
{
    qx_mem_add_primary_message_table(qxGetMemoryContext(), &english);
    qx_mem_add_language(qxGetMemoryContext(), "ja", &japanese);
    return 0;
}

int removeMessages()
{
    qx_mem_remove_primary_message_table(qxGetMemoryContext(), &english);
    return 0;
}

}  // namespace errors
}  // namespace zorvel
