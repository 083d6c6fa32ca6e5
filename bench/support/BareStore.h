// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

struct sqlite3;
struct sqlite3_stmt;

/// The baseline of a commit: rows of the registry's own form, written through SQLite's interface
/// and nothing else.
class BareStore
{
public:
    /// Makes a file with `sessions` rows in `directory`, in place of an earlier one.
    BareStore(QString const& directory, int sessions);
    ~BareStore();

    /// Writes one row in a transaction of its own.
    void write(QString const& key, QString const& value);

private:
    Q_DISABLE_COPY(BareStore)

    void execute(char const* sql);
    void bind(QString const& key, QString const& value);
    sqlite3_stmt* prepared(char const* sql);
    void run(sqlite3_stmt* statement);

    sqlite3* mHandle;
    sqlite3_stmt* mBegin;
    sqlite3_stmt* mSet;
    sqlite3_stmt* mCommit;
};
