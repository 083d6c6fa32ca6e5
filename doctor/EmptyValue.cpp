// SPDX-License-Identifier: MIT

#include "doctor/EmptyValue.h"

#include <QByteArray>
#include <QRegExp>
#include <QSet>
#include <QString>
#include <QStringList>

namespace {

// Wrappers are short; of a longer one nothing is guessed, as it might take long.
int const kLongestRead = 1 << 13;

char const* const kShell
    = "#!\\s*\\S*/(?:env\\s+(?:-S\\s+)?(?:\\S*/)?|busybox\\s+)?(?:ba|da|a|k|mk|z)?sh(?:\\s.*)?";

// What stands before a command.
#define BEFORE_COMMAND "(?:[\\n;&|(!`]|\\{\\s|\\b(?:then|do|else|if|exec)\\b)\\s*"
#define NAME "([A-Za-z_]\\w*|[0-9@*])"

char const* const kMention = "\\$\\{?#?" NAME;
char const* const kWordOfOne = "\"?\\$\\{?" NAME "\\}?\"?";
char const* const kTestOfSize = "-s\\s+\"?\\$\\{?" NAME;
char const* const kConditionalExpansion = "\\$\\{" NAME ":[-+?=]";
char const* const kSubstitution = "\\$\\(|`";
char const* const kAssignment = "[\\s;&|({`]([A-Za-z_]\\w*)=";

char const* const kRead = "\\bread\\b(?:\\s+-\\S+)*((?:\\s+[A-Za-z_]\\w*)+)";
char const* const kConditionalRead
    = "\\b(?:if|while|until)\\b[^\\n;]*\\bread\\b|\\bread\\b[^\\n;]*(?:\\|\\||&&)";
char const* const kStopsAtErrors = "\\sset\\s+(?:-\\w*e|-o\\s+errexit)";

// In a function, and behind these commands, the arguments are others.
char const* const kChangesArguments = "\\w\\s*\\(\\s*\\)|\\bfunction\\s|\\bset\\s+--|\\bshift\\b";

// The first capture is what they look at.
char const* const kTests[] = {
    "\\[\\[?\\s([^\\]\\n]*)\\]",
    "\\btest\\s([^;\\n&|]*)",
    "\\bcase\\s([^\\n]*)\\sin\\b",
    "\\bfor\\s+\\w+\\s+in\\s([^\\n;]*)",
};

// What they make of a value is not known here: languages, and programs beside the script.
char const* const kPrograms[] = {
    "\\b(?:[ef]?grep|expr|[gm]?awk|perl|python\\d?|ruby|lua|jq|find|xargs|eval|(?:ba|da|a|k)?sh)"
    "\\s",
    BEFORE_COMMAND "\"?(?!/(?:usr/)?s?bin/)[\\w.${}-]*/",
    "\\)\"?/\\w",
};
char const* const kTakesOthersCommands = BEFORE_COMMAND "(?:\\.|source)\\s+\\S";

char const* const kFailsInTheEnd = "\\n\\s*exit\\s+[1-9]\\d*\\s*$";
char const* const kSucceeds = "\\bexit\\s*(?:0|\\$|;|\\n|\\})|\\bexec\\b";

bool has(QString const& text, char const* pattern)
{
    return QRegExp(QString::fromLatin1(pattern)).indexIn(text) >= 0;
}

/// The first captures of all places where the pattern fits.
QStringList captures(QString const& text, char const* pattern)
{
    QStringList found;
    QRegExp const expression(QString::fromLatin1(pattern));
    int at = expression.indexIn(text);
    while (at >= 0) {
        found.append(expression.cap(1));
        at = expression.indexIn(text, at + expression.matchedLength());
    }
    return found;
}

/// Reads a script without its comments, and without what stands between single quotes.
class CommandReader
{
public:
    explicit CommandReader(QString const& script)
        : mScript(script)
        , mAt(0)
    {
    }

    /// Null when the quotes do not close: the script is not what it looks like.
    QString read()
    {
        for (; mAt < mScript.size(); ++mAt) {
            if (mScript.at(mAt) == QLatin1Char('\\'))
                addEscaped();
            else if (mOpen.endsWith('"'))
                addQuoted();
            else if (mScript.at(mAt) == QLatin1Char('#') && beginsWord())
                mAt = endOfLine() - 1;
            else if (!addUnquoted())
                return QString();
        }
        return mOpen.contains('"') ? QString() : mCommands;
    }

private:
    void addEscaped()
    {
        QString const pair = mScript.mid(mAt++, 2);
        if (!pair.endsWith(QLatin1Char('\n')))
            mCommands.append(pair);
    }

    void addQuoted()
    {
        QChar const c = mScript.at(mAt);
        if (c == QLatin1Char('"'))
            mOpen.chop(1);
        else if (c == QLatin1Char('(') && mCommands.endsWith(QLatin1Char('$')))
            mOpen.append('(');
        mCommands.append(c);
    }

    /// Whether a single quote is closed again.
    bool addUnquoted()
    {
        QChar const c = mScript.at(mAt);
        if (c == QLatin1Char('\''))
            mAt = mScript.indexOf(c, mAt + 1);
        else if (c == QLatin1Char('"') || c == QLatin1Char('('))
            mOpen.append(c.toLatin1());
        else if (c == QLatin1Char(')') && mOpen.endsWith('('))
            mOpen.chop(1);
        mCommands.append(c);
        return mAt >= 0;
    }

    bool beginsWord() const { return mCommands.isEmpty() || has(mCommands.right(1), "[\\s;&|()]"); }

    int endOfLine() const
    {
        int const end = mScript.indexOf(QLatin1Char('\n'), mAt);
        return end < 0 ? mScript.size() : end;
    }

