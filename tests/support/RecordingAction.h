// SPDX-License-Identifier: MIT

#pragma once

#include "actions/IConfigAction.h"
#include "tree/IConfigEntry.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

/// An action that writes down how it was called and answers what a test tells it to.
class RecordingAction : public IConfigAction
{
public:
    struct Call
    {
        QString path;
        IConfigEntry::entry_state_t state;
        QVariant data;
    };

    /// Succeeds and leaves the data alone.
    RecordingAction();

    /// Succeeds and answers `output`.
    explicit RecordingAction(QVariant const& output);

    /// From now on it answers false. Output that it was given goes out all the same, as with an
    /// action that breaks off half way.
    void refuse();

    bool execute(IConfigEntry const& entry, QVariant& data) override;

    QList<Call> const& calls() const;

    /// The paths of the entries that it was called for, in order.
    QStringList paths() const;

private:
    bool mHasOutput;
    bool mSucceeds;
    QVariant mOutput;
    QList<Call> mCalls;
};
