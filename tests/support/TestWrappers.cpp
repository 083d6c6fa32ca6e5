// SPDX-License-Identifier: MIT

#include "support/TestWrappers.h"

#include <QFile>

TestWrappers::TestWrappers(QString const& name)
    : mName(name)
{
    QDir(mDirectory.path()).mkpath(name);
}

QDir TestWrappers::directory() const
{
    return QDir(mDirectory.path() + "/" + mName);
}

QString TestWrappers::folder(QString const& viewKey) const
{
    return directory().path() + "/" + viewKey;
}

QString TestWrappers::addScript(QString const& viewKey, QString const& name,
                                QByteArray const& body) const
{
    QString const script = addFile(viewKey, name, "#!/bin/sh\n" + body + "\n");
    QFile::setPermissions(script, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return script;
}

QString TestWrappers::addFile(QString const& viewKey, QString const& name,
                              QByteArray const& content) const
{
    return mDirectory.write(relative(viewKey, name), content);
}

QByteArray TestWrappers::read(QString const& viewKey, QString const& name) const
{
    return mDirectory.read(relative(viewKey, name));
}

bool TestWrappers::exists(QString const& viewKey, QString const& name) const
{
    return QFile::exists(folder(viewKey) + "/" + name);
}

QString TestWrappers::relative(QString const& viewKey, QString const& name) const
{
    return mName + "/" + viewKey + "/" + name;
}
