// SPDX-License-Identifier: MIT

#include "shell/commands/Watch.h"

#include "options/ExitStatus.h"
#include "shell/Events.h"
#include "shell/Interrupt.h"
#include "shell/Printer.h"
#include "shell/TracedHost.h"
#include "shell/commands/Commands.h"

#include <QElapsedTimer>

#include <unistd.h>

namespace {

// Between two looks of a watch, which is interrupted sooner.
int const kWatchMs = 500;
int const kNapMs = 50;
useconds_t const kMicrosecondsPerMillisecond = 1000;
int const kMillisecondsPerSecond = 1000;

/// What `answer` has and `other` has not.
QStringList missing(Listing const& answer, Listing const& other)
{
    QStringList names;
    for (QString const& key : answer.keys()) {
        if (!other.contains(key))
            names.append(shownName(key, answer.value(key)));
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
    , mCode(lookUp(host, key, mLast))
{
}

bool KeyWatch::hasChanged(Reply& reply)
{
    Listing now;
    // One that cannot be read any more has no answer.
    static_cast<void>(lookUp(mHost, mKey, now));
    if (now == mLast)
        return false;
    reply = Reply(0, Reply::KeyChange);
    reply.addNodes(now);
    if (!isOneValue(now)) {
        reply.gone = missing(isOneValue(mLast) ? Listing() : mLast, now);
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
