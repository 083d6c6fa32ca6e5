// SPDX-License-Identifier: MIT

#include "support/Allocations.h"

#include <atomic>

#include <malloc.h>
#include <stddef.h>

extern "C" {

// The C library's own functions under the names that it keeps for this.
void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* block, size_t size);
void __libc_free(void* block);

} // extern "C"

namespace {

std::atomic<long> callCount(0);
std::atomic<long> liveBytes(0);

void* counted(void* block)
{
    callCount.fetch_add(1, std::memory_order_relaxed);
    liveBytes.fetch_add(static_cast<long>(malloc_usable_size(block)), std::memory_order_relaxed);
    return block;
}

void forget(void* block)
{
    liveBytes.fetch_sub(static_cast<long>(malloc_usable_size(block)), std::memory_order_relaxed);
}

} // namespace

extern "C" {

void* malloc(size_t size)
{
    return counted(__libc_malloc(size));
}

void* calloc(size_t count, size_t size)
{
    return counted(__libc_calloc(count, size));
}

void* realloc(void* block, size_t size)
{
    forget(block);
    return counted(__libc_realloc(block, size));
}

void free(void* block)
{
    forget(block);
    __libc_free(block);
}

} // extern "C"

namespace Allocations {

long count()
{
    return callCount.load(std::memory_order_relaxed);
}

long bytesInUse()
{
    return liveBytes.load(std::memory_order_relaxed);
}

} // namespace Allocations
