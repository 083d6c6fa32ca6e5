// SPDX-License-Identifier: MIT

#include "shell/commands/Watch.h"

#include "options/ExitStatus.h"
#include "shell/Events.h"
#include "shell/Interrupt.h"
#include "shell/KeyNames.h"
#include "shell/Printer.h"
#include "shell/TracedHost.h"
#include "shell/commands/Commands.h"

#include <QElapsedTimer>

#include <unistd.h>

namespace {

typedef QMap<QString, _RegNodeType> Answer;

// Between two looks of a watch, which is interrupted sooner.
int const kWatchMs = 500;
int const kNapMs = 50;
useconds_t const kMicrosecondsPerMillisecond = 1000;
int const kMillisecondsPerSecond = 1000;

/// What `answer` has and `other` has not.
QStringList missing(Answer const& answer, Answer const& other)
{
    QStringList names;
    Answer::const_iterator node = answer.constBegin();
    for (; node != answer.constEnd(); ++node) {
        if (!other.contains(node.key()))
            names.append(shownName(node.key(), node.value()));
    }
    return names;
}

/// @return false when an interrupt has ended it.
bool nap(int milliseconds)
{
    for (int slept = 0; slept < milliseconds && !isInterrupted(); slept += kNapMs) {
        serveEvents();
        usleep(kNapMs * kMicrosecondsPerMillisecond);
    }
    return !isInterrupted();
}

} // namespace

KeyWatch::KeyWatch(Vantora& host, QString const& key)
    : mHost(host)
    , mKey(key)
    , mCode(look(mLast))
{
}

int KeyWatch::look(Answer& answer) const
{
    return mHost.get(mKey, answer, REG_PARAM_VALUE, QString::fromLatin1(""));
}

bool KeyWatch::hasChanged(Reply& reply)
{
    Answer now;
    // One that cannot be read any more has no answer.
    static_cast<void>(look(now));
    if (now == mLast)
        return false;
    reply = Reply(0, Reply::KeyChange);
    Answer::const_iterator node = now.constBegin();
    for (; node != now.constEnd(); ++node)
        reply.addNode(node.key(), node.value());
    if (!isOneValue(now)) {
        reply.gone = missing(isOneValue(mLast) ? Answer() : mLast, now);
        reply.come = missing(now, mLast);
    }
    mLast = now;
    return true;
}

Reply Commands::watch(ShellState& shell, QStringList const& arguments)
{
    bool isCount = true;
    bool isSeconds = true;
    // 0: no limit.
    int const count = arguments.value(1, QLatin1String("0")).toInt(&isCount);
    int const seconds = arguments.value(2, QLatin1String("0")).toInt(&isSeconds);
    if (!isCount || !isSeconds || count < 0 || seconds < 0)
        return Reply(0, Reply::BadArguments);

    KeyWatch key(shell.host, fullKey(arguments.at(0)));
    QElapsedTimer elapsed;
    elapsed.start();
    for (int changes = 0; key.code() == 0 && (count == 0 || changes < count);) {
        if (seconds > 0 && elapsed.hasExpired(qint64(seconds) * kMillisecondsPerSecond))
            return Reply(kTimedOut,
                         QString::fromLatin1("%1: no change in %2 s, no longer watching")
                             .arg(arguments.at(0))
                             .arg(seconds));
        if (!nap(kWatchMs))
            break;
        Reply change;
        if (!key.hasChanged(change))
            continue;
        ++changes;
        Command const command = {QLatin1String("watch"), arguments};
        shell.printer.print(command, change);
    }
    return Reply(key.code());
}
