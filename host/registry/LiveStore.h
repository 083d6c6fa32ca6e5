// SPDX-License-Identifier: MIT

#pragma once

#include "registry/LiveChange.h"
#include "registry/SqlConnection.h"
#include "registry/SqlStatement.h"

#include <QString>

/// The database file behind the live values.
///
/// What `write` has answered true for is on disk. The file stays locked while it is open, so that
/// no second host changes what this one holds in memory.
class LiveStore
{
public:
    LiveStore() { }

    /// Opens the file, creating it if there is none, and adds to `contents` all that it holds, as
    /// the changes that lead there. Call once.
    ///
    /// @param file  a path, or ":memory:".
    /// @return false with a message in `error`: the file is no database, one of another program or
    ///         of a newer version, damaged, locked by another host or out of reach. It is left as
    ///         it was.
    bool open(QString const& file, LiveChanges& contents, QString& error);

    /// Writes the changes in one transaction: all of them or, on false, none.
    bool write(LiveChanges const& changes);

private:
    Q_DISABLE_COPY(LiveStore)

    QString failure() const;
    bool setUp(LiveChanges& contents);
    bool createTables();
    bool readDirectories(LiveChanges& contents);
    bool readValues(LiveChanges& contents);
    bool prepareStatements();
    bool writeAll(LiveChanges const& changes);
    bool writeOne(LiveChange const& change);
    bool createDirectory(LiveChange const& change);
    bool removeDirectory(LiveChange const& change);
    bool setValue(LiveChange const& change);
    bool removeValue(LiveChange const& change);

    // Before the statements: they go first.
    SqlConnection mConnection;
    SqlStatement mBegin;
    SqlStatement mCommit;
    SqlStatement mCreateDirectory;
    SqlStatement mRemoveDirectories;
    SqlStatement mSetValue;
    SqlStatement mRemoveValue;
    SqlStatement mRemoveValues;
};
