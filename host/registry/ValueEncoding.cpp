// SPDX-License-Identifier: MIT

#include "registry/ValueEncoding.h"

#include <QtEndian>

namespace {

int const kUnitSize = sizeof(ushort);

} // namespace

QByteArray bytesOfText(QString const& text)
{
    QByteArray bytes(text.size() * kUnitSize, '\0');
    uchar* to = reinterpret_cast<uchar*>(bytes.data());
    for (int i = 0; i < text.size(); ++i, to += kUnitSize)
        qToLittleEndian<quint16>(text.at(i).unicode(), to);
    return bytes;
}

QString textOfBytes(QByteArray const& bytes)
{
    QString text(bytes.size() / kUnitSize, QChar());
    uchar const* from = reinterpret_cast<uchar const*>(bytes.constData());
    QChar* to = text.data();
    for (int i = 0; i < text.size(); ++i, from += kUnitSize)
        to[i] = QChar(qFromLittleEndian<quint16>(from));
    return text;
}
