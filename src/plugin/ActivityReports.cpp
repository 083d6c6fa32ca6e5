// SPDX-License-Identifier: MIT

#include "plugin/ActivityReports.h"

#include "actions/ActionKit.h"
#include "actions/default/HandOverFile.h"
#include "actions/default/Wrapper.h"

#include <QMetaObject>
#include <QRunnable>
#include <QScopedPointer>

namespace {

QLatin1String nameOf(WrapperRun::Ending ending)
{
    switch (ending) {
    case WrapperRun::EndedBySignal:
        return QLatin1String("signal");
    case WrapperRun::NotStarted:
        return QLatin1String("not started");
    case WrapperRun::EnvironmentTooLong:
        return QLatin1String("environment too long");
    case WrapperRun::TimedOut:
        return QLatin1String("timed out");
    case WrapperRun::Exited:
        break;
    }
    return QLatin1String("exited");
}

QLatin1String nameOf(IActivityObserver::Outcome outcome)
{
    switch (outcome) {
    case IActivityObserver::NotStarted:
        return QLatin1String("not started");
    case IActivityObserver::HandedOver:
        return QLatin1String("handed over");
    case IActivityObserver::NotHandedOver:
        return QLatin1String("not handed over");
    case IActivityObserver::Started:
        break;
    }
    return QLatin1String("started");
}

bool concernsHandOverFile(IActivityObserver::Outcome outcome)
{
    return outcome == IActivityObserver::HandedOver || outcome == IActivityObserver::NotHandedOver;
}

/// Runs a task under the request that has queued it.
class FollowedTask : public QRunnable
{
public:
    FollowedTask(QRunnable* task, IActivityObserver const& observer, QObject& listener)
        : mTask(task)
        , mObserver(observer)
        , mListener(listener)
        , mRequest(0)
    {
        // A listener without the method: it does not tell requests apart.
        static_cast<void>(QMetaObject::invokeMethod(
            &mListener, "currentRequest", Qt::DirectConnection, Q_RETURN_ARG(int, mRequest)));
    }

    void run() override
    {
        // The kit may have been made anew since then.
        if (ActionKit::sObserver() == &mObserver)
            static_cast<void>(QMetaObject::invokeMethod(
                &mListener, "resumeRequest", Qt::DirectConnection, Q_ARG(int, mRequest)));
        mTask->run();
    }

private:
    Q_DISABLE_COPY(FollowedTask)

    QScopedPointer<QRunnable> mTask;
    IActivityObserver const& mObserver;
    QObject& mListener;
    int mRequest;
};

} // namespace

ActivityReports::ActivityReports(QObject& listener, QObject* parent)
    : QObject(parent)
    , mListener(listener)
{
    ActionKit::instance()->setObserver(this);
}

ActivityReports::~ActivityReports()
{
    // Another one may have taken its place.
    if (ActionKit::sObserver() == this)
        ActionKit::instance()->setObserver(nullptr);
}

template <typename... Arguments>
void ActivityReports::tell(char const* method, Arguments const&... arguments)
{
    static_cast<void>(
        QMetaObject::invokeMethod(&mListener, method, Qt::DirectConnection, arguments...));
}

void ActivityReports::scriptHasRun(WrapperRun const& run)
{
    if (!run.errorOutput.isEmpty())
        tell("scriptHasComplained", Q_ARG(QString, run.script), Q_ARG(QByteArray, run.errorOutput));
    tell("scriptHasRun", Q_ARG(QString, run.script), Q_ARG(QString, nameOf(run.ending)),
         Q_ARG(int, run.exitCode), Q_ARG(bool, run.isSuccess()), Q_ARG(int, run.milliseconds),
         Q_ARG(qlonglong, run.outputBytes));
}

QRunnable* ActivityReports::scriptIsQueued(QRunnable* task)
{
    return new FollowedTask(task, *this, mListener);
}

void ActivityReports::lastCommandIsSettled(QString const& request, QString const& command,
                                           Outcome outcome)
{
    QString const file = QLatin1String(concernsHandOverFile(outcome) ? kHandOverFilePath : "");
    tell("lastCommandIsSettled", Q_ARG(QString, request), Q_ARG(QString, command),
         Q_ARG(QString, nameOf(outcome)), Q_ARG(QString, file));
}

void ActivityReports::busCallHasEnded(QString const& path, QString const& member,
                                      QString const& error, int milliseconds)
{
    tell("busCallHasEnded", Q_ARG(QString, path), Q_ARG(QString, member), Q_ARG(QString, error),
         Q_ARG(int, milliseconds));
}

void ActivityReports::valueWasRead(QString const& key, QString const& source)
{
    tell("valueWasRead", Q_ARG(QString, key), Q_ARG(QString, source));
}
