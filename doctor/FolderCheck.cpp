// SPDX-License-Identifier: MIT

#include "doctor/FolderCheck.h"

#include "actions/default/Wrapper.h"
#include "common/RegistryVocabulary.h"
#include "common/Text.h"
#include "common/UuidComponents.h"
#include "doctor/EmptyValue.h"
#include "doctor/EnvironmentLines.h"
#include "doctor/ExaminedView.h"
#include "doctor/Names.h"
#include "doctor/RegistryKeys.h"
#include "doctor/ScriptFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

using RegistryVocabulary::registryPlaceholder;
using RegistryVocabulary::viewPlaceholder;

namespace {

bool hasComponent(QString const& key, QString const& component)
{
    return key.split(QLatin1Char('/')).contains(component);
}

/// One look at one folder.
class FolderCheck
{
public:
    FolderCheck(ExaminedView& view, ExaminedEntry const& entry)
        : mView(view)
        , mEntry(entry)
        , mViewKey(entry.viewKey())
    {
    }

    QList<Finding> run()
    {
        for (Operation const& operation : operations()) {
            checkScript(operation);
            if (operation.environmentFile)
                checkEnvironmentFile(operation);
        }
        checkThatSetValueIsCommitted();
        checkThatEmptyValueIsRefused();
        checkOtherFiles();
        return mFindings;
    }

private:
    QString path(char const* file) const { return Wrapper::path(mViewKey, file); }

    bool hasScript(Operation const& operation) const
    {
        return QFile::exists(path(operation.script));
    }

    void report(QString const& file, int line, QString const& message)
    {
        Problem const problem = {Fault, line, message};
        mFindings.append(makeFinding(file, mViewKey, problem));
    }

    void report(QString const& file, QList<Problem> const& problems)
    {
        for (Problem const& problem : problems)
            mFindings.append(makeFinding(file, mViewKey, problem));
    }

    void checkScript(Operation const& operation)
    {
        QString const script = path(operation.script);
        report(script, problemsOfScript(script, operation.environment));
        if (!hasScript(operation))
            return;
        if (!operation.isFor(mEntry.kind()))
            report(script, 0, QLatin1String("never runs: ") + QLatin1String(operation.reach()));
        if (!operation.takesValue && isSplitByCommandLine(mViewKey))
            report(
                script, 0,
                QLatin1String("is not found: it is started by a command line, which the blank in "
                              "the key splits; this counts as success"));
    }

    void checkEnvironmentFile(Operation const& operation)
    {
        QString const file = path(operation.environmentFile);
        if (!QFile::exists(file))
            return;
        if (!QFileInfo(file).isFile() || !QFileInfo(file).isReadable())
            report(file, 0, QLatin1String("cannot be read as a file, and is ignored"));
        EnvironmentLines const lines = readEnvironmentLines(file);
        report(file, lines.problems);

        QString const unread = whyVariablesAreNotRead(operation);
        for (DeclarationLine const& line : lines.declarations) {
            if (!line.isTarget())
                checkVariable(file, line, operation, unread);
            else if (operation.action == ISettingClass::ACTION_SET_VALUE)
                checkTarget(file, line);
            else
                report(
                    file, line.line,
                    QLatin1String("REG_SET names a target in set.env only; here it is a variable "
                                  "like any other"));
        }
    }

    /// @param unread  why no script gets it; null when one does.
    void checkVariable(QString const& file, DeclarationLine const& line, Operation const& operation,
                       QString const& unread)
    {
        if (unread.isNull())
            checkRegistryKey(file, line, operation);
        else
            report(file, line.line,
                   QString::fromLatin1("%1 is not read: ").arg(line.declaration.name) + unread);
    }

    void checkTarget(QString const& file, DeclarationLine const& line)
    {
        Operation const& set = operation(ISettingClass::ACTION_SET_VALUE);
        checkRegistryKey(file, line, set);
        // Setting and committing have to agree on the keys.
        checkTargetIsUsed(file, line.line, set, "set");
        checkTargetIsUsed(file, line.line, operation(ISettingClass::ACTION_COMMIT), "committed");
    }

    void checkTargetIsUsed(QString const& file, int line, Operation const& operation,
                           char const* done)
    {
        if (!operation.isFor(mEntry.kind()) || mEntry.description(operation).readsTargets)
            return;
        report(
            file, line,
            QString::fromLatin1("what REG_SET names is not %1: without a %2 the key is served by "
                                "%3, which does not look here")
                .arg(QLatin1String(done), fileName(operation.script),
                     QLatin1String(mEntry.description(operation).className)));
    }

    /// Null when they are.
    QString whyVariablesAreNotRead(Operation const& operation) const
    {
        if (!operation.isFor(mEntry.kind()))
            return QLatin1String(operation.reach());
        if (!hasScript(operation))
            return QString::fromLatin1("there is no %1 beside it").arg(fileName(operation.script));
        ActionDescription const action = mEntry.description(operation);
        if (action.readsEnvironmentFile)
            return QString();
        return QLatin1String(action.className)
            + QLatin1String(", which serves the key, gives its script others");
    }

