// SPDX-License-Identifier: MIT

#include "shell/KeyNames.h"

#include "registry/RegistryKey.h"

namespace {

char const* const kKeySpaces[] = {"root", "tmp"};

} // namespace

QString fullKey(QString const& typed)
{
    for (char const* const space : kKeySpaces) {
        if (isAtOrUnder(typed, QLatin1String(space)))
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

bool isOneValue(QMap<QString, _RegNodeType> const& answer)
{
    return answer.size() == 1
        && (answer.constBegin().value() == REG_NODE_VALUE
            || answer.constBegin().value() == REG_NODE_DEFAULT);
}
