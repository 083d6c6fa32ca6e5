// SPDX-License-Identifier: MIT

#pragma once

#include "actions/ActionKit.h"
#include "actions/IActionDescription.h"
#include "doctor/Operations.h"
#include "plugin/ZelvoView.h"
#include "registry/RegistryHost.h"
#include "tree/ConfigTree.h"

#include <QString>
#include <QStringList>

class IConfigEntry;

/// The plugin in a host of its own, to be asked about what it has registered. Looking at it runs no
/// script. One in a process, as the plugin is.
class ExaminedView
{
public:
    ExaminedView();

    /// @param baseDir       holds "wrappers", and may hold "defaults"; empty: the working
    ///                      directory.
    /// @param defaults      directories of default settings; those shipped if there are none.
    /// @param registryFile  a database of live values, which must exist; empty: none.
    /// @return false with a message in `error`.
    bool open(QString const& baseDir, QStringList const& defaults, QString const& registryFile,
              QString& error);

    /// "root/" and the plugin's name.
    QString rootKey() const;

    ActionKit const& kit() const;
    Reg::Registry& defaultSettings();

    /// The names of what the default settings declare directly below a key; none for a value.
    QStringList namesBelow(QString const& key);

private:
    Q_DISABLE_COPY(ExaminedView)

    // In this order: the plugin goes before its host.
    RegistryHost mHost;
    ZelvoView mPlugin;
};

/// A key of the view, found as the plugin finds it, whether it is shown or not.
class ExaminedEntry
{
public:
    /// @param key  as the host names it; its session may be "{uuid}".
    ExaminedEntry(ExaminedView& view, QString const& key);

    /// Whether the view has such a key. All else is for those that are known.
    bool isKnown() const;

    QString key() const;

    /// The generalised path, by which actions are registered and folders are named.
    QString viewKey() const;

    EntryKind kind() const;

    /// Of a value key.
    _RegEntryType type() const;
    QString defaultValue() const;

    IConfigEntry const& entry() const;

    /// Which action serves an operation on the key, and why.
    ServingAction servingAction(Operation const& operation) const;
    ActionDescription description(Operation const& operation) const;

    /// A registry key as it is used for this very key.
    QString resolved(QString const& registryKey) const;

private:
    Q_DISABLE_COPY(ExaminedEntry)

    ExaminedView& mView;
    QString mKey;
    ConfigTree mTree;
    IConfigEntry const* mEntry;
    _RegEntryType mType;
    QString mDefaultValue;
};
