// SPDX-License-Identifier: MIT

#pragma once

class IConfigEntry;
class QVariant;

/// One operation on one kind of entry.
class IConfigAction
{
public:
    virtual ~IConfigAction() { }

    /// Does the action's work for `entry`.
    ///
    /// @param data  in: the value to set or to commit. Out: the value read, or the visibility.
    /// @return whether the action succeeded; where it answers false, `data` is as it was.
    virtual bool execute(IConfigEntry const& entry, QVariant& data) = 0;
};
