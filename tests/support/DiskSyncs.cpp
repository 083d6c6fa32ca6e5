// SPDX-License-Identifier: MIT

#include "support/DiskSyncs.h"

#include <atomic>

#include <sys/syscall.h>
#include <unistd.h>

namespace {

std::atomic<int> sCount(0);

} // namespace

int diskSyncs()
{
    return sCount;
}

// In place of the system's.
extern "C" {

int fsync(int descriptor)
{
    ++sCount;
    return static_cast<int>(syscall(SYS_fsync, descriptor));
}

int fdatasync(int descriptor)
{
    ++sCount;
    return static_cast<int>(syscall(SYS_fdatasync, descriptor));
}

} // extern "C"
