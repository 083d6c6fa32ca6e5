// SPDX-License-Identifier: MIT

#include "doctor/ExaminedView.h"

#include "common/RegistryVocabulary.h"
#include "common/Text.h"
#include "common/UuidComponents.h"
#include "registry/DefaultsDirectories.h"
#include "tree/ConfigKey.h"

#include <vantora/registry.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace {

char const* const kInMemory = ":memory:";

} // namespace

ExaminedView::ExaminedView()
{
}

bool ExaminedView::open(QString const& baseDir, QStringList const& defaults,
                        QString const& registryFile, QString& error)
{
    QString const base = QDir::cleanPath(QDir::current().absoluteFilePath(baseDir));
    QStringList const directories = defaultsDirectories(defaults, base);
    for (QString const& directory : directories) {
        if (!mHost.loadDefaults(directory, error))
            return false;
    }
    // The host would make the file.
    if (!registryFile.isEmpty() && !QFileInfo(registryFile).isFile()) {
        error = QString::fromLatin1("%1: no such file").arg(registryFile);
        return false;
    }
    if (!mHost.open(registryFile.isEmpty() ? QString::fromLatin1(kInMemory) : registryFile, error))
        return false;
    mPlugin.pluginIsLoaded(mHost, mHost.defaultSettings(), QCoreApplication::applicationName(),
                           base);
    mHost.addPlugin(mPlugin);
    return true;
}

QString ExaminedView::rootKey() const
{
    return mPlugin.rootDir();
}

ActionKit const& ExaminedView::kit() const
{
    return *ActionKit::instance();
}

Reg::Registry& ExaminedView::defaultSettings()
{
    return mHost.defaultSettings();
}

QStringList ExaminedView::namesBelow(QString const& key)
{
    QStringList names;
    Reg::NodeSet nodes;
    if (defaultSettings().query(key, nodes, emptyText()) != 0)
        return names;
    QList<Reg::Node*> const list = nodes.list();
    for (Reg::Node const* const node : list) {
        // A value answers with itself.
        if (node->absoluteName() != key)
            names.append(node->name());
    }
    return names;
}

ExaminedEntry::ExaminedEntry(ExaminedView& view, QString const& key)
    : mView(view)
    , mKey(key)
    , mTree(view.rootKey())
    , mEntry(nullptr)
    , mType(REG_TYPE_STRING)
{
    QString const general = generalisedPath(key);
    Reg::NodeSet nodes;
    if (!KeyPath(view.rootKey()).isRootOf(key)
        || view.defaultSettings().query(general, nodes, emptyText()) != 0)
        return;
    IConfigEntry const* const declared = mTree.constructEntries(general, nodes);
    mEntry = general == key ? declared : mTree.resolveUuids(key);
    if (!mEntry || nodes.size() != 1)
        return;
    if (Reg::Entry const* const value = dynamic_cast<Reg::Entry const*>(nodes.at(0))) {
        mType = value->type();
        mDefaultValue = value->value();
    }
}

bool ExaminedEntry::isKnown() const
{
    return mEntry;
}

QString ExaminedEntry::key() const
{
    return mKey;
}

QString ExaminedEntry::viewKey() const
{
    // There is an entry, as the key is known. NOLINTNEXTLINE(clang-analyzer-core.CallAndMessage)
    return generalisedPath(mEntry->path());
}

EntryKind ExaminedEntry::kind() const
{
    if (dynamic_cast<ConfigKey const*>(mEntry))
        return ValueKey;
    bool const isSession = KeyPath(viewKey()).basename() == RegistryVocabulary::viewPlaceholder();
    return isSession ? SessionDirectory : PlainDirectory;
}

_RegEntryType ExaminedEntry::type() const
{
    return mType;
}

QString ExaminedEntry::defaultValue() const
{
    return mDefaultValue;
}

IConfigEntry const& ExaminedEntry::entry() const
{
    return *mEntry;
}

ServingAction ExaminedEntry::servingAction(Operation const& operation) const
{
    return mView.kit().servingAction(operation.action, *mEntry);
}

ActionDescription ExaminedEntry::description(Operation const& operation) const
{
    return descriptionOf(servingAction(operation).action, *mEntry);
}

QString ExaminedEntry::resolved(QString const& registryKey) const
{
    return ActionKit::resolveUuid(mEntry->path(), registryKey);
}
