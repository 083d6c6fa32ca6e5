// SPDX-License-Identifier: MIT

#include "common/RegistryVocabulary.h"
#include "doctor/BackEndWords.h"
#include "doctor/Reports.h"

#include <QFileInfo>
#include <QVariant>

namespace {

int const kNameWidth = 11;

char const* reasonWords(ServingAction::Reason reason)
{
    switch (reason) {
    case ServingAction::RegisteredForKey:
        return "registered for the key";
    case ServingAction::OfferedBySettingClass:
        return "offered by a setting class";
    case ServingAction::DefaultOfOperation:
        break;
    }
    return "default of the operation";
}

QString presence(bool isThere, Style const& style)
{
    return isThere ? QLatin1String("present") : style.aside(QLatin1String("absent"));
}

QString kindWords(Explanation const& explanation)
{
    switch (explanation.kind) {
    case SessionDirectory:
        return QLatin1String("a session, which is a directory");
    case PlainDirectory:
        return QLatin1String("a directory");
    case ValueKey:
        break;
    }
    return QString::fromLatin1("a %1, %2 by default%3")
        .arg(RegistryVocabulary::entryTypes().at(explanation.type),
             quoted(explanation.defaultValue),
             QLatin1String(explanation.isReadOnly ? "; only scripts can write it" : ""));
}

/// @param title  may be null, if there are keys.
QString titled(char const* title, QStringList const& keys)
{
    QString const text = QLatin1String(title);
    QString const separator = QLatin1String(title && !keys.isEmpty() ? ": " : "");
    return text + separator + keys.join(QLatin1String(", "));
}

/// Setting gives the targets what the script has made of the value.
char const* targetWords(OperationExplanation const& operation)
{
    bool const isSet = operation.operation->action == ISettingClass::ACTION_SET_VALUE;
    return isSet && operation.script.exists ? "registry, by REG_SET, gets what set.sh printed: "
                                            : "registry, by REG_SET: ";
}

/// What serves an operation, one step a line: who comes first, and who where that one does not.
class Steps
{
public:
    Steps(OperationExplanation const& operation, Style const& style)
        : mOperation(operation)
        , mStyle(style)
    {
        if (operation.action.runsScript)
            addScript();
        if (!operation.targets.isEmpty())
            mLines.append(QLatin1String(targetWords(operation))
                          + operation.targets.join(QLatin1String(", ")));
        // Targets take the place of registry keys, and of nothing else.
        bool const isReplaced = !operation.targets.isEmpty() && !operation.registryKeys.isEmpty();
        if (operation.action.backEnd && !isReplaced)
            mLines.append(
                titled(keylessBackEndWords(operation.action.backEnd), operation.registryKeys));
        mLines.append(QLatin1String(operation.operation->otherwise));
    }

    QStringList lines() const { return mLines; }

private:
    void addScript()
    {
        QString line = fileName(mOperation.operation->script) + QLatin1String(" (")
            + presence(mOperation.script.exists, mStyle) + QLatin1Char(')');
        if (mOperation.action.readsEnvironmentFile)
            line += QLatin1String(", ") + fileName(mOperation.operation->environmentFile)
                + QLatin1String(" (") + presence(mOperation.environmentFile.exists, mStyle)
                + QLatin1Char(')');
        if (mOperation.script.exists && !mOperation.variables.isEmpty())
            line += QLatin1String(": ") + mOperation.variables.join(QLatin1String(", "));
        mLines.append(line);
    }

