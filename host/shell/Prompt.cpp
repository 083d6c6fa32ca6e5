#include "shell/Prompt.h"

#include "shell/Events.h"
#include "shell/KeyNames.h"
#include "shell/commands/Commands.h"

#include <vantora/vantora.h>

#include <QMap>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <readline/history.h>
#include <readline/readline.h>
#include <termios.h>
#include <unistd.h>

namespace {

char const* const kPrompt = "vantora> ";
char const* const kWordSeparators = " \t";
int const kLongestHistory = 1000;
int const kInterrupt = '\003'; // Ctrl-C

// The library calls plain functions; these are what they work on.
Vantora* sHost = nullptr;
QStringList sMatches;
bool sIsAbandoned = false;

int serveWhileIdle()
{
    serveEvents();
    return 0;
}

/// Makes Ctrl-C a key of the prompt: as a signal it would end the sandbox around this program too.
void prepareTerminal(int hasMetaKey)
{
    rl_prep_terminal(hasMetaKey);
    termios settings;
    if (tcgetattr(STDIN_FILENO, &settings) != 0)
        return;
    settings.c_cc[VINTR] = _POSIX_VDISABLE;
    static_cast<void>(tcsetattr(STDIN_FILENO, TCSADRAIN, &settings));
}

/// Ends the line, which is then not carried out.
int abandonLine(int count, int key)
{
    sIsAbandoned = true;
    rl_end_of_line(count, key);
    rl_redisplay();
    std::fputs("^C", rl_outstream);
    return rl_newline(count, key);
}

void bindInterrupt()
{
    Keymap const keymaps[] = {emacs_standard_keymap, vi_insertion_keymap, vi_movement_keymap};
    for (Keymap const keymap : keymaps)
        rl_bind_key_in_map(kInterrupt, abandonLine, keymap);
}

QStringList matchingCommands(QString const& start)
{
    QStringList matches;
    for (CommandRow const& row : commandRows()) {
        QString const name = QLatin1String(row.name);
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

/// The words of the line that stand before `start`.
QStringList wordsBefore(int start)
{
    QStringList words
        = QString::fromUtf8(rl_line_buffer, start).simplified().split(QLatin1Char(' '));
    words.removeAll(QString());
    return words;
}

QStringList matchesBehind(QStringList const& words, QString const& typed)
{
    if (words.isEmpty())
        return matchingCommands(typed);
    return words.size() == 1 ? matchingKeys(typed) : QStringList();
}

char** complete(char const* text, int start, int)
{
    QStringList const words = wordsBefore(start);
    // What the library completes by itself are file names.
    if (words == QStringList(QLatin1String("import")))
        return nullptr;
    rl_attempted_completion_over = 1;
    // Of several keys the last components are shown.
    rl_filename_completion_desired = 1;
    sMatches = matchesBehind(words, QString::fromUtf8(text));
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
    rl_event_hook = serveWhileIdle;
    rl_attempted_completion_function = complete;
    rl_basic_word_break_characters = kWordSeparators;
    // Standard output is for values.
    rl_outstream = stderr;
    rl_prep_term_function = prepareTerminal;
    bindInterrupt();
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
    sIsAbandoned = false;
    char* const line = readline(kPrompt);
    if (!line) {
        // The shell that called goes on below the prompt.
        std::fputc('\n', stderr);
        return false;
    }
    if (sIsAbandoned)
        *line = '\0';
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
