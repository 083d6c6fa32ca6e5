// SPDX-License-Identifier: MIT

#include "shell/KeyNames.h"

#include "registry/RegistryKey.h"

#include <vantora/vantora.h>

int lookUp(Vantora& host, QString const& key, Listing& answer)
{
    return host.get(key, answer, REG_PARAM_VALUE, QString::fromLatin1(""));
}

QString fullKey(QString const& typed)
{
    QStringList const keySpaces = QStringList() << QLatin1String("root") << QLatin1String("tmp");
    return isAtOrUnderOneOf(typed, keySpaces) ? typed : QLatin1String("root/") + typed;
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

bool isOneValue(Listing const& answer)
{
    return answer.size() == 1
        && (answer.constBegin().value() == REG_NODE_VALUE
            || answer.constBegin().value() == REG_NODE_DEFAULT);
}
