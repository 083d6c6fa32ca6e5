// SPDX-License-Identifier: MIT

#pragma once

#include "actions/IConfigAction.h"
#include "actions/ISettingClass.h"

#include <QString>

class QStringList;
class Vantora;

/// The actions of one display key, in one object (the platform's name, kept as it is): the current
/// action says which of them `execute` does. What is read and written goes through the backend.
/// Host thread only.
class ConfigActions : public IConfigAction
{
public:
    /// The current action is to tell the visibility, until another one is set.
    ///
    /// @param backend  must outlive the object.
    explicit ConfigActions(Vantora& backend);

    void setCurrentAction(ISettingClass::Action_t action) { mCurrentAction = action; }
    ISettingClass::Action_t currentAction() const { return mCurrentAction; }

    /// The registry path of the display profile in use: of those that bear the label that the
    /// configuration names, the one whose path sorts first. A label that cannot be read is an empty
    /// one. Null when there is no such profile.
    QString primaryProfilePath();

    /// The registry path of a display profile, with "{UUID}" in place of which.
    static QString sProfilePathTemplate();

protected:
    /// The label of the profile in use, whether or not there is such a profile. False when it
    /// cannot be read: `label` then stays as it was.
    bool readPrimaryLabel(QString& label);

    /// The path as above, but where no profile is in use one is made, labelled "Zelvo", committed
    /// and put to use. Null when that failed.
    QString ensurePrimaryProfile();

    /// Reads one value. False when it cannot be read: `out` then stays as it was.
    bool read(QString const& key, QString& out);

    /// The same for a decimal integer; false for a value that is none.
    bool read(QString const& key, int& out);

    /// Sets the keys one after another to the texts of the same order. The first that fails ends
    /// the work; those before it stay set.
    bool write(QStringList const& keys, QStringList const& texts);

    /// Commits all keys, one after another. False when one of them fails.
    bool commit(QStringList const& keys);

private:
    Q_DISABLE_COPY(ConfigActions)

    /// A text of the registry, or the empty one when it cannot be read.
    QString label(QString const& key);

    void createPrimaryProfile();

    Vantora& mBackend;
    ISettingClass::Action_t mCurrentAction;
};
