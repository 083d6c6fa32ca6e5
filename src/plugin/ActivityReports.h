#pragma once

#include "actions/default/Wrapper.h"
#include "wireless/WirelessSystem.h"

#include <QObject>

/// Tells an object of the host what is done for its requests: runs of scripts and calls on the bus.
///
/// The host knows nothing of this class and the plugin nothing of the host's: the methods are called
/// by their names, on the thread on which the thing happened. Those that the object lacks are left
/// out.
///
///     int currentRequest()               on the host's thread: the request that is being served
///     void resumeRequest(int request)    what the calling thread does next belongs to `request`
///     void scriptHasRun(QString script, QString ending, int exitCode, bool isSuccess,
///                       int milliseconds, qlonglong outputBytes)
///     void busCallHasEnded(QString path, QString member, QString error, int milliseconds)
///
/// `ending` is "exited", "signal", "not started" or "timed out".
class ActivityReports : public QObject, public WrapperObserver, public BusObserver
{
    Q_OBJECT

public:
    /// @param listener  stays the caller's and must outlive this object.
    ActivityReports(QObject& listener, QObject* parent);
    ~ActivityReports() override;

    void scriptHasRun(WrapperRun const& run) override;
    QRunnable* scriptIsQueued(QRunnable* task) override;
    void busCallHasEnded(QString const& path, QString const& member, QString const& error,
                         int milliseconds) override;

private:
    Q_DISABLE_COPY(ActivityReports)

    QObject& mListener;
};
