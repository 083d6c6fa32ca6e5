// SPDX-License-Identifier: MIT

// The input is what a module says of its build. It is taken only when all four fields, each as its
// first line has it, are those of the platform.

#include "Fuzzing.h"
#include "loader/VerificationRecord.h"

#include <QList>

namespace {

int const kLongestMessage = 200;

/// A plain second reading: what stands behind NAME= at the beginning of a line, the first time.
QByteArray field(QByteArray const& text, QByteArray const& name)
{
    QByteArray const lines = '\n' + text + '\n';
    int const start = lines.indexOf('\n' + name + '=');
    if (start < 0)
        return QByteArray();
    int const value = start + name.size() + 2;
    return lines.mid(value, lines.indexOf('\n', value) - value);
}

bool isOurVersion(QByteArray const& version)
{
    QList<QByteArray> const parts = version.split('.');
    bool isMajor = false;
    bool isMinor = false;
    int const major
        = QString::fromLatin1(parts.value(0).constData(), parts.value(0).size()).toInt(&isMajor);
    int const minor
        = QString::fromLatin1(parts.value(1).constData(), parts.value(1).size()).toInt(&isMinor);
    return isMajor && isMinor && major == 4 && minor >= 0 && minor <= 8;
}

bool isOurs(QByteArray const& text)
{
    return field(text, "pattern") == "QT_PLUGIN_VERIFICATION_DATA"
        && isOurVersion(field(text, "version")) && field(text, "debug") == "false"
        && field(text, "buildkey") == "arm linux g++-4 full-config";
}

} // namespace

int LLVMFuzzerTestOneInput(uint8_t const* data, std::size_t size)
{
    QByteArray const text = fuzzBytes(data, size);
    VerificationRecord const record(text);
    QString const mismatch = record.mismatch();
    fuzzCheck(mismatch.isNull() == isOurs(text), "only the platform's own modules are taken");
    fuzzCheck(mismatch.size() < kLongestMessage, "a message is short whatever it tells of");

    QByteArray const more = "\npattern=x\nversion=x\ndebug=x\nbuildkey=x";
    if (mismatch.isNull())
        fuzzCheck(VerificationRecord(text + more).mismatch().isNull(),
                  "of a repeated field the first counts");
    return 0;
}
