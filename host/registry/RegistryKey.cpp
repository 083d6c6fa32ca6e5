// SPDX-License-Identifier: MIT

#include "registry/RegistryKey.h"

#include <QUuid>

namespace {

QChar const kSeparator = QLatin1Char('/');

ushort const kFirstPrintable = 0x20;
ushort const kFirstNonCharacter = 0xfffe;

} // namespace

bool isAtOrUnder(QString const& key, QString const& root)
{
    if (!key.startsWith(root))
        return false;
    return key.size() == root.size() || key.at(root.size()) == kSeparator;
}

bool isAtOrUnderOneOf(QString const& key, QStringList const& roots)
{
    for (QString const& root : roots) {
        if (isAtOrUnder(key, root))
            return true;
    }
    return false;
}

QString childKey(QString const& directory, QString const& name)
{
    return directory + kSeparator + name;
}

bool isPlaceholder(QString const& name)
{
    return name == QLatin1String("{UUID}") || name == QLatin1String("{uuid}");
}

bool isSessionName(QString const& name)
{
    return !QUuid(name).isNull() && isXmlText(name);
}

bool isXmlText(QString const& text)
{
    for (int i = 0; i < text.size(); ++i) {
        QChar const character = text.at(i);
        if (character.isHighSurrogate()) {
            if (i + 1 == text.size() || !text.at(i + 1).isLowSurrogate())
                return false;
            ++i;
        } else if (character.isLowSurrogate() || character.unicode() < kFirstPrintable
                   || character.unicode() >= kFirstNonCharacter) {
            return false;
        }
    }
    return true;
}

KeyPieces::KeyPieces(QString const& key)
    : mKey(key)
{
}

bool KeyPieces::next()
{
    if (isLast())
        return false;
    mBegin = mEnd + 1;
    mEnd = mKey.indexOf(kSeparator, mBegin);
    if (mEnd < 0)
        mEnd = mKey.size();
    return true;
}
