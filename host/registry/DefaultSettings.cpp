// SPDX-License-Identifier: MIT

#include "registry/DefaultSettings.h"

#include "registry/DefaultNode.h"
#include "registry/DefaultsLoader.h"
#include "registry/RegistryKey.h"
#include "registry/RegistryXmlReader.h"
#include "registry/ResultCodes.h"

#include <QDir>
#include <QFile>
#include <QStringList>

namespace {

Reg::Node* makeNode(DefaultNode const& declaration, QString const& key)
{
    if (!declaration.isValue())
        return new Reg::Node(key);
    return new Reg::Entry(key, declaration.defaultValue(), declaration.type(),
                          declaration.regExp());
}

bool loadFile(QString const& fileName, DefaultNode& top, QString& error)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        error = QString::fromLatin1("%1: %2").arg(fileName, file.errorString());
        return false;
    }
    DefaultsLoader loader(top);
    QString reason;
    if (!readRegistryXml(file.readAll(), loader, reason)) {
        error = QString::fromLatin1("%1: %2").arg(fileName, reason);
        return false;
    }
    return true;
}

} // namespace

DefaultSettings::DefaultSettings()
    : mTop(new DefaultNode(QString()))
{
}

DefaultSettings::~DefaultSettings()
{
}

bool DefaultSettings::load(QString const& directory, QString& error)
{
    QDir const dir(directory);
    QStringList const files
        = dir.entryList(QStringList(QLatin1String("*.xml")), QDir::Files, QDir::Name);
    if (files.isEmpty()) {
        error = QString::fromLatin1("%1: no default settings (*.xml) here").arg(directory);
        return false;
    }
    QScopedPointer<DefaultNode> extended(mTop->clone());
    for (QString const& file : files) {
        if (!loadFile(dir.filePath(file), *extended, error))
            return false;
    }
    mTop.swap(extended);
    return true;
}

int DefaultSettings::query(QString const& key, Reg::NodeSet& nodes, QString const&)
{
    DefaultNode const* const node = findNode(*mTop, key);
    if (!node)
        return kRefused;
    if (node->isValue()) {
        nodes.append(makeNode(*node, key));
        return kDone;
    }
    QList<DefaultNode*> const children = node->children();
    for (DefaultNode const* child : children)
        nodes.append(makeNode(*child, childKey(key, child->name())));
    return kDone;
}
