// SPDX-License-Identifier: MIT

#pragma once

#include "registry/LiveChange.h"
#include "registry/RegistryXmlReader.h"

#include <QSet>
#include <QStringList>

class DefaultNode;
class LiveNode;
struct Place;

/// Checks a document against the registry and collects what taking it over would change. Nothing is
/// changed by it.
class RegistryImport : public RegistryXmlHandler
{
public:
    /// @param foreign      roots of keys that are refused.
    /// @param lastOrdinal  the highest place in the order of creation that is given.
    ///
    /// The registry's two parts must outlive the import.
    RegistryImport(DefaultNode const& declarations, LiveNode const& live,
                   QStringList const& foreign, qint64 lastOrdinal);

    bool enterDirectory(QString const& name, QString& error) override;
    void leaveDirectory() override { mDirectories.removeLast(); }
    bool addKey(RegistryXmlKey const& key, QString& error) override;

    LiveChanges steps() const { return mSteps; }

    /// All keys that the document names, directories included.
    QStringList listedKeys() const { return mListedKeys; }

    qint64 lastOrdinal() const { return mLastOrdinal; }

private:
    Q_DISABLE_COPY(RegistryImport)

    QString keyFor(QString const& name) const;
    bool findPlaceFor(QString const& key, QString const& name, Place& place, QString& error) const;
    void createSession(QString const& key);

    DefaultNode const& mDeclarations;
    LiveNode const& mLive;
    QStringList const mForeign;
    qint64 mLastOrdinal;
    // The keys of the directories that are open, the innermost last.
    QStringList mDirectories;
    QSet<QString> mCreated;
    LiveChanges mSteps;
    QStringList mListedKeys;
};
