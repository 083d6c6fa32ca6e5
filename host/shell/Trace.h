// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QObject>
#include <QString>

#include <atomic>
#include <mutex>

/// One thing that was done for a command.
struct TraceEvent
{
    enum Kind { CommandRun, BackendCall, ScriptRun, LastCommand, BusCall };

    Kind kind;

    /// Counted from 1; 0 when it belongs to no command but to completion, say: it is not shown.
    int command;

    /// 0 is the command itself, 1 what it did, 2 what came of that, and so on.
    int depth;

    /// The operation of a command or a backend call; the method of a bus call.
    QString operation;

    /// What a command is about, a key, the path of a script or of an object on the bus; a last
    /// command.
    QString subject;

    /// The result code or the exit status.
    int code;

    /// Of a script: how it ended. Of a last command: what became of it. Of a bus call: the error;
    /// null if there was none.
    QString ending;

    /// Of a script: whether that counts as success.
    bool isSuccess;

    /// Of a script: what it wrote to its standard error, or the end of that.
    QByteArray errorOutput;

    /// Of a last command: the file into which it was handed over, or should have been.
    QString file;

    double milliseconds;

    /// Of a script.
    qint64 outputBytes;
};

/// How a script ended or what became of a call, for a person.
QString traceOutcome(TraceEvent const& event);

/// The dynamic property in which a plugin looks for whom to tell.
char const kListenerProperty[] = "activityListener";

/// Sees what is done for the commands, and writes it to standard error as it happens or keeps it
/// for somebody who asks.
///
/// Plugins report to this object through its methods by name. Any thread may call it, once it is
/// set up; there is one at a time.
class Trace : public QObject
{
    Q_OBJECT

public:
    enum Format { Silent, Text, JsonLines };

    /// On the thread of the commands.
    explicit Trace(Format format);

    /// Opens a command or a backend call on the calling thread; each is ended.
    void begin(TraceEvent::Kind kind, QString const& operation, QString const& subject);
    void end(int code);

    /// From now on the threads that call the backend with the key `notified` belong to the command
    /// of the calling one: it is what an apply in the background ends with. The scripts and the
    /// last command of it are kept for `takeApplied`.
    void expectEnd(QString const& notified);

    /// The scripts and the last command of the applies of the calling thread's command, as far as
    /// they have happened, in that order. Nothing more is kept for that command.
    QList<TraceEvent> takeApplied();

    /// From now on `source` is where the last value that the calling thread has read comes from, as
    /// plugins tell; null ends that.
    void keepSource(QString* source);

    /// The command of the calling thread.
    Q_INVOKABLE int currentRequest() const;
    Q_INVOKABLE void resumeRequest(int command);
    Q_INVOKABLE void scriptHasRun(QString const& script, QString const& ending, int exitCode,
                                  bool isSuccess, int milliseconds, qlonglong outputBytes);
    Q_INVOKABLE void scriptHasComplained(QString const& script, QByteArray const& errorOutput);
    Q_INVOKABLE void lastCommandIsSettled(QString const& request, QString const& command,
                                          QString const& outcome, QString const& file);
    Q_INVOKABLE void busCallHasEnded(QString const& path, QString const& member,
                                     QString const& error, int milliseconds);
    Q_INVOKABLE void valueWasRead(QString const& key, QString const& source);

private:
    Q_DISABLE_COPY(Trace)

    void resumeCommandToEnd(QString const& notified);
    void announceOpenCalls();
    void addInside(TraceEvent& event);
    void add(TraceEvent const& event, bool wasAnnounced);
    void keepApplied(TraceEvent const& event);

    Format const mFormat;
    std::atomic<int> mLastCommand;

    // Guards what follows.
    std::mutex mMutex;
    QMap<QString, int> mNotified;
    QMap<int, QList<TraceEvent>> mApplied; // by command
};

/// A command or a backend call for as long as it goes on.
class TracedCall
{
public:
    TracedCall(Trace& trace, TraceEvent::Kind kind, char const* operation, QString const& subject);
    ~TracedCall();

    /// @return `code`.
    int end(int code);

private:
    Q_DISABLE_COPY(TracedCall)

    Trace& mTrace;
    int mCode = 0;
};
