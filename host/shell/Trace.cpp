// SPDX-License-Identifier: MIT

#include "shell/Trace.h"

#include "shell/Json.h"
#include "shell/Printer.h"

#include <chrono>
#include <vector>

namespace {

typedef std::chrono::steady_clock Clock;

int const kIndent = 2;

// What a thread that was started for a command does, is done for a backend call of it.
int const kDepthInBackground = 2;

struct OpenCall
{
    TraceEvent event;
    Clock::time_point start;
    // Its line is written, because there was something to write below it.
    bool isAnnounced;
};

struct ThreadState
{
    int command;
    int depth;
    std::vector<OpenCall> open;
    QString* source;
    // Of the script that is told of next.
    QByteArray errorOutput;
};

// What a thread does belongs to its own command: scripts and the end of an apply are told of on
// others, beside the next command. The state goes with its thread, which no object here would learn
// of.
thread_local ThreadState tState = {0, 0, std::vector<OpenCall>(), nullptr, QByteArray()};

TraceEvent emptyEvent(TraceEvent::Kind kind)
{
    TraceEvent event = TraceEvent();
    event.kind = kind;
    event.isSuccess = true;
    return event;
}

QString lead(TraceEvent const& event)
{
    return QString::fromLatin1("%1: ").arg(event.command)
        + QString(event.depth * kIndent, QLatin1Char(' '));
}

QString callText(TraceEvent const& event)
{
    return shownText(event.subject.isEmpty() ? event.operation
                                             : event.operation + QLatin1Char(' ') + event.subject);
}

QString textLine(TraceEvent const& event, bool wasAnnounced)
{
    QString line = lead(event);
    if (event.kind == TraceEvent::LastCommand)
        return line + QLatin1String("last command ") + shownText(event.subject)
            + QLatin1String(": ") + traceOutcome(event);
    if (event.kind == TraceEvent::ScriptRun)
        line += QLatin1String("script ") + shownText(event.subject) + QLatin1String(": ");
    else if (event.kind == TraceEvent::BusCall)
        line += QLatin1String("bus ") + event.operation + QLatin1Char(' ') + event.subject
            + QLatin1String(": ");
    else
        line += wasAnnounced ? QString::fromLatin1("= ") : callText(event) + QLatin1String(": ");
    line += traceOutcome(event) + QString::fromLatin1(", %1 ms").arg(event.milliseconds, 0, 'f', 1);
    if (event.kind == TraceEvent::ScriptRun)
        line += QString::fromLatin1(", %1 bytes").arg(event.outputBytes);
    return line;
}

} // namespace

QString traceOutcome(TraceEvent const& event)
{
    switch (event.kind) {
    case TraceEvent::ScriptRun:
        return event.ending == QLatin1String("exited")
            ? QString::fromLatin1("exit status %1").arg(event.code)
            : event.ending;
    case TraceEvent::LastCommand:
        return event.ending;
    case TraceEvent::BusCall:
        return event.ending.isNull() ? QString::fromLatin1("answered") : shownText(event.ending);
    default:
        return QString::fromLatin1("code %1").arg(event.code);
    }
}

Trace::Trace(Format format)
    : mFormat(format)
    , mLastCommand(0)
{
}

void Trace::begin(TraceEvent::Kind kind, QString const& operation, QString const& subject)
{
    ThreadState& state = tState;
    OpenCall call = {emptyEvent(kind), Clock::now(), false};
    if (kind == TraceEvent::CommandRun)
        state.command = ++mLastCommand;
    else if (state.command == 0)
        resumeCommandToEnd(subject);
    call.event.command = state.command;
    call.event.depth = state.depth++;
    call.event.operation = operation;
    call.event.subject = subject;
    state.open.push_back(call);
}

void Trace::end(int code)
{
    ThreadState& state = tState;
    OpenCall call = state.open.back();
    state.open.pop_back();
    --state.depth;
    if (call.event.kind == TraceEvent::CommandRun)
        state.command = 0;
    call.event.code = code;
    call.event.milliseconds
        = std::chrono::duration<double, std::milli>(Clock::now() - call.start).count();
    add(call.event, call.isAnnounced);
}

