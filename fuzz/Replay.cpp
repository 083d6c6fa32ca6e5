// SPDX-License-Identifier: MIT

// Gives a fuzzer the inputs that are kept for it, without a fuzzing engine.
//
// usage: PROGRAM [-OPTION]... FILE|FOLDER...
//
// Options are for the engine, which takes the same arguments, and passed over. Each input is named
// before it is given, so that the last name is the one that did it.

#include "Fuzzing.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>

#include <cstdio>
#include <vector>

namespace {

QStringList filesOf(QString const& path)
{
    if (!QFileInfo(path).isDir())
        return QStringList(path);
    QDir const folder(path);
    QStringList files;
    QStringList const names = folder.entryList(QDir::Files | QDir::Hidden, QDir::Name);
    for (QString const& name : names)
        files.append(folder.filePath(name));
    return files;
}

bool replay(QString const& fileName)
{
    std::printf("%s\n", QFile::encodeName(fileName).constData());
    std::fflush(stdout);
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    QByteArray const content = file.readAll();
    // A block of just the input's size, so that a sanitizer sees a step beyond its end.
    std::vector<uint8_t> const input(content.constBegin(), content.constEnd());
    static_cast<void>(LLVMFuzzerTestOneInput(input.data(), input.size()));
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    static_cast<void>(LLVMFuzzerInitialize(&argc, &argv));
    QStringList files;
    for (int i = 1; i < argc; ++i) {
        QString const argument = QFile::decodeName(argv[i]);
        if (!argument.startsWith(QLatin1Char('-')))
            files += filesOf(argument);
    }
    for (QString const& file : static_cast<QStringList const&>(files)) {
        if (!replay(file))
            return 1;
    }
    std::printf("%d inputs\n", files.size());
    return files.isEmpty() ? 1 : 0;
}
