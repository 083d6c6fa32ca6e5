// SPDX-License-Identifier: MIT

#include "shell/LineEditor.h"

#include "shell/Events.h"
#include "shell/Terminal.h"

#include <QFile>
#include <QTextCodec>

#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <histedit.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

namespace {

int const kLongestHistory = 1000;
int const kIdleMilliseconds = 100;
int const kInputSize = 256;
int const kOwnerOnly = 0600;

// What a byte that is no UTF-8 is shown as, and a byte that is none.
char const* const kReplacement = "\357\277\275";
char const* const kNoUtf8 = "\377";

wchar_t const* const kDropKey = L"^C";
wchar_t const* const kDrop = L"drop-line";

// What other prompts have on these keys. An end of the input that was typed while a command ran
// arrives as "^@", which the library takes for a key that the terminal lacks.
wchar_t const* const kBindings[][2] = {
    {L"^I", L"complete-word"},     {kDropKey, kDrop},
    {L"^D", L"end-input"},         {L"^R", L"em-inc-search-prev"},
    {L"^U", L"vi-kill-line-prev"}, {L"^W", L"ed-delete-prev-word"},
    {L"^@", L"em-set-mark"},
};

QString commonStart(QStringList const& texts)
{
    QString start = texts.first();
    for (QString const& text : texts) {
        while (!text.startsWith(start))
            start.chop(1);
    }
    return start;
}

/// Of the file of a history.
QList<QByteArray> readLines(QString const& name)
{
    QFile file(name);
    QByteArray const text
        = !name.isEmpty() && file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    return text.isEmpty() ? QList<QByteArray>() : text.left(text.size() - 1).split('\n');
}

/// It is no data: lines that cannot be written are not spoken of.
void writeLines(QString const& name, QList<QByteArray> const& lines, int flags)
{
    int const descriptor
        = ::open(QFile::encodeName(name), O_WRONLY | O_CREAT | O_CLOEXEC | flags, kOwnerOnly);
    QFile file;
    if (!file.open(descriptor, QIODevice::WriteOnly, QFile::AutoCloseHandle))
        return;
    for (QByteArray const& line : lines)
        static_cast<void>(file.write(line + '\n'));
}

/// Makes Ctrl-C a key: as a signal it would end the sandbox around this program too.
void unbindInterrupt()
{
    termios settings;
    if (tcgetattr(STDIN_FILENO, &settings) != 0 || settings.c_cc[VINTR] == _POSIX_VDISABLE)
        return;
    settings.c_cc[VINTR] = _POSIX_VDISABLE;
    static_cast<void>(tcsetattr(STDIN_FILENO, TCSADRAIN, &settings));
}

} // namespace

LineEditor::LineEditor(char const* program, wchar_t const* prompt, QString const& historyFile,
                       Completer const& completer)
    : mPrompt(prompt)
    , mHistoryFile(historyFile)
    , mCompleter(completer)
    , mLine(el_init(program, stdin, stderr, stderr))
    , mHistory(history_winit())
{
    el_wset(mLine, EL_CLIENTDATA, this);
    el_wset(mLine, EL_PROMPT, sPrompt);
    el_wset(mLine, EL_GETCFN, sNextCharacter);
    el_wset(mLine, EL_HIST, history_w, mHistory);
    el_wset(mLine, EL_SIGNAL, 1);
    el_wset(mLine, EL_EDITOR, L"emacs");
    el_wset(mLine, EL_ADDFN, L"complete-word", L"", sPressed<&LineEditor::complete>);
    el_wset(mLine, EL_ADDFN, kDrop, L"", sPressed<&LineEditor::drop>);
    el_wset(mLine, EL_ADDFN, L"end-input", L"", sPressed<&LineEditor::end>);
    // What the person prefers: it may choose other keys for everything but these.
    static_cast<void>(el_source(mLine, nullptr));
    for (wchar_t const* const* const binding : kBindings)
        el_wset(mLine, EL_BIND, binding[0], binding[1], nullptr);
    el_wset(mLine, EL_BIND, L"-a", kDropKey, kDrop, nullptr);

    HistEventW event;
    history_w(mHistory, &event, H_SETSIZE, kLongestHistory);
    QList<QByteArray> const lines = readLines(mHistoryFile);
    for (QByteArray const& line : lines)
        remember(line);
    if (!mHistoryFile.isEmpty())
        writeLines(mHistoryFile, QList<QByteArray>(), O_APPEND); // makes the file
}

LineEditor::~LineEditor()
{
    // Others may have continued it.
    QList<QByteArray> const lines = readLines(mHistoryFile);
    if (lines.size() > kLongestHistory)
        writeLines(mHistoryFile, lines.mid(lines.size() - kLongestHistory), O_TRUNC);
    history_wend(mHistory);
    el_end(mLine);
}

