// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

class SqlConnection;
struct sqlite3_stmt;

/// A prepared statement.
class SqlStatement
{
public:
    SqlStatement();
    ~SqlStatement();

    /// Call once. False when the text cannot be prepared; the connection then knows why.
    bool prepare(SqlConnection& connection, char const* sql);

    // Parameters are numbered from 1. One that cannot be bound makes the next run fail.
    void bindText(int parameter, QString const& text);
    void bindBytes(int parameter, QByteArray const& bytes);
    void bindNumber(int parameter, qint64 number);

    /// Runs a statement without rows and forgets the parameters. False on an error.
    bool run();

    /// Goes to the next row. False behind the last row and on an error.
    bool nextRow();

    /// True when `nextRow` came to the end of the rows, not to an error.
    bool isDone() const;

    // Columns of the current row are numbered from 0.
    QString text(int column) const;
    QByteArray bytes(int column) const;
    qint64 number(int column) const;

private:
    Q_DISABLE_COPY(SqlStatement)

    void noteBinding(int result);

    sqlite3_stmt* mStatement = nullptr;
    bool mIsBound = true;
    int mLastResult;
};
