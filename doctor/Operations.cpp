// SPDX-License-Identifier: MIT

#include "doctor/Operations.h"

#include "actions/default/Wrapper.h"

namespace {

QList<Operation> makeOperations()
{
    // clang-format off
    return QList<Operation>()
        << Operation {ISettingClass::ACTION_IS_VISIBLE, "isVisible",
                      Wrapper::kIsVisible, nullptr, false, InheritedEnvironment, "shown"}
        << Operation {ISettingClass::ACTION_VALUE, "get",
                      Wrapper::kGet, Wrapper::kGetEnv, false, OwnEnvironment, "the default"}
        << Operation {ISettingClass::ACTION_SET_VALUE, "set",
                      Wrapper::kSet, Wrapper::kSetEnv, true, OwnEnvironment, "the value waits as it came"}
        << Operation {ISettingClass::ACTION_CREATE, "create",
                      Wrapper::kCreate, nullptr, false, InheritedEnvironment, "refused"}
        << Operation {ISettingClass::ACTION_DEL, "del",
                      Wrapper::kDel, nullptr, false, InheritedEnvironment, "nothing"}
        << Operation {ISettingClass::ACTION_COMMIT, "commit",
                      Wrapper::kCommit, Wrapper::kCommitEnv, true, OwnEnvironment, "nothing"}
        << Operation {ISettingClass::ACTION_APPLY, "apply",
                      Wrapper::kApply, nullptr, false, OwnEnvironment, "nothing"};
    // clang-format on
}

} // namespace

bool Operation::isFor(EntryKind kind) const
{
    switch (action) {
    case ISettingClass::ACTION_VALUE:
    case ISettingClass::ACTION_SET_VALUE:
        return kind == ValueKey;
    case ISettingClass::ACTION_CREATE:
        return kind == SessionDirectory;
    default:
        return true;
    }
}

char const* Operation::reach() const
{
    switch (action) {
    case ISettingClass::ACTION_VALUE:
    case ISettingClass::ACTION_SET_VALUE:
        return "a directory has no value";
    case ISettingClass::ACTION_CREATE:
        return "only a session, the directory \"{uuid}\", is created";
    default:
        return "";
    }
}

QList<Operation> const& operations()
{
    static QList<Operation> const all = makeOperations();
    return all;
}

Operation const& operation(ISettingClass::Action_t action)
{
    return operations().at(action - ISettingClass::ACTION_IS_VISIBLE);
}

QString fileName(char const* wrapperFile)
{
    return QLatin1String(wrapperFile + 1);
}

QStringList scriptNames()
{
    QStringList names;
    for (Operation const& operation : operations())
        names.append(fileName(operation.script));
    return names;
}

QStringList environmentFileNames()
{
    QStringList names;
    for (Operation const& operation : operations()) {
        if (operation.environmentFile)
            names.append(fileName(operation.environmentFile));
    }
    return names;
}
