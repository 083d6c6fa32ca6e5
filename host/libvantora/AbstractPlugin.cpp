// SPDX-License-Identifier: MIT

#include <vantora/abstractplugin.h>
#include <vantora/registry.h>

namespace {

int const kDone = 0;
int const kNotHandled = 1;

// By _RegEntryType.
char const* const kTypeWords[]
    = {"string", "rc4", "uuid", "char", "ipv4", "number", "float", "date", "bool"};

} // namespace

AbstractPlugin::AbstractPlugin()
    : mBackend(nullptr)
    , mRegistry(nullptr)
{
}

AbstractPlugin::~AbstractPlugin()
{
}

int AbstractPlugin::set(QString const&, QString const&, _RegEntryParam const&)
{
    return kNotHandled;
}

int AbstractPlugin::get(QString const& key, QMap<QString, _RegNodeType>& result,
                        _RegEntryParam const& param, QString const&)
{
    Reg::NodeSet nodes;
    if (!mRegistry || mRegistry->query(key, nodes, QString::fromLatin1("")) != 0
        || nodes.size() != 1)
        return kNotHandled;
    Reg::Entry const* const entry = dynamic_cast<Reg::Entry const*>(nodes.at(0));
    // A directory with one child answers with that child; the entry asked for bears the key itself.
    if (!entry || entry->absoluteName() != key)
        return kNotHandled;

    switch (param) {
    case REG_PARAM_TYPE:
        result.insert(QLatin1String(kTypeWords[entry->type()]), REG_NODE_VALUE);
        return kDone;
    case REG_PARAM_REGEXP:
        result.insert(entry->regExp(), REG_NODE_VALUE);
        return kDone;
    default:
        return kNotHandled;
    }
}

int AbstractPlugin::contains(QString const& key)
{
    Reg::NodeSet nodes;
    bool const known = mRegistry && mRegistry->query(key, nodes, QString::fromLatin1("")) == 0;
    return known ? kDone : kNotHandled;
}

int AbstractPlugin::commit(QString const&)
{
    return kNotHandled;
}

int AbstractPlugin::apply(QString const&, QString const&)
{
    return kNotHandled;
}

int AbstractPlugin::clone(QString const&, QString const&)
{
    return kNotHandled;
}

int AbstractPlugin::rollback(QString const&)
{
    return kNotHandled;
}

int AbstractPlugin::watch(QStringList const&, int)
{
    return kNotHandled;
}

int AbstractPlugin::changes(QMap<QString, _RegEntryChange>&)
{
    return kDone;
}

int AbstractPlugin::create(QString const&, _RegEntryType const&)
{
    return kNotHandled;
}

int AbstractPlugin::del(QString const&)
{
    return kNotHandled;
}

int AbstractPlugin::importRegistry(QByteArray&)
{
    return kNotHandled;
}

int AbstractPlugin::exportRegistry(QString const&, QByteArray&)
{
    return kNotHandled;
}

void AbstractPlugin::pluginIsLoaded(Vantora& backend, Reg::Registry& registry, QString const& text,
                                    QString const& baseDir)
{
    mBackend = &backend;
    mRegistry = &registry;
    mText = text;
    mBaseDir = baseDir;
}

int AbstractPlugin::trySet(QString const&, QString const&)
{
    return kNotHandled;
}

QString AbstractPlugin::rootDir() const
{
    return QLatin1String("root/") + mName;
}

QString AbstractPlugin::tmpRootDir() const
{
    return QLatin1String("tmp/") + mName;
}

void AbstractPlugin::setName(QString const& name)
{
    mName = name;
}

QString AbstractPlugin::name() const
{
    return mName;
}

Reg::Registry* AbstractPlugin::getDefaultSettings() const
{
    return mRegistry;
}
