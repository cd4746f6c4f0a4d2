#pragma once

#include "tests/faults/mount/control.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

namespace zorvel {
namespace test {
namespace fault_mount {

/// The page of orders in a file, until the process ends or unmaps it. Null with errno set on failure.
inline Control* mapped(const char* path)
{
    const int descriptor = ::open(path, O_RDWR | O_CLOEXEC);
    if (descriptor == -1)
        return nullptr;
    void* const page = mmap(nullptr, sizeof(Control), PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
    close(descriptor);
    return page == MAP_FAILED ? nullptr : static_cast<Control*>(page);
}

}  // namespace fault_mount
}  // namespace test
}  // namespace zorvel
