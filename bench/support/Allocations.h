// SPDX-License-Identifier: MIT

#pragma once

/// What the process asks of the heap. Linking this counts every call of malloc, calloc and realloc,
/// the toolkit's included.
namespace Allocations {

/// Calls since the start of the process.
long count();

/// Bytes in use now, as the allocator rounds them.
long bytesInUse();

} // namespace Allocations
