// SPDX-License-Identifier: MIT

#pragma once

#include <vantora/types.h>

#include <QMap>
#include <QString>

class Vantora;
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
    typedef QMap<QString, _RegNodeType> Answer;

    int look(Answer& answer) const;

    Vantora& mHost;
    QString const mKey;
    Answer mLast;
    int const mCode;
};
