// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// How much this process holds of the machine at one moment.
struct Figures
{
    /// Looks now.
    static Figures sNow();

    /// What is more than at an earlier moment and should not be, in words; empty when all is flat.
    ///
    /// Memory may grow by as much as is said beside its figure, all else not at all.
    QString grownSince(Figures const& before) const;

    // The figures of memory stay 0 where it is a sanitizer's.

    /// In use as far as the allocator knows. 64 KiB more may be: tables of the toolkit and the
    /// cache of the database take what suits them. The allocator counts the freed blocks that each
    /// thread keeps at hand as used; GLIBC_TUNABLES=glibc.malloc.tcache_count=0 has it keep none.
    long heapBytes;
    /// 2 MiB more may be: pages are given back late.
    long residentBytes;

    int descriptors;
    int threads;
    int children;
    /// Of the whole sandbox, those that nobody is the parent of any more included.
    int processes;
    int temporaryFiles;
    int semaphores;
};
