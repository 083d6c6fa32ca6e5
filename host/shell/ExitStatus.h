#pragma once

// What the shell answers beside the result codes of the host, which are small; as in sysexits.h.

/// A command or an option that makes no sense.
int const kUsageError = 64;

/// A file to import that cannot be read.
int const kNoInput = 66;

/// The host could not be started: defaults, registry or a plugin.
int const kHostUnavailable = 69;

/// The end of an apply could not be waited for.
int const kNoSemaphore = 71;

/// An apply did not end, or what is watched did not change, in the time it was given.
int const kTimedOut = 75;

/// A command that an interrupt from the terminal has ended; as shells have it.
int const kInterrupted = 130;
