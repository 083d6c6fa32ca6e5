// SPDX-License-Identifier: MIT

#include "doctor/TreeCheck.h"

#include "common/RegistryVocabulary.h"
#include "common/UuidComponents.h"
#include "doctor/ExaminedView.h"
#include "doctor/FolderCheck.h"
#include "doctor/Names.h"
#include "registry/RegistryKey.h"
#include "tree/KeyPath.h"

#include <QDir>
#include <QFileInfo>

using RegistryVocabulary::viewPlaceholder;

namespace {

/// Why no key has the name of a folder: what was meant instead, as far as that can be told.
QString whyUnknown(QString const& name, QStringList const& known)
{
    QString const reason = QLatin1String("no key of the view has this name");
    bool const isSession = isPlaceholder(name) || isUuidComponent(name);
    if (isSession && known.contains(viewPlaceholder()))
        return reason + QLatin1String("; all sessions share the folder \"{uuid}\"");
    QString const likely = likelyMeant(name, known);
    if (!likely.isNull())
        return reason + didYouMean(likely);
    if (known.isEmpty())
        return reason + QLatin1String("; the key above is a value");
    return reason;
}

class TreeCheck
{
public:
    explicit TreeCheck(ExaminedView& view)
        : mView(view)
    {
    }

    QList<Finding> run()
    {
        QString const wrappers = mView.kit().wrappersDirectory().path();
        mFindings = checkPlace(mView);
        checkFilesOfNoKey(wrappers);
        checkSubfolders(wrappers, QString());
        return mFindings;
    }

private:
    void report(QString const& file, QString const& message)
    {
        Problem const problem = {Fault, 0, message};
        mFindings.append(makeFinding(file, QString(), problem));
    }

    void checkFilesOfNoKey(QString const& wrappers)
    {
        QStringList const names = scriptNames() + environmentFileNames();
        for (QString const& name : names) {
            QString const path = wrappers + QLatin1Char('/') + name;
            if (QFileInfo(path).exists())
                report(path, QLatin1String("lies in the folder of no key"));
        }
    }

    /// @param key  that of the folder, as the host names it; empty for the wrappers directory.
    void checkSubfolders(QString const& folder, QString const& key)
    {
        QStringList const known = key.isEmpty() ? QStringList(KeyPath(mView.rootKey()).basename())
                                                : mView.namesBelow(key);
        QString const above = key.isEmpty() ? KeyPath(mView.rootKey()).dirname().toString() : key;
        QStringList const names
            = QDir(folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
        for (QString const& name : names) {
            QString const path = folder + QLatin1Char('/') + name;
            if (known.contains(name))
                checkKey(path, childKey(above, name));
            else
                report(path, whyUnknown(name, known));
        }
    }

    void checkKey(QString const& folder, QString const& key)
    {
        ExaminedEntry const entry(mView, key);
        if (!entry.isKnown()) {
            report(folder, QLatin1String("the default settings declare nothing in this directory"));
            return;
        }
        if (!QFileInfo(folder).isReadable())
            report(folder, QLatin1String("cannot be read"));
        mFindings += checkFolder(mView, entry);
        checkSubfolders(folder, key);
    }

    ExaminedView& mView;
    QList<Finding> mFindings;
};

} // namespace

QList<Finding> checkWrappers(ExaminedView& view)
{
    return TreeCheck(view).run();
}
