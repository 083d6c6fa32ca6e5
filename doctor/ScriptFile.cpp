// SPDX-License-Identifier: MIT

#include "doctor/ScriptFile.h"

#include "common/Files.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>

namespace {

char const* const kCountsAsSuccess = "; a script that does not start counts as one that succeeded";

// What is looked at of a file.
int const kLongestScript = 1 << 20;

typedef QList<Problem> Problems;

Problems problem(int line, QString const& message)
{
    Problem const one = {Fault, line, message};
    return Problems() << one;
}

Problems doesNotStart(int line, QString const& reason)
{
    return problem(line, reason + QLatin1String(kCountsAsSuccess));
}

/// @param reason    why the system finds no interpreter in the file.
/// @param severity  of a file that /bin/sh runs for want of one.
Problems withoutInterpreter(QString const& reason, ScriptEnvironment environment, Severity severity)
{
    if (environment == OwnEnvironment)
        return doesNotStart(1, reason);
    Problem const one = {severity, 1, reason + QLatin1String(", so /bin/sh runs it")};
    return Problems() << one;
}

bool isExecutableFile(QString const& path)
{
    QFileInfo const info(path);
    return info.isFile() && info.isExecutable();
}

bool isInSearchPath(QString const& program)
{
    QStringList const directories = QString::fromLocal8Bit(qgetenv("PATH")).split(QLatin1Char(':'));
    for (QString const& directory : directories) {
        if (isExecutableFile(QDir(directory).filePath(program)))
            return true;
    }
    return false;
}

/// What stands behind an interpreter comes to it as one word, which env splits by its "-S".
///
/// @param words  what stands behind "env".
Problems problemsOfEnv(QStringList const& words)
{
    bool const isSplit = words.value(0) == QLatin1String("-S");
    QString const program = isSplit ? words.value(1) : words.join(QLatin1String(" "));
    if (program.isEmpty())
        return problem(1,
                       QLatin1String("env names no program, so it starts this script, again "
                                     "and again"));
    // What follows its other options and a variable is not looked for.
    bool const isProgram
        = !program.startsWith(QLatin1Char('-')) && !program.contains(QLatin1Char('='));
    if (!isProgram || isInSearchPath(program))
        return Problems();
    QString const reason = QString::fromLatin1("env finds no program \"%1\"").arg(program);
    return problem(1,
                   program.contains(QLatin1Char(' '))
                       ? reason + QLatin1String(", which is one word to it without its \"-S\"")
                       : reason);
}

/// @param words  what stands behind "#!".
Problems problemsOfInterpreter(QStringList const& words)
{
    QString const interpreter = words.first();
    if (!interpreter.startsWith(QLatin1Char('/')))
        return doesNotStart(
            1, QString::fromLatin1("the interpreter \"%1\" has no full path").arg(interpreter));
    if (!QFileInfo(interpreter).exists())
        return doesNotStart(1,
                            QString::fromLatin1("there is no interpreter \"%1\"").arg(interpreter));
    if (!isExecutableFile(interpreter))
        return doesNotStart(
            1, QString::fromLatin1("the interpreter \"%1\" is no program").arg(interpreter));
    if (QFileInfo(interpreter).fileName() == QLatin1String("env"))
        return problemsOfEnv(words.mid(1));
    return Problems();
}

Problems problemsOfFirstLine(QByteArray const& line, ScriptEnvironment environment)
{
    if (line.startsWith("\xef\xbb\xbf"))
        return withoutInterpreter(QLatin1String("a byte order mark stands before the shebang line"),
                                  environment, Fault);
    if (!line.startsWith("#!"))
        return withoutInterpreter(QLatin1String("missing shebang line"), environment, Note);
    if (line.endsWith("\r"))
        return doesNotStart(1,
                            QLatin1String("the line ends in CRLF, and the CR becomes a part of "
                                          "the interpreter's name"));
    QStringList words = QString::fromLocal8Bit(line.mid(2)).simplified().split(QLatin1Char(' '));
    words.removeAll(QString());
    if (words.isEmpty())
        return withoutInterpreter(QLatin1String("the shebang line names no interpreter"),
                                  environment, Note);
    return problemsOfInterpreter(words);
}

Problems problemsOfNewlines(QByteArray const& content)
{
    int const end = content.indexOf("\r\n");
    if (end < 0)
        return Problems();
    return problem(
        content.left(end).count('\n') + 1,
        QLatin1String("the line ends in CRLF, and the CR becomes a part of its last word"));
}

Problems problemsOfContent(QByteArray const& content, ScriptEnvironment environment)
{
    if (content.startsWith("\x7f"
                           "ELF"))
        return Problems();
    int const end = content.indexOf('\n');
    Problems const problems
        = problemsOfFirstLine(end < 0 ? content : content.left(end), environment);
    bool const isRun = problems.isEmpty() || problems.first().severity == Note;
    return isRun ? problems + problemsOfNewlines(content) : problems;
}

} // namespace

QList<Problem> problemsOfScript(QString const& path, ScriptEnvironment environment)
{
    QFileInfo const info(path);
    if (!info.exists() && info.isSymLink())
        return problem(0, QLatin1String("a dangling link; it counts as absent"));
    if (!info.exists())
        return Problems();
    if (!info.isFile())
        return doesNotStart(0, QLatin1String("is no regular file"));
    if (!info.isExecutable())
        return doesNotStart(0, QLatin1String("is not executable"));
    QByteArray content;
    // One that may only be run is no worse for it.
    return readScript(path, content) ? problemsOfContent(content, environment) : Problems();
}

bool readScript(QString const& path, QByteArray& content)
{
    QFile file(path);
    if (!openRegularFile(file, QIODevice::ReadOnly))
        return false;
    content = file.read(kLongestScript);
    return true;
}
