// SPDX-License-Identifier: MIT

#pragma once

#include "actions/IActivityObserver.h"

#include <QObject>

/// The dynamic property of the plugin in which the host leaves whom to tell, a `QObject*`.
char const kListenerProperty[] = "activityListener";

/// Tells an object of the host what is done for its requests: runs of scripts, last commands, calls
/// on the bus, and where values come from.
///
/// The host knows nothing of this class and the plugin nothing of the host's: the methods are
/// called by their names, on the thread on which the thing happened. Those that the object lacks
/// are left out.
///
///     int currentRequest()               on the host's thread: the request that is being served
///     void resumeRequest(int request)    what the calling thread does next belongs to `request`
///     void scriptHasRun(QString script, QString ending, int exitCode, bool isSuccess,
///                       int milliseconds, qlonglong outputBytes)
///     void scriptHasComplained(QString script, QByteArray errorOutput)
///                                        just before scriptHasRun, when the script has written
///                                        something to its standard error
///     void lastCommandIsSettled(QString request, QString command, QString outcome, QString file)
///     void busCallHasEnded(QString path, QString member, QString error, int milliseconds)
///     void valueWasRead(QString key, QString source)
///                                        for a "get" that answers a value, not a default
///
/// `ending` is "exited", "signal", "not started", "environment too long" or "timed out". `request`
/// is the key that the host has given to the apply, `outcome` "started", "not started", "handed
/// over" or "not handed over", `file` then the hand-over file; see IActivityObserver.
class ActivityReports : public QObject, public IActivityObserver
{
    Q_OBJECT

public:
    /// Becomes the kit's observer until this object goes or the kit is made anew.
    ///
    /// @param listener  stays the caller's and must outlive this object.
    ActivityReports(QObject& listener, QObject* parent);
    ~ActivityReports() override;

    void scriptHasRun(WrapperRun const& run) override;
    QRunnable* scriptIsQueued(QRunnable* task) override;
    void lastCommandIsSettled(QString const& request, QString const& command,
                              Outcome outcome) override;
    void busCallHasEnded(QString const& path, QString const& member, QString const& error,
                         int milliseconds) override;
    void valueWasRead(QString const& key, QString const& source) override;

private:
    Q_DISABLE_COPY(ActivityReports)

    template <typename... Arguments> void tell(char const* method, Arguments const&... arguments);

    QObject& mListener;
};