bool LineEditor::read(QByteArray& line)
{
    mDecoder.reset(QTextCodec::codecForName("UTF-8")->makeDecoder(QTextCodec::IgnoreHeader));
    mIsDropped = false;
    // Before the prompt is shown: what is typed from then on are keys.
    el_wset(mLine, EL_PREP_TERM, 1);
    unbindInterrupt();
    int count = 0;
    wchar_t const* const typed = el_wgets(mLine, &count);
    if (!typed || count <= 0) {
        // The shell that called goes on below the prompt.
        std::fputc('\n', stderr);
        return false;
    }
    line = mIsDropped ? QByteArray() : QString::fromWCharArray(typed, count).toUtf8();
    if (line.endsWith('\n'))
        line.chop(1);
    if (mDecoder->hasFailure())
        line.replace(kReplacement, kNoUtf8);
    if (line.isEmpty())
        return true;
    remember(line);
    // At once, so that a prompt that is interrupted has its history too.
    if (!mHistoryFile.isEmpty())
        writeLines(mHistoryFile, QList<QByteArray>() << line, O_APPEND);
    return true;
}

LineEditor& LineEditor::sOf(EditLine* line)
{
    void* editor = nullptr;
    el_wget(line, EL_CLIENTDATA, &editor);
    return *static_cast<LineEditor*>(editor);
}

template <LineEditor::Key key> unsigned char LineEditor::sPressed(EditLine* line, int)
{
    return (sOf(line).*key)();
}

wchar_t* LineEditor::sPrompt(EditLine* line)
{
    return const_cast<wchar_t*>(sOf(line).mPrompt); // only read
}

int LineEditor::sNextCharacter(EditLine* line, wchar_t* character)
{
    return sOf(line).nextCharacter(*character) ? 1 : 0;
}

/// Takes all that is there: what is left to the terminal while a command runs is read by its rules.
///
/// @return false at the end of the input.
bool LineEditor::readInput()
{
    // The library sets the terminal anew after some keys and signals.
    unbindInterrupt();
    char bytes[kInputSize];
    for (;;) {
        pollfd input = {STDIN_FILENO, POLLIN, 0};
        if (poll(&input, 1, kIdleMilliseconds) <= 0) {
            serveEvents();
            continue;
        }
        ssize_t const count = ::read(STDIN_FILENO, bytes, sizeof bytes);
        if (count > 0)
            mInput = QByteArray(bytes, int(count));
        if (count >= 0 || errno != EINTR)
            return count > 0;
    }
}

/// @return false at the end of the input.
bool LineEditor::nextCharacter(wchar_t& character)
{
    while (mTyped.isEmpty()) {
        if (mInput.isEmpty() && !readInput())
            return false;
        mTyped = mDecoder->toUnicode(mInput.constData(), 1).toUcs4();
        mInput.remove(0, 1);
    }
    character = wchar_t(mTyped.first());
    mTyped.remove(0);
    mTabs = character == L'\t' ? mTabs + 1 : 0;
    return true;
}

unsigned char LineEditor::complete()
{
    LineInfoW const* const line = el_wline(mLine);
    QString const before = QString::fromWCharArray(line->buffer, int(line->cursor - line->buffer));
    int const start
        = qMax(before.lastIndexOf(QLatin1Char(' ')), before.lastIndexOf(QLatin1Char('\t'))) + 1;
    QString const typed = before.mid(start);
    QStringList words = before.left(start).simplified().split(QLatin1Char(' '));
    words.removeAll(QString());
    QStringList matches = mCompleter(words, typed);
    if (matches.isEmpty())
        return CC_ERROR;
    QString added = commonStart(matches).mid(typed.size());
    bool const isWhole = matches.size() == 1;
    // What comes after a directory is one of its children, not a blank.
    if (isWhole && !matches.first().endsWith(QLatin1Char('/')))
        added += QLatin1Char(' ');
    insert(added);
    if (!added.isEmpty())
        return isWhole ? CC_REFRESH : CC_REFRESH_BEEP;
    if (isWhole || mTabs < 2)
        return CC_ERROR;
    for (QString& match : matches)
        match.remove(0, match.lastIndexOf(QLatin1Char('/'), -2) + 1);
    std::fprintf(stderr, "\n%s", Terminal::sInColumns(matches).toUtf8().constData());
    return CC_REDISPLAY;
}

/// Ends the line, which is then not carried out.
unsigned char LineEditor::drop()
{
    LineInfoW const* const line = el_wline(mLine);
    el_cursor(mLine, int(line->lastchar - line->cursor));
    insert(QLatin1String("^C"));
    mIsDropped = true;
    mTyped.prepend('\n');
    return CC_REFRESH;
}

/// Ends the input, unless there is something to delete.
unsigned char LineEditor::end()
{
    LineInfoW const* const line = el_wline(mLine);
    if (line->buffer == line->lastchar)
        return CC_EOF;
    if (line->cursor == line->lastchar)
        return CC_ERROR;
    el_cursor(mLine, 1);
    el_wdeletestr(mLine, 1);
    return CC_REFRESH;
}

void LineEditor::insert(QString const& text)
{
    el_winsertstr(mLine, text.toStdWString().c_str());
}

void LineEditor::remember(QByteArray const& line)
{
    HistEventW event;
    // The library takes one blank off the end of what it calls up again.
    QString const text = QString::fromUtf8(line.constData(), line.size()) + QLatin1Char(' ');
    history_w(mHistory, &event, H_ENTER, text.toStdWString().c_str());
}
