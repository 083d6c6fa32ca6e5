// SPDX-License-Identifier: MIT

#include "Fuzzing.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cstdio>
#include <cstdlib>

namespace {

char const kRawUnit = '\xfd';
int const kRawUnitSize = 3;

[[noreturn]] void end(char const* reason)
{
    std::fprintf(stderr, "%s\n", reason);
    std::abort();
}

} // namespace

int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    if (!std::getenv("VANTORA_SANDBOX_RECORD"))
        end("a fuzzer runs in the sandbox only");
    qputenv("QT_LOGGING_RULES", "*=false");
    static QCoreApplication application(*argc, *argv);
    return 0;
}

void fuzzCheck(bool holds, char const* property)
{
    if (holds)
        return;
    std::fprintf(stderr, "does not hold: ");
    end(property);
}

QString fuzzText(QByteArray const& bytes)
{
    QString text;
    int begin = 0;
    for (;;) {
        int const raw = bytes.indexOf(kRawUnit, begin);
        int const end = raw < 0 || raw + kRawUnitSize > bytes.size() ? bytes.size() : raw;
        text += QString::fromUtf8(bytes.constData() + begin, end - begin);
        if (end == bytes.size())
            return text;
        text += QChar(static_cast<uchar>(bytes.at(raw + 2)), static_cast<uchar>(bytes.at(raw + 1)));
        begin = raw + kRawUnitSize;
    }
}

QByteArray fuzzBytes(uint8_t const* data, std::size_t size)
{
    return QByteArray(reinterpret_cast<char const*>(data), static_cast<int>(size));
}

void fuzzWriteFile(QString const& fileName, QByteArray const& content)
{
    QFile file(fileName);
    QDir().mkpath(QFileInfo(file).absolutePath());
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)
        || file.write(content) != content.size())
        end("cannot write the file of an input");
}
