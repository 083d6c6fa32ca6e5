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
    Problem const one = {line, message};
    return Problems() << one;
}

Problems doesNotStart(int line, QString const& reason)
{
    return problem(line, reason + QLatin1String(kCountsAsSuccess));
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
    bool const isSearched = QFileInfo(interpreter).fileName() == QLatin1String("env")
        && words.size() > 1 && !words.at(1).startsWith(QLatin1Char('-'));
    if (isSearched && !isInSearchPath(words.at(1)))
        return problem(1, QString::fromLatin1("env finds no program \"%1\"").arg(words.at(1)));
    return Problems();
}

Problems problemsOfFirstLine(QByteArray const& line)
{
    if (line.startsWith("\xef\xbb\xbf"))
        return doesNotStart(1, QLatin1String("a byte order mark stands before the \"#!\""));
    if (!line.startsWith("#!"))
        return doesNotStart(1,
                            QLatin1String("no interpreter: the file does not begin with \"#!\""));
    if (line.endsWith("\r"))
        return doesNotStart(1,
                            QLatin1String("the line ends in CRLF, and the CR becomes a part of "
                                          "the interpreter's name"));
    QStringList words = QString::fromLocal8Bit(line.mid(2)).simplified().split(QLatin1Char(' '));
    words.removeAll(QString());
    if (words.isEmpty())
        return doesNotStart(1, QLatin1String("no interpreter stands behind the \"#!\""));
    return problemsOfInterpreter(words);
}

Problems problemsOfLineEnds(QByteArray const& content)
{
    int const end = content.indexOf("\r\n");
    if (end < 0)
        return Problems();
    return problem(
        content.left(end).count('\n') + 1,
        QLatin1String("the line ends in CRLF, and the CR becomes a part of its last word"));
}

Problems problemsOfContent(QByteArray const& content)
{
    if (content.startsWith("\x7f"
                           "ELF"))
        return Problems();
    int const end = content.indexOf('\n');
    Problems const problems = problemsOfFirstLine(end < 0 ? content : content.left(end));
    return problems.isEmpty() ? problemsOfLineEnds(content) : problems;
}

} // namespace

QList<Problem> problemsOfScript(QString const& path)
{
    QFileInfo const info(path);
    if (!info.exists() && info.isSymLink())
        return problem(0, QLatin1String("a link to nothing; it counts as missing"));
    if (!info.exists())
        return Problems();
    if (!info.isFile())
        return doesNotStart(0, QLatin1String("is no regular file"));
    if (!info.isExecutable())
        return doesNotStart(0, QLatin1String("is not executable"));
    QFile file(path);
    // One that may only be run is no worse for it.
    if (!openRegularFile(file, QIODevice::ReadOnly))
        return Problems();
    return problemsOfContent(file.read(kLongestScript));
}

bool isSplitByCommandLine(QString const& path)
{
    for (QChar const c : path) {
        if (c.isSpace() || c == QLatin1Char('"'))
            return true;
    }
    return false;
}
