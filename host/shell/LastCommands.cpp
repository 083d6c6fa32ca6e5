#include "shell/LastCommands.h"

#include <QElapsedTimer>
#include <QFile>

#include <cstdlib>

#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

char const* const kRecordVariable = "VANTORA_WORLD_RECORD";
char const* const kHandOverFile = "/tmp/last-apply-command";

int const kLongestWaitMilliseconds = 2000;
useconds_t const kLookMicroseconds = 5000;

QByteArray contents(QString const& fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QByteArray record()
{
    char const* const fileName = std::getenv(kRecordVariable);
    return fileName ? contents(QFile::decodeName(fileName)) : QByteArray();
}

/// When something was last handed over; 0 if nobody has made the file for it.
timespec handOverTime()
{
    struct stat status = {};
    static_cast<void>(stat(kHandOverFile, &status));
    return status.st_mtim;
}

bool isSame(timespec const& one, timespec const& other)
{
    return one.tv_sec == other.tv_sec && one.tv_nsec == other.tv_nsec;
}

/// Whether a program that was started and left to itself still runs. An ended one is cleared away;
/// the wrappers of the apply are no children any more by then.
bool hasRunningOrphans()
{
    siginfo_t info = siginfo_t();
    while (waitid(P_ALL, 0, &info, WEXITED | WNOHANG) == 0) {
        if (info.si_pid == 0)
            return true;
        info = siginfo_t();
    }
    return false;
}

} // namespace

LastCommands::LastCommands()
    : mRecordBefore(record())
    , mHandOverTimeBefore(handOverTime())
{
    // A program that is started detached becomes a child of this process instead of one of init's,
    // so it can be told when it has ended.
    static_cast<void>(prctl(PR_SET_CHILD_SUBREAPER, 1));
}

void LastCommands::awaitStarted() const
{
    QElapsedTimer elapsed;
    elapsed.start();
    while (hasRunningOrphans() && elapsed.elapsed() < kLongestWaitMilliseconds)
        usleep(kLookMicroseconds);
}

QStringList LastCommands::since() const
{
    QStringList lines;
    QList<QByteArray> const run = record().mid(mRecordBefore.size()).split('\n');
    for (QByteArray const& line : run) {
        if (!line.isEmpty())
            lines.append(QLatin1String("run: ") + QString::fromUtf8(line.constData(), line.size()));
    }
    QByteArray const handedOver = contents(QLatin1String(kHandOverFile));
    if (!handedOver.isEmpty() && !isSame(handOverTime(), mHandOverTimeBefore))
        lines.append(QLatin1String("handed over: ") + QString::fromLocal8Bit(handedOver));
    return lines;
}
