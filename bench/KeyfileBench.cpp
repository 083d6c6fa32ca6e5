// SPDX-License-Identifier: MIT

// Reading a connection file of NetworkManager, changing the SSID and writing it back.
//
//   keyfile   through NMConfFile
//   baseline  the same bytes read and written with the same system calls, nothing looked at: before
//             opening a file what kind it is, of an open one its size, reading to the end of it; a
//             new file, synced, in place of the old

#include "wireless/NMConfFile.h"

#include <QByteArray>
#include <QString>

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

char const kDirectory[] = "/tmp";
char const kFile[] = "/tmp/keyfile-bench";
char const kNewFile[] = "/tmp/.keyfile-bench";

void askForKind()
{
    struct stat status;
    benchmark::DoNotOptimize(::access(kFile, F_OK));
    benchmark::DoNotOptimize(::stat(kFile, &status));
}

void write(QByteArray const& content)
{
    askForKind();
    benchmark::DoNotOptimize(::access(kFile, W_OK));
    int const file = ::open(kDirectory, O_RDWR | O_TMPFILE | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (::write(file, content.constData(), static_cast<size_t>(content.size())) != content.size())
        qFatal("cannot write in %s", kDirectory);
    ::fsync(file);
    QByteArray const unnamed = "/proc/self/fd/" + QByteArray::number(file);
    if (::linkat(AT_FDCWD, unnamed.constData(), AT_FDCWD, kNewFile, AT_SYMLINK_FOLLOW) != 0
        || ::rename(kNewFile, kFile) != 0)
        qFatal("cannot replace %s", kFile);
    ::close(file);
}

QByteArray read()
{
    char buffer[4096];
    struct stat status;
    askForKind();
    int const file = ::open(kFile, O_RDONLY | O_CLOEXEC);
    benchmark::DoNotOptimize(::fstat(file, &status));
    ssize_t const size = ::read(file, buffer, sizeof(buffer));
    while (::read(file, buffer + size, sizeof(buffer) - static_cast<size_t>(size)) > 0) { }
    ::close(file);
    return QByteArray(buffer, static_cast<int>(size));
}

/// A connection as the plugin itself writes it.
QByteArray content()
{
    ::unlink(kFile);
    NMConfFile file(QString::fromLatin1(kFile));
    file.setSecurity(QString::fromLatin1("WPA Personal"));
    file.setPassphrase(QString::fromLatin1("a passphrase of some length"));
    file.setSsid(QString::fromLatin1("first network"));
    return file.toString().toLatin1();
}

void keyfile(benchmark::State& state)
{
    write(content());
    QString const path = QString::fromLatin1(kFile);
    bool isOdd = false;
    for (auto _ : state) {
        isOdd = !isOdd;
        NMConfFile file(path);
        file.setSsid(QString::fromLatin1(isOdd ? "first network" : "other network"));
        file.sync();
    }
}

void baselineOfKeyfile(benchmark::State& state)
{
    write(content());
    for (auto _ : state)
        write(read());
}

BENCHMARK(keyfile);
BENCHMARK(baselineOfKeyfile)->Name("baseline");

} // namespace

BENCHMARK_MAIN();
