// SPDX-License-Identifier: MIT

#pragma once

class QRunnable;
class QString;

struct WrapperRun;

/// Is told what is done for the host's requests; see ActionKit::setObserver. What an observer does
/// not want to know it leaves as it is.
class IActivityObserver
{
public:
    /// What became of a last command.
    enum Outcome { Started, NotStarted, HandedOver, NotHandedOver };

    virtual ~IActivityObserver() { }

    /// Called on the thread of a request before `task`, which will run a script, goes to another
    /// thread.
    ///
    /// @param task  the pool's, which deletes it.
    /// @return what the pool runs in its place; `task` itself if not overridden.
    virtual QRunnable* scriptIsQueued(QRunnable* task) { return task; }

    /// Called when a script has ended, on the thread that has waited for it.
    virtual void scriptHasRun(WrapperRun const&) { }

    /// Called on the thread that ends an apply request, before the host is told of the end; not for
    /// a request without a last command.
    ///
    /// @param request  the key that the host has given to the apply; may be empty.
    /// @param command  the command line that was started, as far as is known, or could not be; the
    ///                 text that was written into the hand-over file, or could not be.
    virtual void lastCommandIsSettled(QString const& /*request*/, QString const& /*command*/,
                                      Outcome)
    {
    }

    /// Called when a call of NetworkManager has been answered, on the thread that has waited for
    /// it.
    ///
    /// @param member  the interface and the name of the method.
    /// @param error   the message of the error that was answered; null when there was none.
    virtual void busCallHasEnded(QString const& /*path*/, QString const& /*member*/,
                                 QString const& /*error*/, int /*milliseconds*/)
    {
    }

    /// Called on the thread of a "get" that answers a value rather than a default.
    ///
    /// @param key     as the host has asked for it.
    /// @param source  "script", or the word of the back end that has answered (see BackEnd); empty
    ///                for an action that does not describe itself.
    virtual void valueWasRead(QString const& /*key*/, QString const& /*source*/) { }
};
