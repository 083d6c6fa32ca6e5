// SPDX-License-Identifier: MIT

#include "registry/SqlStatement.h"

#include "registry/SqlConnection.h"

#include <sqlite3.h>

namespace {

int const kToItsEnd = -1;

} // namespace

SqlStatement::SqlStatement()
    : mLastResult(SQLITE_MISUSE)
{
}

SqlStatement::~SqlStatement()
{
    sqlite3_finalize(mStatement);
}

bool SqlStatement::prepare(SqlConnection& connection, char const* sql)
{
    return sqlite3_prepare_v2(connection.handle(), sql, kToItsEnd, &mStatement, nullptr)
        == SQLITE_OK;
}

void SqlStatement::bindText(int parameter, QString const& text)
{
    QByteArray const utf8 = text.toUtf8();
    noteBinding(sqlite3_bind_text64(mStatement, parameter, utf8.constData(),
                                    static_cast<sqlite3_uint64>(utf8.size()), SQLITE_TRANSIENT,
                                    SQLITE_UTF8));
}

void SqlStatement::bindBytes(int parameter, QByteArray const& bytes)
{
    noteBinding(sqlite3_bind_blob64(mStatement, parameter, bytes.constData(),
                                    static_cast<sqlite3_uint64>(bytes.size()), SQLITE_TRANSIENT));
}

void SqlStatement::bindNumber(int parameter, qint64 number)
{
    noteBinding(sqlite3_bind_int64(mStatement, parameter, number));
}

void SqlStatement::noteBinding(int result)
{
    mIsBound = mIsBound && result == SQLITE_OK;
}

bool SqlStatement::run()
{
    mLastResult = mIsBound ? sqlite3_step(mStatement) : SQLITE_TOOBIG;
    sqlite3_reset(mStatement);
    sqlite3_clear_bindings(mStatement);
    mIsBound = true;
    return isDone();
}

bool SqlStatement::nextRow()
{
    mLastResult = sqlite3_step(mStatement);
    return mLastResult == SQLITE_ROW;
}

bool SqlStatement::isDone() const
{
    return mLastResult == SQLITE_DONE;
}

QString SqlStatement::text(int column) const
{
    QByteArray const utf8 = bytes(column);
    return QString::fromUtf8(utf8.constData(), utf8.size());
}

QByteArray SqlStatement::bytes(int column) const
{
    void const* const data = sqlite3_column_blob(mStatement, column);
    return QByteArray(static_cast<char const*>(data), sqlite3_column_bytes(mStatement, column));
}

qint64 SqlStatement::number(int column) const
{
    return sqlite3_column_int64(mStatement, column);
}
