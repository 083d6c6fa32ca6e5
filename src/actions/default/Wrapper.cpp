// SPDX-License-Identifier: MIT

#include "actions/default/Wrapper.h"

#include "actions/ActionKit.h"
#include "actions/IActivityObserver.h"
#include "actions/default/RequestContext.h"
#include "common/QtCompat.h"
#include "common/Text.h"
#include "common/UuidComponents.h"
#include "tree/IConfigEntry.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>

namespace {

int const kTimeLimitMs = 30000;

/// Writes the whole text as UTF-8, nothing behind it, to a new temporary file.
bool writeValue(QTemporaryFile& file, QString const& value)
{
    QByteArray const bytes = value.toUtf8();
    return file.open() && file.write(bytes) == bytes.size() && file.flush();
}

} // namespace

bool WrapperRun::isSuccess() const
{
    switch (ending) {
    case Exited:
        return exitCode == 0;
    case EndedBySignal:
    case EnvironmentTooLong:
        return false;
    case NotStarted:
    case TimedOut:
        break;
    }
    return true;
}

char const Wrapper::kIsVisible[] = "/isVisible.sh";
char const Wrapper::kGet[] = "/get.sh";
char const Wrapper::kSet[] = "/set.sh";
char const Wrapper::kCreate[] = "/create.sh";
char const Wrapper::kDel[] = "/del.sh";
char const Wrapper::kCommit[] = "/commit.sh";
char const Wrapper::kApply[] = "/apply.sh";

char const Wrapper::kGetEnv[] = "/get.env";
char const Wrapper::kSetEnv[] = "/set.env";
char const Wrapper::kCommitEnv[] = "/commit.env";

QString Wrapper::path(IConfigEntry const& entry, char const* fileName)
{
    return path(generalisedPath(entry.path()), fileName);
}

QString Wrapper::path(QString const& viewKey, char const* fileName)
{
    return ActionKit::instance()->wrappersDirectory().path() + QLatin1Char('/') + viewKey
        + QLatin1String(fileName);
}

QString Wrapper::find(IConfigEntry const& entry, char const* fileName)
{
    return RequestContext::sAreFoldersMissing(entry)
        ? QString()
        : find(generalisedPath(entry.path()), fileName);
}

QString Wrapper::find(QString const& viewKey, char const* fileName)
{
    QString const file = path(viewKey, fileName);
    return QFile::exists(file) ? file : QString();
}

Wrapper::Wrapper(QString const& script, Output output)
    : mScript(script)
    , mOutput(output)
{
    mProcess.setWorkingDirectory(QFileInfo(script).absolutePath());
}

bool Wrapper::run()
{
    startClock();
    if (isSplitByCommandLine(mScript))
        QtCompat::startCommandLine(mProcess, mScript);
    else
        mProcess.startScript(mScript, QStringList());
    return waitForSuccess();
}

bool Wrapper::runWithValue(QString const& value)
{
    QTemporaryFile file;
    if (!writeValue(file, value))
        return false;
    startClock();
    mProcess.startScript(mScript, QStringList() << file.fileName());
    return waitForSuccess();
}

void Wrapper::startClock()
{
    mObserver = ActionKit::sObserver();
    if (mObserver)
        mStart = Clock::now();
}

QString Wrapper::output()
{
    QByteArray const bytes = mProcess.readAllStandardOutput();
    return QString::fromUtf8(bytes.constData(), bytes.size());
}

bool Wrapper::waitForSuccess()
{
    dropUnreadChannels();
    WrapperRun::Ending const ending = waitForEnd();
    WrapperRun run = {mScript, ending, mProcess.exitCode(), 0, 0, QByteArray()};
    // One that has come or gone since the start is told nothing.
    if (mObserver && mObserver == ActionKit::sObserver())
        tellObserver(run);
    return run.isSuccess();
}

// What nobody reads is not kept either. The script can write it all the same.
void Wrapper::dropUnreadChannels()
{
    if (!mObserver)
        mProcess.closeReadChannel(QProcess::StandardError);
    if (mOutput == DropOutput)
        mProcess.closeReadChannel(QProcess::StandardOutput);
}

WrapperRun::Ending Wrapper::waitForEnd()
{
    // How it ended is asked below.
    static_cast<void>(mProcess.waitForFinished(kTimeLimitMs));
    RequestContext::sForgetFolders();
    if (mProcess.state() != QProcess::NotRunning) {
        mProcess.killGroup();
        static_cast<void>(mProcess.waitForFinished());
        return WrapperRun::TimedOut;
    }
    if (mProcess.isEnvironmentTooLong())
        return WrapperRun::EnvironmentTooLong;
    // The exit status of a program that never started differs between versions of Qt.
    if (mProcess.error() == QProcess::FailedToStart)
        return WrapperRun::NotStarted;
    return mProcess.exitStatus() == QProcess::NormalExit ? WrapperRun::Exited
                                                         : WrapperRun::EndedBySignal;
}

void Wrapper::tellObserver(WrapperRun& run)
{
    std::chrono::milliseconds const duration
        = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - mStart);
    run.milliseconds = static_cast<int>(duration.count());
    run.outputBytes = mProcess.bytesAvailable();
    run.errorOutput = mProcess.errorOutput();
    mObserver->scriptHasRun(run);
}
