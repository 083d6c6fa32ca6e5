#include "display/DisplaySettingClass.h"

#include "actions/default/Wrapper.h"
#include "display/DisplayModeActions.h"

#include <QFile>
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

DisplaySettingClass::~DisplaySettingClass()
{
}

IConfigAction* DisplaySettingClass::isVisibleAction(QString const&) const
{
    return nullptr;
}

IConfigAction* DisplaySettingClass::valueAction(QString const& key) const
{
    return builtInAction(key, Wrapper::kGet, ACTION_VALUE);
}

IConfigAction* DisplaySettingClass::setValueAction(QString const& key) const
{
    return builtInAction(key, Wrapper::kSet, ACTION_SET_VALUE);
}

IConfigAction* DisplaySettingClass::createAction(QString const&) const
{
    return nullptr;
}

IConfigAction* DisplaySettingClass::delAction(QString const&) const
{
    return nullptr;
}

IConfigAction* DisplaySettingClass::commitAction(QString const& key) const
{
    return builtInAction(key, Wrapper::kCommit, ACTION_COMMIT);
}

IConfigAction* DisplaySettingClass::applyAction(QString const&) const
{
    return nullptr;
}

IConfigAction* DisplaySettingClass::builtInAction(QString const& key, char const* script,
                                                  Action_t action) const
{
    ConfigActions* const actions = mActions.value(key);
    if (!actions || QFile::exists(Wrapper::path(key, script)))
        return nullptr;
    actions->setCurrentAction(action);
    return actions;
}
