// SPDX-License-Identifier: MIT

#include "Figures.h"

#include "support/Footprint.h"

#include <QDir>
#include <QFile>
#include <QStringList>

#include <malloc.h>
#include <unistd.h>

namespace {

long const kKibi = 1024;
long const kHeapMayGrow = 64 * kKibi;
long const kResidentMayGrow = 2 * kKibi * kKibi;

long heapInUse()
{
#ifdef MEMORY_IS_THE_SANITIZERS
    return 0;
#else
    struct mallinfo2 const heap = mallinfo2();
    return static_cast<long>(heap.uordblks + heap.hblkhd);
#endif
}

long residentMemory()
{
#ifdef MEMORY_IS_THE_SANITIZERS
    return 0;
#else
    QFile file("/proc/self/statm");
    if (!file.open(QIODevice::ReadOnly))
        qFatal("cannot read the size of the process");
    return file.readAll().split(' ').value(1).toLong() * sysconf(_SC_PAGESIZE);
#endif
}

int entries(QString const& directory)
{
    return QDir(directory).entryList(QDir::AllEntries | QDir::NoDotAndDotDot).size();
}

int runningProcesses()
{
    return QDir("/proc").entryList(QStringList("[0-9]*"), QDir::Dirs).size();
}

int semaphoreSets()
{
    QFile file("/proc/sysvipc/sem");
    if (!file.open(QIODevice::ReadOnly))
        qFatal("cannot list the semaphores");
    // The first line is the heading.
    return file.readAll().count('\n') - 1;
}

void compare(QStringList& grown, char const* what, long before, long now, long mayGrow = 0)
{
    if (now > before + mayGrow)
        grown.append(QString("%1: %2, was %3").arg(QString(what)).arg(now).arg(before));
}

} // namespace

Figures Figures::sNow()
{
    Footprint const footprint;
    Figures now;
    now.descriptors = footprint.descriptorCount();
    now.threads = entries("/proc/self/task");
    now.children = footprint.childCount();
    now.processes = runningProcesses();
    now.temporaryFiles = footprint.temporaryFileCount();
    now.semaphores = semaphoreSets();
    now.heapBytes = heapInUse();
    now.residentBytes = residentMemory();
    return now;
}

QString Figures::grownSince(Figures const& before) const
{
    QStringList grown;
    compare(grown, "heap bytes", before.heapBytes, heapBytes, kHeapMayGrow);
    compare(grown, "resident bytes", before.residentBytes, residentBytes, kResidentMayGrow);
    compare(grown, "descriptors", before.descriptors, descriptors);
    compare(grown, "threads", before.threads, threads);
    compare(grown, "children", before.children, children);
    compare(grown, "processes", before.processes, processes);
    compare(grown, "temporary files", before.temporaryFiles, temporaryFiles);
    compare(grown, "semaphores", before.semaphores, semaphores);
    return grown.join("; ");
}
