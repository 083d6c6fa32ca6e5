// SPDX-License-Identifier: MIT

#include "support/BareStore.h"

#include "support/Scene.h"

#include <QByteArray>
#include <QFile>

#include <sqlite3.h>

namespace {

int const kToItsEnd = -1;

void check(bool succeeded, char const* what)
{
    if (!succeeded)
        qFatal("SQLite: %s", what);
}

} // namespace

BareStore::BareStore(QString const& directory, int sessions)
    : mHandle(nullptr)
{
    QString const file = directory + QString::fromLatin1("/bare-%1.db").arg(sessions);
    QFile::remove(file);
    QFile::remove(file + QLatin1String("-wal"));
    check(sqlite3_open(QFile::encodeName(file).constData(), &mHandle) == SQLITE_OK, "open");
    execute("PRAGMA locking_mode = EXCLUSIVE");
    execute("PRAGMA journal_mode = WAL");
    execute("PRAGMA synchronous = FULL");
    execute("CREATE TABLE setting (key TEXT PRIMARY KEY, value BLOB NOT NULL) WITHOUT ROWID");
    mBegin = prepared("BEGIN IMMEDIATE");
    mSet = prepared("INSERT OR REPLACE INTO setting VALUES (?1, ?2)");
    mCommit = prepared("COMMIT");
    run(mBegin);
    for (int i = 0; i < sessions; ++i) {
        bind(Scene::sRegistryKey(i), Scene::sName(i));
        run(mSet);
    }
    run(mCommit);
}

BareStore::~BareStore()
{
    sqlite3_finalize(mBegin);
    sqlite3_finalize(mSet);
    sqlite3_finalize(mCommit);
    sqlite3_close(mHandle);
}

void BareStore::write(QString const& key, QString const& value)
{
    run(mBegin);
    bind(key, value);
    run(mSet);
    run(mCommit);
}

void BareStore::execute(char const* sql)
{
    check(sqlite3_exec(mHandle, sql, nullptr, nullptr, nullptr) == SQLITE_OK, sql);
}

void BareStore::bind(QString const& key, QString const& value)
{
    QByteArray const keyBytes = key.toUtf8();
    QByteArray const valueBytes = value.toUtf8();
    sqlite3_bind_text(mSet, 1, keyBytes.constData(), keyBytes.size(), SQLITE_TRANSIENT);
    sqlite3_bind_blob(mSet, 2, valueBytes.constData(), valueBytes.size(), SQLITE_TRANSIENT);
}

sqlite3_stmt* BareStore::prepared(char const* sql)
{
    sqlite3_stmt* statement = nullptr;
    check(sqlite3_prepare_v2(mHandle, sql, kToItsEnd, &statement, nullptr) == SQLITE_OK, sql);
    return statement;
}

void BareStore::run(sqlite3_stmt* statement)
{
    check(sqlite3_step(statement) == SQLITE_DONE, "step");
    sqlite3_reset(statement);
}
