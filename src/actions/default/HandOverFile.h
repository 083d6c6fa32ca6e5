// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// Where this file exists, the last command of an apply request is written into it for its maker to
/// run.
char const kHandOverFilePath[] = "/tmp/last-apply-command";

/// The hand-over file as a request finds it.
///
/// Everybody can put anything under that name, at any moment. So it is opened once, when this
/// object is made, and whether it is there is decided by that; all else is done with what was
/// opened. It can be used when it is a regular file without another name: a link, hard or not, may
/// stand for any file, and a pipe may never answer.
class HandOverFile
{
public:
    HandOverFile();
    ~HandOverFile();

    /// Whether there was anything of that name, of whatever kind.
    bool exists() const { return mExists; }

    /// Reads the command that waits in the file: its first line up to the first ":", trimmed.
    ///
    /// @return false when the file cannot be read, or is longer than any output.
    bool read(QString& command) const;

    /// Puts `text` in place of what the file holds, in the encoding of the locale.
    ///
    /// @return false when it cannot be written.
    bool replace(QString const& text);

private:
    Q_DISABLE_COPY(HandOverFile)

    void open();
    bool hasNoOtherName() const;
    void close();

    bool mExists = true;
    int mDescriptor;
};
