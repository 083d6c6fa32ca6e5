// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

struct sqlite3;

/// A connection to an SQLite file.
class SqlConnection
{
public:
    SqlConnection() { }

    /// Closes the connection. Its statements must be gone by then.
    ~SqlConnection();

    /// Opens the file for reading and writing, creating it if there is none.
    bool open(QString const& file);

    /// Runs one statement whose rows do not matter.
    bool execute(char const* sql);

    /// Whether the file cannot be written, or the last statement failed for want of its directory.
    bool isReadOnly() const;

    /// True when the last operation failed because of another connection's lock.
    bool isLocked() const;

    /// Why the last operation failed.
    QString errorMessage() const;

    sqlite3* handle() const { return mHandle; }

private:
    Q_DISABLE_COPY(SqlConnection)

    sqlite3* mHandle = nullptr;
};
