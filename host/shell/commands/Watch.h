// SPDX-License-Identifier: MIT

#pragma once

#include "shell/KeyNames.h"

struct Reply;

/// Looks at a key again and again.
class KeyWatch
{
public:
    /// @param host  outlives this object.
    KeyWatch(Vantora& host, QString const& key);

    /// The result code of the first look.
    int code() const { return mCode; }

    /// Looks again.
    ///
    /// @return whether something has changed; what it is now is then in `reply`: the new value, or
    ///         for a directory its children, and which of them came and went.
    bool hasChanged(Reply& reply);

private:
    Vantora& mHost;
    QString const mKey;
    Listing mLast;
    int const mCode;
};
