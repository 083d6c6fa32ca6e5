// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

#include <sys/fsuid.h>
#include <unistd.h>

/// Gives up, in this thread, the right of the administrator to open any file: a file is given to
/// somebody else, as whom this thread then opens files. Programs that it starts keep the right.
class WithoutPrivilege
{
public:
    explicit WithoutPrivilege(QString const& file)
        : mIsPrivileged(::geteuid() == 0)
    {
        QByteArray const name = QFile::encodeName(file);
        if (mIsPrivileged && ::chown(name.constData(), kNobody, kNobody) == 0)
            ::setfsuid(kNobody);
    }

    ~WithoutPrivilege()
    {
        if (mIsPrivileged)
            ::setfsuid(0);
    }

private:
    Q_DISABLE_COPY(WithoutPrivilege)

    enum { kNobody = 65534 };

    bool mIsPrivileged;
};
