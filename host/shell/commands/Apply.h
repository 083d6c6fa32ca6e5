// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QSystemSemaphore>

/// Waits for the end of an apply, which is told by the release of a system semaphore.
///
/// The semaphore exists, with the value 0, from the construction of this object to its end, so that
/// an apply that is over at once is not missed. Serves the events of the calling thread while it
/// waits.
class ApplyWait
{
public:
    /// @param semaphoreName  nobody else's.
    /// @param subject        what is applied, for the progress shown on standard error.
    ApplyWait(QString const& semaphoreName, QString const& subject);

    /// Whether the semaphore could be made; if not, a message is in `error`.
    bool isReady(QString& error) const;

    /// @return true once the semaphore was released, false when `timeoutSeconds` are over, the
    ///         command is interrupted or it cannot be waited for.
    bool wait(int timeoutSeconds);

    /// Why the last wait could not be carried out; empty when it could.
    QString failure() const { return mFailure; }

private:
    Q_DISABLE_COPY(ApplyWait)

    QString const mSemaphoreName;
    QString const mSubject;
    QSystemSemaphore mSemaphore;
    QString mFailure;
};