void Trace::expectEnd(QString const& notified)
{
    std::lock_guard<std::mutex> const guard(mMutex);
    int const command = currentRequest();
    mNotified.insert(notified, command);
    if (!mApplied.contains(command))
        mApplied.insert(command, QList<TraceEvent>());
}

QList<TraceEvent> Trace::takeApplied()
{
    std::lock_guard<std::mutex> const guard(mMutex);
    return mApplied.take(currentRequest());
}

/// Lets a thread that notifies of the end of an apply belong to the command that waits for it.
void Trace::resumeCommandToEnd(QString const& notified)
{
    std::lock_guard<std::mutex> const guard(mMutex);
    if (mNotified.contains(notified))
        resumeRequest(mNotified.value(notified));
}

void Trace::keepSource(QString* source)
{
    tState.source = source;
}

int Trace::currentRequest() const
{
    return tState.command;
}

void Trace::resumeRequest(int command)
{
    tState.command = command;
    tState.depth = kDepthInBackground;
}

void Trace::scriptHasRun(QString const& script, QString const& ending, int exitCode, bool isSuccess,
                         int milliseconds, qlonglong outputBytes)
{
    TraceEvent event = emptyEvent(TraceEvent::ScriptRun);
    event.subject = script;
    event.ending = ending;
    event.code = exitCode;
    event.isSuccess = isSuccess;
    event.milliseconds = milliseconds;
    event.outputBytes = outputBytes;
    event.errorOutput = tState.errorOutput;
    tState.errorOutput.clear();
    addInside(event);
    keepApplied(event);
}

void Trace::scriptHasComplained(QString const&, QByteArray const& errorOutput)
{
    tState.errorOutput = errorOutput;
}

void Trace::lastCommandIsSettled(QString const& request, QString const& command,
                                 QString const& outcome, QString const& file)
{
    if (tState.command == 0)
        resumeCommandToEnd(request);
    TraceEvent event = emptyEvent(TraceEvent::LastCommand);
    event.subject = command;
    event.ending = outcome;
    event.file = file;
    addInside(event);
    keepApplied(event);
}

void Trace::busCallHasEnded(QString const& path, QString const& member, QString const& error,
                            int milliseconds)
{
    TraceEvent event = emptyEvent(TraceEvent::BusCall);
    event.operation = member;
    event.subject = path;
    event.ending = error;
    event.milliseconds = milliseconds;
    addInside(event);
}

// What is read meanwhile for others, a script's environment say, is told of before.
void Trace::valueWasRead(QString const&, QString const& source)
{
    if (tState.source)
        *tState.source = source;
}

void Trace::addInside(TraceEvent& event)
{
    event.command = tState.command;
    event.depth = tState.depth;
    add(event, false);
}

void Trace::add(TraceEvent const& event, bool wasAnnounced)
{
    if (event.command == 0)
        return;
    if (mFormat == Text) {
        announceOpenCalls();
        writeMessage(textLine(event, wasAnnounced));
    } else if (mFormat == JsonLines) {
        writeMessage(jsonText(traceObject(event)));
    }
}

void Trace::keepApplied(TraceEvent const& event)
{
    // What the command runs itself, to see whether the key is hidden, say, is not applied.
    if (!tState.open.empty())
        return;
    std::lock_guard<std::mutex> const guard(mMutex);
    QMap<int, QList<TraceEvent>>::iterator const events = mApplied.find(event.command);
    if (events != mApplied.end())
        events->append(event);
}

void Trace::announceOpenCalls()
{
    for (OpenCall& call : tState.open) {
        if (!call.isAnnounced)
            writeMessage(lead(call.event) + callText(call.event));
        call.isAnnounced = true;
    }
}

TracedCall::TracedCall(Trace& trace, TraceEvent::Kind kind, char const* operation,
                       QString const& subject)
    : mTrace(trace)
{
    mTrace.begin(kind, QLatin1String(operation), subject);
}

TracedCall::~TracedCall()
{
    mTrace.end(mCode);
}

int TracedCall::end(int code)
{
    mCode = code;
    return code;
}
