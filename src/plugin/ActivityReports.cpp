#include "plugin/ActivityReports.h"

#include "actions/default/HandOverFile.h"

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

QLatin1String nameOf(LastCommandObserver::Outcome outcome)
{
    switch (outcome) {
    case LastCommandObserver::NotStarted:
        return QLatin1String("not started");
    case LastCommandObserver::HandedOver:
        return QLatin1String("handed over");
    case LastCommandObserver::NotHandedOver:
        return QLatin1String("not handed over");
    case LastCommandObserver::Started:
        break;
    }
    return QLatin1String("started");
}

bool concernsHandOverFile(LastCommandObserver::Outcome outcome)
{
    return outcome == LastCommandObserver::HandedOver
        || outcome == LastCommandObserver::NotHandedOver;
}

/// Runs a task under the request that has queued it.
class FollowedTask : public QRunnable
{
public:
    FollowedTask(QRunnable* task, QObject& listener)
        : mTask(task)
        , mListener(listener)
        , mRequest(0)
    {
        // A listener without the method: it does not tell requests apart.
        static_cast<void>(QMetaObject::invokeMethod(
            &mListener, "currentRequest", Qt::DirectConnection, Q_RETURN_ARG(int, mRequest)));
    }

    void run() override
    {
        static_cast<void>(QMetaObject::invokeMethod(&mListener, "resumeRequest",
                                                    Qt::DirectConnection, Q_ARG(int, mRequest)));
        mTask->run();
    }

private:
    Q_DISABLE_COPY(FollowedTask)

    QScopedPointer<QRunnable> mTask;
    QObject& mListener;
    int mRequest;
};

} // namespace

ActivityReports::ActivityReports(QObject& listener, QObject* parent)
    : QObject(parent)
    , mListener(listener)
{
    Wrapper::sSetObserver(this);
    LastCommandTask::sSetObserver(this);
    wireless_setBusObserver(this);
}

ActivityReports::~ActivityReports()
{
    Wrapper::sSetObserver(nullptr);
    LastCommandTask::sSetObserver(nullptr);
    wireless_setBusObserver(nullptr);
}

void ActivityReports::scriptHasRun(WrapperRun const& run)
{
    if (!run.errorOutput.isEmpty())
        static_cast<void>(QMetaObject::invokeMethod(
            &mListener, "scriptHasComplained", Qt::DirectConnection, Q_ARG(QString, run.script),
            Q_ARG(QByteArray, run.errorOutput)));
    static_cast<void>(QMetaObject::invokeMethod(
        &mListener, "scriptHasRun", Qt::DirectConnection, Q_ARG(QString, run.script),
        Q_ARG(QString, nameOf(run.ending)), Q_ARG(int, run.exitCode), Q_ARG(bool, run.isSuccess()),
        Q_ARG(int, run.milliseconds), Q_ARG(qlonglong, run.outputBytes)));
}

QRunnable* ActivityReports::scriptIsQueued(QRunnable* task)
{
    return new FollowedTask(task, mListener);
}

void ActivityReports::lastCommandIsSettled(QString const& request, QString const& command,
                                           Outcome outcome)
{
    QString const file = concernsHandOverFile(outcome) ? HandOverFile::sPath() : QString();
    static_cast<void>(QMetaObject::invokeMethod(
        &mListener, "lastCommandIsSettled", Qt::DirectConnection, Q_ARG(QString, request),
        Q_ARG(QString, command), Q_ARG(QString, nameOf(outcome)), Q_ARG(QString, file)));
}

void ActivityReports::busCallHasEnded(QString const& path, QString const& member,
                                      QString const& error, int milliseconds)
{
    static_cast<void>(QMetaObject::invokeMethod(&mListener, "busCallHasEnded", Qt::DirectConnection,
                                                Q_ARG(QString, path), Q_ARG(QString, member),
                                                Q_ARG(QString, error), Q_ARG(int, milliseconds)));
}
