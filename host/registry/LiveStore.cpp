// SPDX-License-Identifier: MIT

#include "registry/LiveStore.h"

#include "registry/ValueEncoding.h"

#include <QFile>
#include <QFileInfo>
#include <QtEndian>

namespace {

// Both stand in the file: they tell the registry's files from others, and newer ones from known
// ones.
qint64 const kApplicationId = 1447973970;
qint64 const kVersion = 1;

char const kCreateTables[]
    = "CREATE TABLE directory (key TEXT PRIMARY KEY, ordinal INTEGER NOT NULL) WITHOUT ROWID;"
      "CREATE TABLE setting (key TEXT PRIMARY KEY, value BLOB NOT NULL) WITHOUT ROWID;"
      "PRAGMA application_id = 1447973970;"
      "PRAGMA user_version = 1;";

bool readNumber(SqlConnection& connection, char const* sql, qint64& number)
{
    SqlStatement statement;
    if (!statement.prepare(connection, sql) || !statement.nextRow())
        return false;
    number = statement.number(0);
    return true;
}

// The beginning of a database file, as its format lays it down.
int const kHeaderSize = 100;
int const kVersionOffset = 60;
int const kApplicationOffset = 68;
char const kMagic[] = "SQLite format 3";

qint64 numberAt(QByteArray const& header, int offset)
{
    return qFromBigEndian<quint32>(reinterpret_cast<uchar const*>(header.constData()) + offset);
}

// A host that was killed while it made the file leaves blank pages, and the journal that takes them
// back.
bool isHalfMade(QString const& name, QByteArray const& header)
{
    return QFile::exists(name + QLatin1String("-journal")) && header.count('\0') == header.size();
}

// Looks at a file before it is opened as a database: one that is not the registry's has to stay as
// it is to the byte. The bytes themselves are read, because the pages of a registry whose host was
// killed make sense only together with the journal beside it. A file without contents is a new one.
bool isOurs(QString const& name, QString& reason)
{
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly)) {
        reason = file.errorString();
        return false;
    }
    if (file.size() == 0)
        return true;

    QByteArray const header = file.read(kHeaderSize);
    if (isHalfMade(name, header))
        return true;
    if (header.size() < kHeaderSize || !header.startsWith(QByteArray(kMagic, sizeof(kMagic))))
        reason = QString::fromLatin1("file is not a database");
    else if (numberAt(header, kApplicationOffset) != kApplicationId)
        reason = QString::fromLatin1("a database, but not the registry's");
    else if (numberAt(header, kVersionOffset) > kVersion)
        reason = QString::fromLatin1("written by a newer version (%1) of the registry")
                     .arg(numberAt(header, kVersionOffset));
    return reason.isEmpty();
}

} // namespace

bool LiveStore::open(QString const& file, LiveChanges& contents, QString& error)
{
    QString reason;
    if (file.isEmpty())
        reason = QString::fromLatin1("no file name");
    else if (!QFileInfo(file).exists() || isOurs(file, reason)) {
        if (mConnection.open(file) && setUp(contents))
            return true;
        reason = failure();
    }
    error = QString::fromLatin1("%1: %2").arg(file, reason);
    return false;
}

QString LiveStore::failure() const
{
    if (mConnection.isLocked())
        return QString::fromLatin1("in use by another host");
    if (mConnection.isReadOnly())
        return QString::fromLatin1("not writable");
    return mConnection.errorMessage();
}

bool LiveStore::setUp(LiveChanges& contents)
{
    // The lock is taken with the first transaction and kept. What the file holds is read before its
    // journal is touched, so that a damaged file is not written to.
    return !mConnection.isReadOnly() && mConnection.execute("PRAGMA locking_mode = EXCLUSIVE")
        && mConnection.execute("BEGIN EXCLUSIVE") && createTables() && readDirectories(contents)
        && readValues(contents) && mConnection.execute("COMMIT")
        && mConnection.execute("PRAGMA journal_mode = WAL")
        && mConnection.execute("PRAGMA synchronous = FULL") && prepareStatements();
}

