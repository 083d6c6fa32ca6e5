#include "doctor/Explanation.h"

#include "actions/default/DefaultActions.h"
#include "actions/default/Wrapper.h"
#include "doctor/ExaminedView.h"
#include "doctor/FolderCheck.h"
#include "doctor/ScriptFile.h"
#include "tree/IConfigEntry.h"

#include <QElapsedTimer>
#include <QFile>
#include <QVariant>

namespace {

ExpectedFile expectedFile(QString const& path)
{
    ExpectedFile const file = {path, QFile::exists(path)};
    return file;
}

/// From the top down to the entry itself.
QList<IConfigEntry const*> levelsOf(IConfigEntry const& entry)
{
    QList<IConfigEntry const*> levels;
    for (IConfigEntry const* level = &entry; level; level = level->parent())
        levels.prepend(level);
    return levels;
}

QStringList resolvedKeys(ExaminedEntry const& entry, QStringList const& keys)
{
    QStringList result;
    for (QString const& key : keys)
        result.append(entry.resolved(key));
    return result;
}

QStringList targetsOf(ExaminedEntry const& entry)
{
    QStringList targets;
    EnvironmentLines const lines
        = readEnvironmentLines(Wrapper::path(entry.entry(), Wrapper::kSetEnv));
    for (DeclarationLine const& line : lines.declarations) {
        if (line.isTarget())
            targets.append(entry.resolved(line.declaration.registryKey));
    }
    return targets;
}

OperationExplanation explainOperation(ExaminedEntry const& entry, Operation const& operation)
{
    OperationExplanation result;
    result.operation = &operation;
    result.isForKey = operation.isFor(entry.kind());
    result.reason = entry.servingAction(operation).reason;
    result.facts = entry.facts(operation);
    result.registryKeys = resolvedKeys(entry, result.facts.registryKeys);
    result.script = expectedFile(Wrapper::path(entry.entry(), operation.script));
    if (operation.environmentFile) {
        result.environmentFile
            = expectedFile(Wrapper::path(entry.entry(), operation.environmentFile));
        result.declarations = readEnvironmentLines(result.environmentFile.path).declarations;
    }
    if (result.facts.readsTargets)
        result.targets = targetsOf(entry);
    return result;
}

} // namespace

Explanation explain(ExaminedView& view, ExaminedEntry const& entry)
{
    Explanation result;
    result.key = entry.key();
    result.viewKey = entry.viewKey();
    result.kind = entry.kind();
    result.type = entry.type();
    result.defaultValue = entry.defaultValue();
    result.folder = Wrapper::path(entry.entry(), "");
    for (Operation const& operation : operations())
        result.operations.append(explainOperation(entry, operation));
    QList<IConfigEntry const*> const levels = levelsOf(entry.entry());
    for (IConfigEntry const* const level : levels)
        result.visibility.append(expectedFile(Wrapper::path(*level, Wrapper::kIsVisible)));
    result.findings = checkFolder(view, entry);
    return result;
}

namespace {

typedef bool (ActionKit::*Ask)(IConfigEntry const&, QVariant&);

Answer ask(IConfigEntry const& entry, Ask question)
{
    QVariant data;
    QElapsedTimer timer;
    timer.start();
    bool const isAnswered = (ActionKit::instance()->*question)(entry, data);
    Answer const answer = {entry.path(), isAnswered, data.toString(), int(timer.elapsed())};
    return answer;
}

} // namespace

LiveAnswers askLive(ExaminedEntry const& entry)
{
    LiveAnswers answers;
    QList<IConfigEntry const*> const levels = levelsOf(entry.entry());
    for (IConfigEntry const* const level : levels)
        answers.visibility.append(ask(*level, &ActionKit::isVisibleAction));
    answers.hasScript = false;
    answers.hasValue = entry.kind() == ValueKey;
    if (answers.hasValue)
        answers.value = ask(entry.entry(), &ActionKit::valueAction);
    return answers;
}
