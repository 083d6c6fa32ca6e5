// SPDX-License-Identifier: MIT

#include "registry/SqlConnection.h"

#include <QFile>

#include <sqlite3.h>

namespace {

char const* const kDatabase = "main";

// Of sqlite3_db_readonly; a file that could not be opened is neither that nor writable.
int const kReadOnly = 1;

} // namespace

SqlConnection::~SqlConnection()
{
    sqlite3_close(mHandle);
}

bool SqlConnection::open(QString const& file)
{
    int const flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
    return sqlite3_open_v2(QFile::encodeName(file).constData(), &mHandle, flags, nullptr)
        == SQLITE_OK;
}

bool SqlConnection::execute(char const* sql)
{
    return sqlite3_exec(mHandle, sql, nullptr, nullptr, nullptr) == SQLITE_OK;
}

bool SqlConnection::isReadOnly() const
{
    return sqlite3_db_readonly(mHandle, kDatabase) == kReadOnly
        || sqlite3_errcode(mHandle) == SQLITE_READONLY;
}

bool SqlConnection::isLocked() const
{
    return sqlite3_errcode(mHandle) == SQLITE_BUSY;
}

QString SqlConnection::errorMessage() const
{
    return QString::fromUtf8(sqlite3_errmsg(mHandle));
}
