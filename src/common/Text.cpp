// SPDX-License-Identifier: MIT

#include "common/Text.h"

QString emptyText()
{
    return QString::fromLatin1("");
}

bool isSplitByCommandLine(QString const& path)
{
    for (QChar const c : path) {
        if (c.isSpace() || c == QLatin1Char('"'))
            return true;
    }
    return false;
}

QString latin1UpToNul(QByteArray const& bytes)
{
    int const nul = bytes.indexOf('\0');
    return QString::fromLatin1(bytes.constData(), nul < 0 ? bytes.size() : nul);
}
