/// Preloaded into a guest's kernel, which keeps a process's floating-point registers in a space of its own size: some
/// versions in 832 bytes, what a processor with AVX has, others in 2696. The processor may have more or less, and its
/// kernel takes them only as a whole. So what the guest does not know is added to what it writes, from what the process
/// has just then, and what the processor does not have is left out.
///
/// What is added is not kept apart for each thread of a guest, so no program in a guest may use it (see
/// rig/guest-init).

#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/types.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <cstdarg>
#include <cstring>

namespace {

const long extendedState = 0x202;

/// Not on the stack: a guest's kernel has small ones. It has one thread that
/// calls this.
char whole[1 << 16];

long call(long request, pid_t process, void* address, void* data)
{
    return syscall(SYS_ptrace, request, process, address, data);
}

long writeWhole(pid_t process, const iovec& known)
{
    void* const what = reinterpret_cast<void*>(extendedState);
    iovec all = {whole, sizeof whole};
    if (call(PTRACE_GETREGSET, process, what, &all) != 0)
        return -1;
    // A guest's kernel that knows more than this processor has gives the rest as nothing.
    std::memcpy(whole, known.iov_base, std::min(known.iov_len, all.iov_len));
    return call(PTRACE_SETREGSET, process, what, &all);
}

}  // namespace

extern "C" long ptrace(__ptrace_request request, ...) noexcept
{
    va_list rest;
    va_start(rest, request);
    const pid_t process = va_arg(rest, pid_t);
    void* const address = va_arg(rest, void*);
    void* const data = va_arg(rest, void*);
    va_end(rest);
    if (request == PTRACE_SETREGSET && reinterpret_cast<long>(address) == extendedState)
        return writeWhole(process, *static_cast<const iovec*>(data));
    // As the C library does: what was read is the result.
    if (request >= PTRACE_PEEKTEXT && request <= PTRACE_PEEKUSER) {
        long word = 0;
        const long status = call(request, process, address, &word);
        return status < 0 ? status : word;
    }
    return call(request, process, address, data);
}