    void checkRegistryKey(QString const& file, DeclarationLine const& line,
                          Operation const& operation)
    {
        QString const key = line.declaration.registryKey;
        bool const isRequest = line.isTarget() || operation.action == ISettingClass::ACTION_VALUE;
        QString const problem = isRequest && isKeyItself(key)
            ? QLatin1String("is the key itself, which would lead the request into itself")
            : problemOfRegistryKey(key, line.isTarget());
        if (!problem.isNull())
            report(file, line.line, QString::fromLatin1("%1: %2").arg(key, problem));
    }

    /// Null when there is none.
    QString problemOfRegistryKey(QString const& key, bool isTarget) const
    {
        if (hasComponent(key, viewPlaceholder()))
            return QLatin1String("\"{uuid}\" is not replaced here; the word is \"{UUID}\"");
        if (hasComponent(key, registryPlaceholder()) && !hasComponent(mViewKey, viewPlaceholder()))
            return QLatin1String("\"{UUID}\" is replaced for the keys of a session only");
        switch (knowledgeOf(mView, key)) {
        case UnknownKey:
            return QLatin1String("the default settings know no such key")
                + didYouMean(likelyKey(mView, key));
        case DirectoryKey:
            // The commit of a directory may name directories.
            return isTarget && mEntry.kind() != ValueKey
                ? QString()
                : QLatin1String("is a directory, which has no value");
        default:
            return QString();
        }
    }

    bool isKeyItself(QString const& key) const
    {
        QString const inView = replaceUuidComponents(key, viewPlaceholder())
                                   .replace(registryPlaceholder(), viewPlaceholder());
        return !hasComponent(key, viewPlaceholder()) && inView == generalisedPath(mEntry.key());
    }

    /// What "set.sh" made of a value waits in the plugin. The registry is told only of targets, and
    /// of the other back ends only some take the value that waits.
    void checkThatSetValueIsCommitted()
    {
        Operation const& set = operation(ISettingClass::ACTION_SET_VALUE);
        Operation const& commit = operation(ISettingClass::ACTION_COMMIT);
        if (mEntry.kind() != ValueKey || !hasScript(set) || hasScript(commit) || hasTargets()
            || mEntry.description(commit).takesWaitingValue)
            return;
        report(path(set.script), 0,
               QLatin1String("what it prints is lost at the commit: there is no commit.sh, and no "
                             "REG_SET line in set.env"));
    }

    /// A key that is committed by name without having been set has no value to hand over.
    void checkThatEmptyValueIsRefused()
    {
        QString const script = path(Wrapper::kCommit);
        QByteArray content;
        if (mEntry.kind() != ValueKey || !readScript(script, content)
            || !seemsToKeepEmptyValue(content))
            return;
        Problem const problem = {
            Note, 0,
            QLatin1String("seems to keep an empty value when the key is committed without having "
                          "been set: nothing in it looks whether there is one, as "
                          "[ -s \"$1\" ] || exit 1 does")};
        mFindings.append(makeFinding(script, mViewKey, problem));
    }

    bool hasTargets() const
    {
        EnvironmentLines const lines = readEnvironmentLines(path(Wrapper::kSetEnv));
        for (DeclarationLine const& line : lines.declarations) {
            if (line.isTarget())
                return true;
        }
        return false;
    }

    void checkOtherFiles()
    {
        QStringList const known = scriptNames() + environmentFileNames();
        QDir const folder(path(""));
        QStringList const files = folder.entryList(QDir::Files | QDir::System, QDir::Name);
        for (QString const& file : files) {
            QString const likely = likelyMeant(file, known);
            if (!likely.isNull())
                report(folder.filePath(file), 0,
                       QLatin1String("is not looked for") + didYouMean(likely));
            else if (!known.contains(file) && file.endsWith(QLatin1String(".env")))
                report(folder.filePath(file), 0,
                       QString::fromLatin1("is not looked for: the environment files are %1")
                           .arg(environmentFileNames().join(QLatin1String(", "))));
        }
    }

    ExaminedView& mView;
    ExaminedEntry const& mEntry;
    QString const mViewKey;
    QList<Finding> mFindings;
};

} // namespace

QList<Finding> checkPlace(ExaminedView const& view)
{
    QList<Finding> findings;
    QString const wrappers = view.kit().wrappersDirectory().path();
    if (!isSplitByCommandLine(wrappers))
        return findings;
    Problem const problem = {
        Fault, 0,
        QLatin1String("there is a blank or a quote in this path, which splits the command line of "
                      "all scripts but set.sh and commit.sh: they are not found, which counts as "
                      "success")};
    findings.append(makeFinding(wrappers, QString(), problem));
    return findings;
}

QList<Finding> checkFolder(ExaminedView& view, ExaminedEntry const& entry)
{
    return FolderCheck(view, entry).run();
}