    OperationExplanation const& mOperation;
    Style const& mStyle;
    QStringList mLines;
};

QString textOfOperation(OperationExplanation const& operation, Style const& style)
{
    QString const name = QString::fromLatin1(operation.operation->name);
    QString text = style.title(name) + QString(kNameWidth - name.size(), QLatin1Char(' '));
    if (!operation.isForKey)
        return text
            + style.aside(QLatin1String("none: ") + QLatin1String(operation.operation->reach()))
            + QLatin1Char('\n');
    text += QLatin1String(reasonWords(operation.reason)) + QLatin1String(": ")
        + QLatin1String(operation.action.className) + QLatin1Char('\n');
    int number = 0;
    QStringList const lines = Steps(operation, style).lines();
    for (QString const& line : lines)
        text += QString(kNameWidth, QLatin1Char(' '))
            + QString::fromLatin1("%1. %2\n").arg(++number).arg(line);
    return text;
}

QString row(char const* name, QString const& text)
{
    return QString::fromLatin1(name).leftJustified(kNameWidth) + text + QLatin1Char('\n');
}

/// How a script ended, and what that counts as.
QString endingWords(WrapperRun const& run)
{
    switch (run.ending) {
    case WrapperRun::Exited:
        return QString::fromLatin1("exit status %1").arg(run.exitCode);
    case WrapperRun::EndedBySignal:
        return QLatin1String("ended by a signal");
    case WrapperRun::NotStarted:
        return QLatin1String("did not start, which counts as success");
    case WrapperRun::EnvironmentTooLong:
        return QLatin1String("did not start, its environment is too long, which counts as failure");
    case WrapperRun::TimedOut:
        break;
    }
    return QLatin1String("took too long and was killed, which counts as success");
}

QString textOfRuns(QList<WrapperRun> const& runs, Style const& style)
{
    QString text;
    for (WrapperRun const& run : runs) {
        QString line = endingWords(run);
        if (keepsOutput(run))
            line += QString::fromLatin1(", %1 bytes of output").arg(run.outputBytes);
        line += QString::fromLatin1(", %1 ms").arg(run.milliseconds);
        text += QLatin1String("      ") + run.script + QLatin1String(": ")
            + (run.isSuccess() && run.ending == WrapperRun::Exited ? line : style.alarm(line))
            + QLatin1Char('\n');
        QByteArray const errors = run.errorOutput.trimmed();
        if (!errors.isEmpty())
            text += QLatin1String("      its standard error: ")
                + quoted(QString::fromUtf8(errors.constData(), errors.size())) + QLatin1Char('\n');
    }
    return text;
}

QString textOfAnswer(char const* what, Answer const& answer, QString const& words,
                     Style const& style)
{
    return QString::fromLatin1("  %1 of %2: %3 (%4 ms)\n")
               .arg(QLatin1String(what), answer.viewKey, style.title(words))
               .arg(answer.milliseconds)
        + textOfRuns(answer.scripts, style);
}

QString visibilityWords(Answer const& answer)
{
    if (!answer.isAnswered)
        return QLatin1String("shown, as nothing says otherwise");
    return QLatin1String(QVariant(answer.text).toBool() ? "shown" : "hidden");
}

char const* sourceWords(LiveAnswers const& answers)
{
    if (answers.source == LiveAnswers::Script)
        return "the script";
    return answers.backEnd ? answers.backEnd->source : "an action that does not say what it is";
}

QString valueWords(LiveAnswers const& answers)
{
    if (answers.source == LiveAnswers::Default)
        return QLatin1String("no answer, so the default");
    return QString::fromLatin1("%1, from %2")
        .arg(quoted(answers.value.text), QLatin1String(sourceWords(answers)));
}

} // namespace

QString textOf(Finding const& finding, Style const& style)
{
    QString text = finding.file;
    if (finding.line > 0)
        text += QString::fromLatin1(":%1").arg(finding.line);
    if (finding.severity == Note)
        text = style.title(text) + QLatin1String(": note: ") + finding.message;
    else
        text = style.alarm(text) + QLatin1String(": ") + finding.message;
    if (!finding.key.isEmpty())
        text += QLatin1String(" (") + finding.key + QLatin1Char(')');
    return text + QLatin1Char('\n');
}

QString textOf(Explanation const& explanation, Style const& style)
{
    QString text = style.title(explanation.key) + QLatin1String(": ") + kindWords(explanation)
        + QLatin1Char('\n');
    text += row("in general", explanation.viewKey);
    text += row("wrappers",
                explanation.folder + QLatin1String(" (")
                    + presence(QFileInfo(explanation.folder).isDir(), style) + QLatin1Char(')'));
    text += QLatin1Char('\n');
    for (OperationExplanation const& operation : explanation.operations)
        text += textOfOperation(operation, style);
    text += style.title(QLatin1String("contains"))
        + QLatin1String("   no action: a key that get answers is there\n");

    if (!explanation.files.isEmpty())
        text += QLatin1String("\nReads or writes itself\n  ")
            + explanation.files.join(QLatin1String("\n  ")) + QLatin1Char('\n');

    text += QLatin1String("\nCan be hidden by\n");
    for (ExpectedFile const& file : explanation.visibility)
        text += QLatin1String("  ") + file.path + QLatin1String(" (") + presence(file.exists, style)
            + QLatin1String(")\n");

    for (Finding const& finding : explanation.findings)
        text += QLatin1Char('\n') + textOf(finding, style);
    return text;
}

QString textOf(LiveAnswers const& answers, Style const& style)
{
    QString text = QLatin1String("\nAsked just now\n");
    for (Answer const& answer : answers.visibility)
        text += textOfAnswer("isVisible", answer, visibilityWords(answer), style);
    if (answers.source != LiveAnswers::Nobody)
        text += textOfAnswer("get", answers.value, valueWords(answers), style);
    return text;
}

QString textOf(QList<MapRow> const& rows, Style const& style)
{
    int width = 0;
    for (MapRow const& row : rows)
        width = qMax(width, row.viewKey.size());
    QString text;
    for (MapRow const& row : rows)
        text += style.title(row.viewKey.leftJustified(width)) + QLatin1String("  ")
            + titled(row.registryKeys.isEmpty() ? keylessBackEndWords(row.backEnd)
                                                : row.backEnd->title,
                     row.registryKeys)
            + QLatin1Char('\n');
    return text;
}
