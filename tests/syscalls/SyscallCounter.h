// SPDX-License-Identifier: MIT

#pragma once

/// Something that is done in a process of its own while its system calls are counted.
class CountedWork
{
public:
    virtual ~CountedWork();

    /// Whatever has to be there before.
    virtual void prepare() = 0;

    /// What is counted; done several times.
    virtual void run() = 0;
};

enum {
    /// Nobody may trace a process here.
    kCannotTrace = -1,
    /// The process ended before its work was done.
    kWorkFailed = -2
};

/// The number of system calls that one `run` of `work` makes: of several runs the smallest, because
/// now and then the heap asks the system for memory. Or one of the values above.
int countSyscalls(CountedWork& work);
