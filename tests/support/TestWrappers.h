// SPDX-License-Identifier: MIT

#pragma once

#include "support/TestDirectory.h"

#include <QByteArray>
#include <QDir>
#include <QString>

/// A wrappers directory of its own for one test.
class TestWrappers
{
public:
    /// @param name  of the wrappers directory, which lies in a temporary one.
    explicit TestWrappers(QString const& name = QString::fromLatin1("wrappers"));

    /// What the kit is to be given.
    QDir directory() const;

    /// The folder of a view key.
    QString folder(QString const& viewKey) const;

    /// Makes an executable shell script.
    ///
    /// @param body  what follows the shebang line.
    /// @return its full path.
    QString addScript(QString const& viewKey, QString const& name, QByteArray const& body) const;

    /// Makes a file that holds exactly `content` and may not be executed.
    ///
    /// @return its full path.
    QString addFile(QString const& viewKey, QString const& name, QByteArray const& content) const;

    /// The content of a file in the folder of a view key; empty when there is none.
    QByteArray read(QString const& viewKey, QString const& name) const;

    bool exists(QString const& viewKey, QString const& name) const;

private:
    Q_DISABLE_COPY(TestWrappers)

    QString relative(QString const& viewKey, QString const& name) const;

    TestDirectory mDirectory;
    QString mName;
};