    QString const mScript;
    int mAt;
    /// The quotes and parentheses that are open.
    QByteArray mOpen;
    QString mCommands;
};

struct Assignment
{
    QString name;
    QString value;
};

QString assignedValue(QString const& commands, int begin)
{
    int depth = 0;
    int end = begin;
    for (; end < commands.size(); ++end) {
        QChar const c = commands.at(end);
        if (c == QLatin1Char('('))
            ++depth;
        else if (c == QLatin1Char(')'))
            --depth;
        if (depth < 0 || (depth == 0 && QString::fromLatin1("\n;&|").contains(c)))
            break;
    }
    return commands.mid(begin, end - begin).trimmed();
}

QList<Assignment> assignmentsOf(QString const& commands)
{
    QList<Assignment> found;
    QRegExp const expression(QString::fromLatin1(kAssignment));
    int at = expression.indexIn(commands);
    while (at >= 0) {
        int const begin = at + expression.matchedLength();
        Assignment const one = {expression.cap(1), assignedValue(commands, begin)};
        found.append(one);
        at = expression.indexIn(commands, begin);
    }
    return found;
}

typedef QSet<QString> Names;

bool isAnyOf(Names const& names, QStringList const& some)
{
    for (QString const& name : some) {
        if (names.contains(name))
            return true;
    }
    return false;
}

bool mentions(QString const& text, Names const& names)
{
    return isAnyOf(names, captures(text, kMention));
}

/// Which variables of a script hold the value, and whether it looks at it.
class ValueUse
{
public:
    explicit ValueUse(QString const& commands)
        : mCommands(commands)
    {
        Names arguments;
        arguments << QLatin1String("1") << QLatin1String("@") << QLatin1String("*");
        mFiles = arguments;
        if (has(mCommands, kChangesArguments))
            mValues = arguments;
        QStringList const read = captures(mCommands, kRead);
        for (QString const& names : read) {
            QStringList const list = names.simplified().split(QLatin1Char(' '));
            for (QString const& name : list)
                mValues.insert(name);
        }
        QList<Assignment> const assignments = assignmentsOf(mCommands);
        for (Assignment const& assignment : assignments)
            takeIn(assignment);
    }

    bool isUsed() const { return mentions(mCommands, mFiles); }

    bool isLookedAt() const
    {
        return isTested() || isReadOnCondition() || isExpandedOnCondition() || isGivenAway();
    }

private:
    void takeIn(Assignment const& assignment)
    {
        QRegExp const word(QString::fromLatin1(kWordOfOne));
        if (word.exactMatch(assignment.value) && mFiles.contains(word.cap(1)))
            mFiles.insert(assignment.name);
        else if (mentions(assignment.value, mFiles) || mentions(assignment.value, mValues))
            mValues.insert(assignment.name);
    }

    bool isTested() const
    {
        for (char const* const pattern : kTests) {
            QStringList const tests = captures(mCommands, pattern);
            for (QString const& test : tests) {
                if (isTestOfValue(test))
                    return true;
            }
        }
        return false;
    }

    /// The name of the file says nothing of the value in it.
    bool isTestOfValue(QString const& test) const
    {
        return mentions(test, mValues) || isAnyOf(mFiles, captures(test, kTestOfSize))
            || (has(test, kSubstitution) && mentions(test, mFiles));
    }

    bool isReadOnCondition() const
    {
        return has(mCommands, kConditionalRead)
            || (has(mCommands, kRead) && has(mCommands, kStopsAtErrors));
    }

    bool isExpandedOnCondition() const
    {
        return isAnyOf(mValues, captures(mCommands, kConditionalExpansion));
    }

    bool isGivenAway() const
    {
        if (has(mCommands, kTakesOthersCommands))
            return true;
        QStringList const lines = mCommands.split(QLatin1Char('\n'));
        for (QString const& line : lines) {
            bool const isWithValue = mentions(line, mFiles) || mentions(line, mValues);
            if (isWithValue && hasProgram(QLatin1Char('\n') + line))
                return true;
        }
        return false;
    }

    static bool hasProgram(QString const& line)
    {
        for (char const* const program : kPrograms) {
            if (has(line, program))
                return true;
        }
        return false;
    }

    QString const mCommands;
    /// The variables that hold the file's name, and those that hold something of what is in it.
    Names mFiles;
    Names mValues;
};

/// One that only looks on.
bool neverSucceeds(QString const& commands)
{
    return has(commands, kFailsInTheEnd) && !has(commands, kSucceeds);
}

/// Lines of commands, as far as their words tell, each behind a newline; null when they do not.
QString commandsOf(QString const& script)
{
    QString commands = CommandReader(script).read();
    if (commands.isNull())
        return commands;
    // A command goes on behind a pipe.
    commands.replace(QRegExp(QLatin1String("([|&])\\s*\\n\\s*")), QLatin1String("\\1 "));
    bool const stopsAtErrors = has(script.section(QLatin1Char('\n'), 0, 0), "\\s-\\w*e");
    return QLatin1String(stopsAtErrors ? "\nset -e\n" : "\n") + commands;
}

} // namespace

bool seemsToKeepEmptyValue(QByteArray const& content)
{
    QString const script = QString::fromLatin1(content.constData(), content.size());
    QRegExp const shell(QString::fromLatin1(kShell));
    if (content.size() > kLongestRead || !shell.exactMatch(script.section(QLatin1Char('\n'), 0, 0)))
        return false;
    QString const commands = commandsOf(script);
    if (commands.isNull() || neverSucceeds(commands))
        return false;
    ValueUse const use(commands);
    return use.isUsed() && !use.isLookedAt();
}
