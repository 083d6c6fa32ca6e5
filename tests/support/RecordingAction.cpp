// SPDX-License-Identifier: MIT

#include "support/RecordingAction.h"

RecordingAction::RecordingAction()
    : mHasOutput(false)
    , mSucceeds(true)
{
}

RecordingAction::RecordingAction(QVariant const& output)
    : mHasOutput(true)
    , mSucceeds(true)
    , mOutput(output)
{
}

void RecordingAction::refuse()
{
    mSucceeds = false;
}

bool RecordingAction::execute(IConfigEntry const& entry, QVariant& data)
{
    Call const call = {entry.path(), entry.state(), data};
    mCalls.append(call);
    if (mHasOutput)
        data = mOutput;
    return mSucceeds;
}

QList<RecordingAction::Call> const& RecordingAction::calls() const
{
    return mCalls;
}

QStringList RecordingAction::paths() const
{
    QStringList paths;
    for (Call const& call : mCalls)
        paths.append(call.path);
    return paths;
}
