// SPDX-License-Identifier: MIT

#include "doctor/Explanation.h"

#include "actions/ActionKit.h"
#include "actions/IActivityObserver.h"
#include "actions/default/Wrapper.h"
#include "common/UuidComponents.h"
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

QStringList variablesOf(ExaminedEntry const& entry, QList<DeclarationLine> const& lines)
{
    QStringList variables;
    for (DeclarationLine const& line : lines) {
        if (!line.isTarget())
            variables.append(line.declaration.name + QLatin1Char('=')
                             + entry.resolved(line.declaration.registryKey));
    }
    return variables;
}

OperationExplanation explainOperation(ExaminedEntry const& entry, Operation const& operation)
{
    OperationExplanation result;
    result.operation = &operation;
    result.isForKey = operation.isFor(entry.kind());
    result.reason = entry.servingAction(operation).reason;
    result.action = entry.description(operation);
    result.registryKeys = resolvedKeys(entry, result.action.registryKeys);
    result.script = expectedFile(Wrapper::path(entry.entry(), operation.script));
    if (operation.environmentFile) {
        result.environmentFile
            = expectedFile(Wrapper::path(entry.entry(), operation.environmentFile));
        result.declarations = readEnvironmentLines(result.environmentFile.path).declarations;
    }
    if (result.action.readsEnvironmentFile)
        result.variables = variablesOf(entry, result.declarations);
    if (result.action.readsTargets)
        result.targets = targetsOf(entry);
    return result;
}

bool isReadOnly(ExaminedEntry const& entry)
{
    return entry.kind() == ValueKey
        && entry.description(operation(ISettingClass::ACTION_VALUE)).backEnd
        && !entry.description(operation(ISettingClass::ACTION_SET_VALUE)).backEnd
        && !entry.description(operation(ISettingClass::ACTION_COMMIT)).backEnd;
}

QStringList filesOf(QList<OperationExplanation> const& operations)
{
    QStringList files;
    for (OperationExplanation const& operation : operations) {
        if (operation.isForKey)
            files += operation.action.files;
    }
    files.removeDuplicates();
    return files;
}

/// What is wrong with the scripts that can hide the entry, but for its own.
QList<Finding> findingsAbove(QList<IConfigEntry const*> const& levels)
{
    QList<Finding> findings;
    for (IConfigEntry const* const level : levels.mid(0, levels.size() - 1)) {
        QString const script = Wrapper::path(*level, Wrapper::kIsVisible);
        QList<Problem> const problems = problemsOfScript(script, InheritedEnvironment);
        for (Problem const& problem : problems)
            findings.append(makeFinding(script, generalisedPath(level->path()), problem));
    }
    return findings;
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
    result.isReadOnly = isReadOnly(entry);
    result.folder = Wrapper::path(entry.entry(), "");
    for (Operation const& operation : operations())
        result.operations.append(explainOperation(entry, operation));
    result.files = filesOf(result.operations);
    QList<IConfigEntry const*> const levels = levelsOf(entry.entry());
    for (IConfigEntry const* const level : levels)
        result.visibility.append(expectedFile(Wrapper::path(*level, Wrapper::kIsVisible)));
    result.findings = checkPlace(view) + findingsAbove(levels) + checkFolder(view, entry);
    return result;
}

namespace {

typedef bool (ActionKit::*Question)(IConfigEntry const&, QVariant&);

/// Keeps the runs of scripts for as long as it lives.
class RunRecorder : public IActivityObserver
{
public:
    RunRecorder() { ActionKit::instance()->setObserver(this); }
    ~RunRecorder() override { ActionKit::instance()->setObserver(nullptr); }

    void scriptHasRun(WrapperRun const& run) override { mRuns.append(run); }
    QList<WrapperRun> runs() const { return mRuns; }

private:
    Q_DISABLE_COPY(RunRecorder)

    QList<WrapperRun> mRuns;
};

Answer ask(IConfigEntry const& entry, Question question)
{
    RunRecorder const recorder;
    QVariant data;
    QElapsedTimer timer;
    timer.start();
    bool const isAnswered = (ActionKit::instance()->*question)(entry, data);
    Answer const answer
        = {entry.path(), isAnswered, data.toString(), int(timer.elapsed()), recorder.runs()};
    return answer;
}

/// Whether the key's own script has given the answer.
bool isFromScript(Answer const& answer, QString const& script)
{
    for (WrapperRun const& run : answer.scripts) {
        if (run.script == script)
            return run.isSuccess();
    }
    return false;
}

LiveAnswers::Source sourceOf(Answer const& answer, ExaminedEntry const& entry)
{
    if (!answer.isAnswered)
        return LiveAnswers::Default;
    bool const isScripts = isFromScript(answer, Wrapper::path(entry.entry(), Wrapper::kGet));
    return isScripts ? LiveAnswers::Script : LiveAnswers::Action;
}

} // namespace

bool keepsOutput(WrapperRun const& run)
{
    return run.script.endsWith(QLatin1String(Wrapper::kGet))
        || run.script.endsWith(QLatin1String(Wrapper::kSet));
}

LiveAnswers askLive(ExaminedEntry const& entry)
{
    LiveAnswers answers;
    answers.source = LiveAnswers::Nobody;
    answers.backEnd = entry.description(operation(ISettingClass::ACTION_VALUE)).backEnd;
    QList<IConfigEntry const*> const levels = levelsOf(entry.entry());
    for (IConfigEntry const* const level : levels)
        answers.visibility.append(ask(*level, &ActionKit::isVisibleAction));
    if (entry.kind() == ValueKey) {
        answers.value = ask(entry.entry(), &ActionKit::valueAction);
        answers.source = sourceOf(answers.value, entry);
    }
    return answers;
}
