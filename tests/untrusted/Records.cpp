// SPDX-License-Identifier: MIT

#include "untrusted/Records.h"

#include <QFile>

namespace {

char const kRecord[] = "/tmp/untrusted-record";

/// The field that begins at `position`, which then stands behind it.
QByteArray takeField(QByteArray const& record, int& position)
{
    int const blank = record.indexOf(' ', position);
    int const size = record.mid(position, blank - position).toInt();
    position = blank + 1 + size;
    return record.mid(blank + 1, size);
}

QList<QByteArray> takeList(QByteArray const& record, int& position)
{
    QList<QByteArray> fields;
    int const count = takeField(record, position).toInt();
    for (int i = 0; i < count; ++i)
        fields.append(takeField(record, position));
    return fields;
}

} // namespace

QByteArray Record::script() const
{
    QByteArray const path = arguments.value(0);
    return path.mid(path.lastIndexOf('/') + 1);
}

QByteArray Record::variable(QByteArray const& name) const
{
    QByteArray const start = name + '=';
    for (QByteArray const& line : environment) {
        if (line.startsWith(start))
            return line.mid(start.size());
    }
    return QByteArray();
}

QList<Record> takeRecords()
{
    QList<Record> records;
    QFile file(QString::fromLatin1(kRecord));
    if (!file.open(QIODevice::ReadOnly))
        return records;
    QByteArray const bytes = file.readAll();
    file.remove();
    for (int position = 0; position < bytes.size();) {
        Record record;
        record.arguments = takeList(bytes, position);
        record.environment = takeList(bytes, position);
        record.folder = takeField(bytes, position);
        record.value = takeField(bytes, position);
        records.append(record);
    }
    return records;
}
