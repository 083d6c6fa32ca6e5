// SPDX-License-Identifier: MIT

#include "support/Footprint.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

/// The numbers of the open descriptors, without the one that the look itself takes.
QStringList openDescriptors()
{
    QStringList open;
    QDir const directory("/proc/self/fd");
    QStringList const names = directory.entryList(QDir::AllEntries | QDir::System | QDir::Hidden
                                                  | QDir::NoDotAndDotDot);
    for (QString const& name : names) {
        QString const target = QFile::symLinkTarget(directory.filePath(name));
        if (!target.isEmpty() && !target.endsWith("/fd"))
            open.append("descriptor " + name + " of " + target);
    }
    return open;
}

QStringList temporaryFiles()
{
    return QDir("/tmp").entryList(QDir::AllEntries | QDir::System | QDir::Hidden
                                  | QDir::NoDotAndDotDot);
}

/// The parent of a process as "/proc/PID/stat" has it, behind the command in parentheses.
QByteArray parentOf(QString const& process)
{
    QFile file("/proc/" + process + "/stat");
    if (!file.open(QIODevice::ReadOnly))
        return QByteArray();
    QByteArray const line = file.readAll();
    QList<QByteArray> const fields = line.mid(line.lastIndexOf(')') + 2).split(' ');
    return fields.size() > 1 ? fields.at(1) : QByteArray();
}

QStringList childProcesses()
{
    QStringList children;
    QByteArray const self = QByteArray::number(QCoreApplication::applicationPid());
    QStringList const processes = QDir("/proc").entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (QString const& process : processes) {
        if (process.at(0).isDigit() && parentOf(process) == self)
            children.append("child process " + process);
    }
    return children;
}

QStringList without(QStringList const& after, QStringList const& before)
{
    QStringList left;
    for (QString const& item : after) {
        if (!before.contains(item))
            left.append(item);
    }
    return left;
}

} // namespace

Footprint::Footprint()
    : mDescriptors(openDescriptors())
    , mTemporaryFiles(temporaryFiles())
    , mChildren(childProcesses())
{
}

QStringList Footprint::newSince(Footprint const& before) const
{
    return without(mDescriptors, before.mDescriptors)
        + without(mTemporaryFiles, before.mTemporaryFiles) + without(mChildren, before.mChildren);
}
