// SPDX-License-Identifier: MIT

#pragma once

/// What the programs exit with beside 0 and the result codes of the host, which are small. Those
/// from 64 on are as in sysexits.h.
enum ExitStatus : int {
    /// The doctor has found a mistake.
    kFindings = 1,

    /// The doctor was called in a way that makes no sense.
    kDoctorUsageError = 2,

    /// A command of the shell, or an option, that makes no sense.
    kUsageError = 64,

    /// A file to import that cannot be read.
    kNoInput = 66,

    /// The host could not be started: defaults, registry or a plugin.
    kHostUnavailable = 69,

    /// The end of an apply could not be waited for.
    kNoSemaphore = 71,

    /// An apply did not end, or what is watched did not change, in the time it was given.
    kTimedOut = 75,

    /// A command that an interrupt from the terminal has ended; as shells have it.
    kInterrupted = 130
};
