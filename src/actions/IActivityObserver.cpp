#include "actions/IActivityObserver.h"

IActivityObserver::~IActivityObserver()
{
}

QRunnable* IActivityObserver::scriptIsQueued(QRunnable* task)
{
    return task;
}

void IActivityObserver::scriptHasRun(WrapperRun const&)
{
}

void IActivityObserver::lastCommandIsSettled(QString const&, QString const&, Outcome)
{
}

void IActivityObserver::busCallHasEnded(QString const&, QString const&, QString const&, int)
{
}

void IActivityObserver::valueWasRead(QString const&, QString const&)
{
}
