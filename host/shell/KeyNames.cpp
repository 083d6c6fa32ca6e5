#include "shell/KeyNames.h"

namespace {

char const* const kKeySpaces[] = {"root", "tmp"};

} // namespace

QString fullKey(QString const& typed)
{
    for (char const* const space : kKeySpaces) {
        QString const name = QLatin1String(space);
        if (typed == name || typed.startsWith(name + QLatin1Char('/')))
            return typed;
    }
    return QLatin1String("root/") + typed;
}

QString ownName(QString const& key)
{
    return key.mid(key.lastIndexOf(QLatin1Char('/')) + 1);
}

QString shownName(QString const& key, _RegNodeType type)
{
    switch (type) {
    case REG_NODE_DIR:
        return ownName(key) + QLatin1Char('/');
    case REG_NODE_KEY:
        return ownName(key);
    default:
        return key;
    }
}
