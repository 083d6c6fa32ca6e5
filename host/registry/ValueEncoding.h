// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

/// The code units of `text` as bytes, low byte first: every text comes back as it was, NUL and
/// unpaired surrogates included, which no text encoding promises.
QByteArray bytesOfText(QString const& text);

/// The reverse of `bytesOfText`; empty, never null, for no bytes. An odd last byte is left out.
QString textOfBytes(QByteArray const& bytes);
