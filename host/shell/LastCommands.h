#pragma once

/// Looks after the commands that an apply has started and left to themselves: a sandbox ends together
/// with the program in it, and they are to come to their end before.
class LastCommands
{
public:
    /// From now on they become children of this process.
    LastCommands();

    /// Waits a moment for their end. Not to be called while an apply is running: its wrappers are
    /// children as well, and would be cleared away under it.
    void awaitStarted() const;
};
