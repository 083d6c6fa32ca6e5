// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QScopedPointer>
#include <QString>
#include <QStringList>
#include <QTextDecoder>
#include <QVector>

#include <functional>

struct editline;
struct historyW;

/// Lines that a person types at the terminal, with the usual keys, a history and completion. Ctrl-C
/// drops the line that is being typed. What is shown goes to standard error.
///
/// Serves the events of the thread while it waits for input.
class LineEditor
{
public:
    /// Says what a word may be completed to, by the words before it. What ends in "/" goes on; of
    /// several the last components are shown.
    typedef std::function<QStringList(QStringList const& before, QString const& typed)> Completer;

    /// @param historyFile  read now, and continued with each line; null for none.
    LineEditor(char const* program, wchar_t const* prompt, QString const& historyFile,
               Completer const& completer);
    ~LineEditor();

    /// Reads a line, without its newline; an empty one for a line that was dropped.
    ///
    /// @return false at the end of the input.
    bool read(QByteArray& line);

private:
    Q_DISABLE_COPY(LineEditor)

    typedef unsigned char (LineEditor::*Key)();

    static LineEditor& sOf(editline* line);
    static wchar_t* sPrompt(editline* line);
    static int sNextCharacter(editline* line, wchar_t* character);
    template <Key key> static unsigned char sPressed(editline* line, int);

    bool readInput();
    bool nextCharacter(wchar_t& character);
    unsigned char complete();
    unsigned char drop();
    unsigned char end();
    void insert(QString const& text);
    void remember(QByteArray const& line);

    wchar_t const* const mPrompt;
    QString const mHistoryFile;
    Completer const mCompleter;
    QScopedPointer<QTextDecoder> mDecoder;
    QByteArray mInput;
    QVector<uint> mTyped;
    int mTabs = 0;
    bool mIsDropped = false;
    editline* const mLine;
    historyW* const mHistory;
};
