// SPDX-License-Identifier: MIT

#include "shell/Prompt.h"

#include "shell/KeyNames.h"
#include "shell/commands/Commands.h"

#include <QDir>

namespace {

/// What was typed of a path, up to and with its last "/".
QString directoryOf(QString const& typed)
{
    return typed.left(typed.lastIndexOf(QLatin1Char('/')) + 1);
}

QStringList commandNames()
{
    QStringList names;
    for (CommandRow const& row : commandRows())
        names.append(QLatin1String(row.name));
    names.sort();
    return names;
}

/// The children of what was typed of a key, in the way it was typed, directories with a "/".
QStringList keysIn(Vantora& host, QString const& directory)
{
    QString key = directory.isEmpty() ? QString::fromLatin1("root") : fullKey(directory);
    if (key.endsWith(QLatin1Char('/')))
        key.chop(1);
    Listing answer;
    static_cast<void>(lookUp(host, key, answer));
    QStringList keys;
    for (QString const& child : answer.keys()) {
        if (answer.value(child) == REG_NODE_DIR || answer.value(child) == REG_NODE_KEY)
            keys.append(directory + shownName(child, answer.value(child)));
    }
    return keys;
}

QStringList filesIn(QString const& directory)
{
    QStringList files;
    QDir::Filters const all = QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot;
    for (QFileInfo const& file : QDir(directory.isEmpty() ? QString::fromLatin1(".") : directory)
                                     .entryInfoList(all, QDir::Name))
        files.append(directory + file.fileName() + QLatin1String(file.isDir() ? "/" : ""));
    return files;
}

/// What may stand behind the words of a line.
QStringList candidates(Vantora& host, QStringList const& before, QString const& typed)
{
    if (before.isEmpty())
        return commandNames();
    CommandRow const* const row = findCommand(before.first());
    QString const argument = row ? row->argument(before.size() - 1) : QString();
    if (argument == QLatin1String("KEY"))
        return keysIn(host, directoryOf(typed));
    return argument == QLatin1String("FILE") ? filesIn(directoryOf(typed)) : QStringList();
}

QStringList matches(Vantora& host, QStringList const& before, QString const& typed)
{
    QStringList found;
    for (QString const& candidate : candidates(host, before, typed)) {
        if (candidate.startsWith(typed))
            found.append(candidate);
    }
    return found;
}

} // namespace

Prompt::Prompt(Vantora& host, QString const& historyFile)
    : mEditor("vantora-shell", L"vantora> ", historyFile,
              [&host](QStringList const& before, QString const& typed) {
                  return matches(host, before, typed);
              })
{
}

bool Prompt::next(Input& input)
{
    QByteArray line;
    if (!mEditor.read(line))
        return false;
    readLine(line, input);
    return true;
}
