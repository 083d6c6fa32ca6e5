#include "actions/default/DefaultActions.h"

#include "actions/default/Wrapper.h"

#include <QFile>
#include <QProcess>
#include <QVariant>

bool DefaultIsVisibleAction::execute(IConfigEntry const& entry, QVariant& data)
{
    QString const script = Wrapper::path(entry, Wrapper::kIsVisible);
    if (!QFile::exists(script))
        return false;
    data = Wrapper(script).run();
    return true;
}

bool DefaultValueAction::execute(IConfigEntry const& entry, QVariant& data)
{
    QString const script = Wrapper::path(entry, Wrapper::kGet);
    if (!QFile::exists(script))
        return false;
    Wrapper wrapper(script, Wrapper::KeepOutput);
    wrapper.setEnvironment(processEnvironment(entry));
    if (!wrapper.run())
        return false;
    data = wrapper.output();
    return true;
}

QStringList DefaultValueAction::processEnvironment(IConfigEntry const&)
{
    return QProcess::systemEnvironment();
}

bool DefaultSetValueAction::execute(IConfigEntry const& entry, QVariant& data)
{
    QString const script = Wrapper::path(entry, Wrapper::kSet);
    if (!QFile::exists(script))
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
    QString const script = Wrapper::path(entry, Wrapper::kCreate);
    return QFile::exists(script) && Wrapper(script).run();
}

bool DefaultDelAction::execute(IConfigEntry const& entry, QVariant&)
{
    QString const script = Wrapper::path(entry, Wrapper::kDel);
    if (!QFile::exists(script))
        return false;
    // A script that cannot delete still counts as having answered.
    static_cast<void>(Wrapper(script).run());
    return true;
}

bool DefaultCommitAction::execute(IConfigEntry const& entry, QVariant& data)
{
    QString const script = Wrapper::path(entry, Wrapper::kCommit);
    if (!QFile::exists(script))
        return false;
    Wrapper wrapper(script);
    wrapper.setEnvironment(processEnvironment(entry));
    return wrapper.runWithValue(data.toString());
}

QStringList DefaultCommitAction::processEnvironment(IConfigEntry const&)
{
    return QProcess::systemEnvironment();
}
