// SPDX-License-Identifier: MIT

#include "shell/TracedHost.h"

#include "shell/Trace.h"

namespace {

int const kDone = 0;

TraceEvent::Kind const kCall = TraceEvent::BackendCall;

} // namespace

TracedHost::TracedHost(Vantora& host, Trace& trace)
    : mHost(host)
    , mTrace(trace)
    , mDeletions(0)
{
}

int TracedHost::set(QString const& key, QString const& value, _RegEntryParam const& param)
{
    TracedCall call(mTrace, kCall, "set", key);
    int const code = mHost.set(key, value, param);
    if (code == kDone)
        mPending.add(key, value);
    return call.end(code);
}

int TracedHost::get(QString const& key, QMap<QString, _RegNodeType>& result,
                    _RegEntryParam const& param, QString const& extra)
{
    TracedCall call(mTrace, kCall, "get", key);
    return call.end(mHost.get(key, result, param, extra));
}

int TracedHost::commit(QString const& key)
{
    TracedCall call(mTrace, kCall, "commit", key);
    int const code = mHost.commit(key);
    if (code == kDone)
        mPending.settled(key);
    return call.end(code);
}

int TracedHost::apply(QString const& key, QString const& command)
{
    TracedCall call(mTrace, kCall, "apply", key);
    mTrace.expectEnd(command);
    return call.end(mHost.apply(key, command));
}

int TracedHost::rollback(QString const& key)
{
    TracedCall call(mTrace, kCall, "rollback", key);
    int const code = mHost.rollback(key);
    if (code == kDone)
        mPending.rolledBack(key);
    return call.end(code);
}

int TracedHost::create(QString const& key, _RegEntryType const& type)
{
    TracedCall call(mTrace, kCall, "create", key);
    int const code = mHost.create(key, type);
    if (code == kDone)
        mPending.add(key, QString());
    return call.end(code);
}

int TracedHost::contains(QString const& key)
{
    TracedCall call(mTrace, kCall, "contains", key);
    return call.end(mHost.contains(key));
}

int TracedHost::del(QString const& key)
{
    TracedCall call(mTrace, kCall, "del", key);
    int const before = mDeletions;
    int const code = mHost.del(key);
    if (code == kDone && !mPending.isPlugins(key))
        ++mDeletions;
    // What a plugin was given stays with it, unless it has passed the deletion on to the registry.
    if (code == kDone && mDeletions != before)
        mPending.settled(key);
    return call.end(code);
}

int TracedHost::clone(QString const& source, QString const& target)
{
    TracedCall call(mTrace, kCall, "clone", source);
    return call.end(mHost.clone(source, target));
}

int TracedHost::watch(QStringList const& keys, int id)
{
    TracedCall call(mTrace, kCall, "watch", keys.value(0));
    return call.end(mHost.watch(keys, id));
}

int TracedHost::changes(QMap<QString, _RegEntryChange>& changes)
{
    TracedCall call(mTrace, kCall, "changes", QString());
    return call.end(mHost.changes(changes));
}

int TracedHost::importRegistry(QByteArray& data)
{
    TracedCall call(mTrace, kCall, "import", QString());
    return call.end(mHost.importRegistry(data));
}

int TracedHost::exportRegistry(QString const& key, QByteArray& data)
{
    TracedCall call(mTrace, kCall, "export", key);
    return call.end(mHost.exportRegistry(key, data));
}
