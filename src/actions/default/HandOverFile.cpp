// SPDX-License-Identifier: MIT

#include "actions/default/HandOverFile.h"

#include "actions/default/ScriptProcess.h"
#include "common/Text.h"

#include <QFile>

#include <cerrno>
#include <chrono>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

int const kNone = -1;

// The time of a change is that of the last tick of the system's clock.
int const kTickMs = 20;
int const kMostLooks = 5;

qint64 nowMs()
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(
               std::chrono::system_clock::now().time_since_epoch())
        .count();
}

qint64 changeMs(struct stat const& status)
{
    return qint64(status.st_ctim.tv_sec) * 1000 + status.st_ctim.tv_nsec / 1000000;
}

} // namespace

HandOverFile::HandOverFile()
    : mDescriptor(kNone)
{
    open();
    if (!hasNoOtherName())
        close();
}

HandOverFile::~HandOverFile()
{
    close();
}

void HandOverFile::open()
{
    // Its maker may have it read or written only.
    int const modes[] = {O_RDWR, O_RDONLY, O_WRONLY};
    for (int const mode : modes) {
        mDescriptor = ::open(kHandOverFilePath, mode | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
        if (mDescriptor != kNone)
            return;
        // The first attempt alone decides: a file that has gone since then was there.
        if (mode == O_RDWR && errno == ENOENT) {
            mExists = false;
            return;
        }
    }
}

/// Whether the name stands for what was opened, which is a file and has no other name. A name that
/// somebody gives and takes away beside this could be there in one look and not count in it; but it
/// leaves its time in the file. So a file that has just changed is looked at again a little later.
bool HandOverFile::hasNoOtherName() const
{
    for (int look = 0; look < kMostLooks; ++look) {
        struct stat opened = {};
        struct stat named = {};
        qint64 const before = nowMs();
        if (::fstat(mDescriptor, &opened) != 0 || ::lstat(kHandOverFilePath, &named) != 0
            || named.st_dev != opened.st_dev || named.st_ino != opened.st_ino
            || !S_ISREG(named.st_mode) || named.st_nlink != 1)
            return false;
        // Later than now: the clock has been set back.
        if (changeMs(named) < before - kTickMs || changeMs(named) > nowMs() + kTickMs)
            return true;
        ::usleep(kTickMs * 1000);
    }
    return false;
}

void HandOverFile::close()
{
    if (mDescriptor != kNone)
        ::close(mDescriptor);
    mDescriptor = kNone;
}

bool HandOverFile::read(QString& command) const
{
    QFile file;
    if (!file.open(mDescriptor, QIODevice::ReadOnly | QIODevice::Text)
        || file.size() > kLongestScriptOutput)
        return false;
    QByteArray const line = file.readLine();
    if (file.error() != QFile::NoError)
        return false;
    command = latin1UpToNul(line.trimmed()).section(QLatin1Char(':'), 0, 0).trimmed();
    return true;
}

bool HandOverFile::replace(QString const& text)
{
    QByteArray const bytes = text.toLocal8Bit();
    QFile file;
    return file.open(mDescriptor, QIODevice::WriteOnly) && file.resize(0) && file.seek(0)
        && file.write(bytes) == bytes.size() && file.flush();
}
