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

bool liesAtOrUnder(QString const& key, QString const& top)
{
    return key.startsWith(top)
        && (key.size() == top.size() || key.at(top.size()) == QLatin1Char('/'));
}

bool isOneValue(QMap<QString, _RegNodeType> const& answer)
{
    return answer.size() == 1
        && (answer.constBegin().value() == REG_NODE_VALUE
            || answer.constBegin().value() == REG_NODE_DEFAULT);
}
