#include "shell/Prompt.h"

#include "shell/KeyNames.h"
#include "shell/Shell.h"

#include <vantora/vantora.h>

#include <QCoreApplication>
#include <QMap>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <readline/history.h>
#include <readline/readline.h>

namespace {

char const* const kPrompt = "vantora> ";
char const* const kWordSeparators = " \t";
int const kLongestHistory = 1000;

// The library calls plain functions; these are what they work on.
Vantora* sHost = nullptr;
QStringList sMatches;

int serveEvents()
{
    QCoreApplication::processEvents();
    return 0;
}

QStringList matchingCommands(QString const& start)
{
    QStringList matches;
    QStringList const names = Shell::commandNames();
    for (QString const& name : names) {
        if (name.startsWith(start))
            matches.append(name);
    }
    return matches;
}

/// The keys that begin with what was typed, in the way it was typed, directories with a "/".
QStringList matchingKeys(QString const& typed)
{
    QString const directory = typed.left(typed.lastIndexOf(QLatin1Char('/')) + 1);
    QString key = directory.isEmpty() ? QString::fromLatin1("root") : fullKey(directory);
    if (key.endsWith(QLatin1Char('/')))
        key.chop(1);
    QMap<QString, _RegNodeType> result;
    if (sHost->get(key, result, REG_PARAM_VALUE, QString::fromLatin1("")) != 0)
        return QStringList();

    QStringList matches;
    QMap<QString, _RegNodeType>::const_iterator node = result.constBegin();
    for (; node != result.constEnd(); ++node) {
        QString const candidate = directory + shownName(node.key(), node.value());
        bool const isKey = node.value() == REG_NODE_DIR || node.value() == REG_NODE_KEY;
        if (isKey && candidate.startsWith(typed))
            matches.append(candidate);
    }
    return matches;
}

/// Hands out the matches one by one, as the library asks for them.
char* nextMatch(char const*, int)
{
    return sMatches.isEmpty() ? nullptr : strdup(sMatches.takeFirst().toUtf8().constData());
}

bool isFirstWord(int start) { return int(std::strspn(rl_line_buffer, kWordSeparators)) >= start; }

char** complete(char const* text, int start, int)
{
    // No file names where nothing matches.
    rl_attempted_completion_over = 1;
    QString const typed = QString::fromUtf8(text);
    sMatches = isFirstWord(start) ? matchingCommands(typed) : matchingKeys(typed);
    // What comes after a directory is one of its children, not a blank.
    if (sMatches.size() == 1 && sMatches.first().endsWith(QLatin1Char('/')))
        rl_completion_append_character = '\0';
    return rl_completion_matches(text, nextMatch);
}

} // namespace

Prompt::Prompt(Vantora& host, QString const& historyFile)
    : mHistoryFile(QFile::encodeName(historyFile))
{
    sHost = &host;
    rl_readline_name = "vantora-shell";
    rl_event_hook = serveEvents;
    rl_attempted_completion_function = complete;
    rl_basic_word_break_characters = kWordSeparators;
    // Standard output is for values.
    rl_outstream = stderr;
    stifle_history(kLongestHistory);
    if (!mHistoryFile.isEmpty() && read_history(mHistoryFile.constData()) != 0)
        static_cast<void>(write_history(mHistoryFile.constData())); // makes the file
}

Prompt::~Prompt()
{
    if (!mHistoryFile.isEmpty())
        static_cast<void>(history_truncate_file(mHistoryFile.constData(), kLongestHistory));
    clear_history();
    rl_event_hook = nullptr;
    sHost = nullptr;
}

bool Prompt::next(Input& input)
{
    char* const line = readline(kPrompt);
    if (!line) {
        // The shell that called goes on below the prompt.
        std::fputc('\n', stderr);
        return false;
    }
    if (*line)
        remember(line);
    readLine(QByteArray(line), input);
    std::free(line);
    return true;
}

/// At once, so that a prompt that is interrupted has its history too. It is no data: a line that
/// cannot be written is not spoken of.
void Prompt::remember(char const* line)
{
    add_history(line);
    if (!mHistoryFile.isEmpty())
        static_cast<void>(append_history(1, mHistoryFile.constData()));
}
