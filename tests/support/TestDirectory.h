// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

/// A directory of its own for one test, removed with all that is in it.
class TestDirectory
{
public:
    TestDirectory();
    ~TestDirectory();

    QString path() const;

    /// The full path of a file that may or may not be there.
    QString file(QString const& name) const;

    /// Writes a file, and makes the directories above it.
    ///
    /// @param name  relative to the directory.
    /// @return the file's full path.
    QString write(QString const& name, QByteArray const& content) const;

    /// The whole content of a file; empty when it cannot be read.
    QByteArray read(QString const& name) const;

private:
    Q_DISABLE_COPY(TestDirectory)

    QString mPath;
};
