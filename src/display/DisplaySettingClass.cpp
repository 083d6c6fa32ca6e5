// SPDX-License-Identifier: MIT

#include "display/DisplaySettingClass.h"

#include "actions/default/Wrapper.h"
#include "display/DisplayModeActions.h"

#include <QLatin1String>
#include <QVector>

namespace {

/// The names of the multi-monitor modes, in the order of the registry's numbers.
QVector<QString> modeNames()
{
    return QVector<QString>() << QLatin1String("Same as primary")
                              << QLatin1String("Extend above primary")
                              << QLatin1String("Extend to the right of primary")
                              << QLatin1String("Extend to the left of primary")
                              << QLatin1String("Extend below primary");
}

} // namespace

DisplaySettingClass::DisplaySettingClass(Vantora& backend)
    : mBackend(backend)
{
    mActions.insert(QLatin1String("zelvo-view/display/color_depth"),
                    new ColorDepthActions(mBackend));
    mActions.insert(QLatin1String("zelvo-view/display/multi_monitor_mode"),
                    new MultiMonitorModeActions(mBackend, modeNames()));
    mActions.insert(QLatin1String("zelvo-view/display/refresh_rate"),
                    new RefreshRateActions(mBackend));
    mActions.insert(QLatin1String("zelvo-view/display/resolution"),
                    new ResolutionActions(mBackend));
    mActions.insert(QLatin1String("zelvo-view/display/primary_monitor"),
                    new PrimaryMonitorActions(mBackend));
}

IConfigAction* DisplaySettingClass::valueAction(QString const& key) const
{
    return builtInAction(key, Wrapper::kGet, ACTION_VALUE);
}

IConfigAction* DisplaySettingClass::setValueAction(QString const& key) const
{
    return builtInAction(key, Wrapper::kSet, ACTION_SET_VALUE);
}

IConfigAction* DisplaySettingClass::commitAction(QString const& key) const
{
    return builtInAction(key, Wrapper::kCommit, ACTION_COMMIT);
}

IConfigAction* DisplaySettingClass::builtInAction(QString const& key, char const* script,
                                                  Action_t action) const
{
    ConfigActions* const actions = mActions.value(key);
    if (!actions || !Wrapper::find(key, script).isNull())
        return nullptr;
    actions->setCurrentAction(action);
    return actions;
}
