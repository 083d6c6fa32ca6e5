// SPDX-License-Identifier: MIT

#pragma once

// Ctrl-C at a prompt: it ends the command that runs, not the program. One for the process.

/// From now on an interrupt from the terminal ends the command.
void catchInterrupts();

/// Whether the command that runs is to end.
bool isInterrupted();

/// A command for as long as it runs, on the main thread. An interrupt ends the wrapper scripts that
/// thread waits for (the second one cannot be caught by them); what runs in the background goes on.
class InterruptibleCommand
{
public:
    InterruptibleCommand();
    ~InterruptibleCommand();
};