bool LiveStore::createTables()
{
    qint64 version = 0;
    if (!readNumber(mConnection, "PRAGMA user_version", version))
        return false;
    return version == kVersion || mConnection.execute(kCreateTables);
}

bool LiveStore::readDirectories(LiveChanges& contents)
{
    SqlStatement rows;
    if (!rows.prepare(mConnection, "SELECT key, ordinal FROM directory ORDER BY ordinal"))
        return false;
    while (rows.nextRow()) {
        LiveChange const change
            = {LiveChange::CreateDirectory, rows.text(0), QString(), rows.number(1)};
        contents.append(change);
    }
    return rows.isDone();
}

bool LiveStore::readValues(LiveChanges& contents)
{
    SqlStatement rows;
    if (!rows.prepare(mConnection, "SELECT key, value FROM setting"))
        return false;
    while (rows.nextRow()) {
        LiveChange const change
            = {LiveChange::SetValue, rows.text(0), textOfBytes(rows.bytes(1)), 0};
        contents.append(change);
    }
    return rows.isDone();
}

bool LiveStore::prepareStatements()
{
    return mBegin.prepare(mConnection, "BEGIN IMMEDIATE") && mCommit.prepare(mConnection, "COMMIT")
        && mCreateDirectory.prepare(mConnection, "INSERT INTO directory VALUES (?1, ?2)")
        && mRemoveDirectories.prepare(mConnection,
                                      "DELETE FROM directory"
                                      " WHERE key = ?1 OR (key > ?2 AND key < ?3)")
        && mSetValue.prepare(mConnection, "INSERT OR REPLACE INTO setting VALUES (?1, ?2)")
        && mRemoveValue.prepare(mConnection, "DELETE FROM setting WHERE key = ?1")
        && mRemoveValues.prepare(mConnection, "DELETE FROM setting WHERE key > ?1 AND key < ?2");
}

bool LiveStore::write(LiveChanges const& changes)
{
    if (!mBegin.run())
        return false;
    if (writeAll(changes) && mCommit.run())
        return true;
    // Fails when the error has ended the transaction already, which is what is wanted.
    static_cast<void>(mConnection.execute("ROLLBACK"));
    // The last step of a commit is to sync the journal. When that fails the journal holds all of
    // it, and the next host would take it for committed: move what really is into the file, and
    // empty the journal. On a disk that refuses this too, nothing can be promised.
    static_cast<void>(mConnection.execute("PRAGMA wal_checkpoint(TRUNCATE)"));
    return false;
}

bool LiveStore::writeAll(LiveChanges const& changes)
{
    for (LiveChange const& change : changes) {
        if (!writeOne(change))
            return false;
    }
    return true;
}

bool LiveStore::writeOne(LiveChange const& change)
{
    switch (change.kind) {
    case LiveChange::CreateDirectory:
        return createDirectory(change);
    case LiveChange::RemoveDirectory:
        return removeDirectory(change);
    case LiveChange::SetValue:
        return setValue(change);
    case LiveChange::RemoveValue:
        return removeValue(change);
    }
    return false;
}

bool LiveStore::createDirectory(LiveChange const& change)
{
    mCreateDirectory.bindText(1, change.key);
    mCreateDirectory.bindNumber(2, change.ordinal);
    return mCreateDirectory.run();
}

bool LiveStore::removeDirectory(LiveChange const& change)
{
    // All keys between these two lie under the directory: "0" is the character behind "/".
    QString const first = change.key + QLatin1Char('/');
    QString const behind = change.key + QLatin1Char('0');
    mRemoveDirectories.bindText(1, change.key);
    mRemoveDirectories.bindText(2, first);
    mRemoveDirectories.bindText(3, behind);
    mRemoveValues.bindText(1, first);
    mRemoveValues.bindText(2, behind);
    return mRemoveDirectories.run() && mRemoveValues.run();
}

bool LiveStore::setValue(LiveChange const& change)
{
    mSetValue.bindText(1, change.key);
    mSetValue.bindBytes(2, bytesOfText(change.value));
    return mSetValue.run();
}

bool LiveStore::removeValue(LiveChange const& change)
{
    mRemoveValue.bindText(1, change.key);
    return mRemoveValue.run();
}
