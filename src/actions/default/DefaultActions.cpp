// SPDX-License-Identifier: MIT

#include "actions/default/DefaultActions.h"

#include "actions/default/RequestContext.h"
#include "actions/default/Wrapper.h"

#include <QProcess>
#include <QVariant>

bool DefaultIsVisibleAction::execute(IConfigEntry const& entry, QVariant& data)
{
    QString const script = Wrapper::find(entry, Wrapper::kIsVisible);
    if (script.isNull())
        return false;
    data = Wrapper(script).run();
    return true;
}

bool DefaultValueAction::execute(IConfigEntry const& entry, QVariant& data)
{
    QString const script = Wrapper::find(entry, Wrapper::kGet);
    if (script.isNull())
        return false;
    Wrapper wrapper(script, Wrapper::KeepOutput);
    wrapper.setEnvironment(processEnvironment(entry));
    if (!wrapper.run())
        return false;
    RequestContext::sScriptHasAnswered();
    data = wrapper.output();
    return true;
}

QStringList DefaultValueAction::processEnvironment(IConfigEntry const&)
{
    return QProcess::systemEnvironment();
}

bool DefaultSetValueAction::execute(IConfigEntry const& entry, QVariant& data)
{
    QString const script = Wrapper::find(entry, Wrapper::kSet);
    if (script.isNull())
        return false;
    Wrapper wrapper(script, Wrapper::KeepOutput);
    wrapper.setEnvironment(processEnvironment(entry));
    if (!wrapper.runWithValue(data.toString()))
        return false;
    data = wrapper.output();
    return true;
}

QStringList DefaultSetValueAction::processEnvironment(IConfigEntry const&)
{
    return QProcess::systemEnvironment();
}

bool DefaultCreateAction::execute(IConfigEntry const& entry, QVariant&)
{
    QString const script = Wrapper::find(entry, Wrapper::kCreate);
    return !script.isNull() && Wrapper(script).run();
}

bool DefaultDelAction::execute(IConfigEntry const& entry, QVariant&)
{
    QString const script = Wrapper::find(entry, Wrapper::kDel);
    if (script.isNull())
        return false;
    // A script that cannot delete still counts as having answered.
    static_cast<void>(Wrapper(script).run());
    return true;
}

bool DefaultCommitAction::execute(IConfigEntry const& entry, QVariant& data)
{
    QString const script = Wrapper::find(entry, Wrapper::kCommit);
    if (script.isNull())
        return false;
    Wrapper wrapper(script);
    wrapper.setEnvironment(processEnvironment(entry));
    return wrapper.runWithValue(data.toString());
}

QStringList DefaultCommitAction::processEnvironment(IConfigEntry const&)
{
    return QProcess::systemEnvironment();
}
