// SPDX-License-Identifier: MIT

#include "doctor/RegistryKeys.h"

#include "common/RegistryVocabulary.h"
#include "common/Text.h"
#include "common/UuidComponents.h"
#include "doctor/ExaminedView.h"
#include "doctor/Names.h"
#include "registry/RegistryKey.h"
#include "registry/TemporaryKeys.h"

#include <vantora/registry.h>

namespace {

bool isAnySession(QString const& name)
{
    return isPlaceholder(name) || isUuidComponent(name);
}

/// The name among `known` under which `name` is declared; null when there is none.
QString declaredName(QString const& name, QStringList const& known)
{
    if (known.contains(name))
        return name;
    if (!isAnySession(name))
        return QString();
    for (QString const& candidate : known) {
        if (isPlaceholder(candidate))
            return candidate;
    }
    return QString();
}

/// Follows a key as far as it is declared.
struct Walk
{
    Walk(ExaminedView& view, QString const& key)
    {
        KeyPieces pieces(key);
        bool isFirst = true;
        while (pieces.next()) {
            QString const name = isFirst ? pieces.piece()
                                         : declaredName(pieces.piece(), view.namesBelow(declared));
            if (name.isNull()) {
                unknown = pieces.piece();
                return;
            }
            declared = isFirst ? name : childKey(declared, name);
            typed = pieces.upToHere();
            isFirst = false;
        }
    }

    /// The part that is declared: as it is declared, and as it stands in the key.
    QString declared;
    QString typed;
    /// The first name that is not; null when there is none.
    QString unknown;
};

} // namespace

KeyKnowledge knowledgeOf(ExaminedView& view, QString const& key)
{
    if (TemporaryKeys::sOwns(key))
        return TemporaryKey;
    Walk const walk(view, key);
    Reg::NodeSet nodes;
    if (!walk.unknown.isNull()
        || view.defaultSettings().query(walk.declared, nodes, emptyText()) != 0)
        return UnknownKey;
    bool const isValue = nodes.size() == 1 && nodes.at(0)->absoluteName() == walk.declared;
    return isValue ? DeclaredValue : DirectoryKey;
}

QString likelyKey(ExaminedView& view, QString const& key)
{
    Walk const walk(view, key);
    if (walk.unknown.isNull())
        return QString();
    QString const name = likelyMeant(walk.unknown, view.namesBelow(walk.declared));
    if (name.isNull())
        return QString();
    // What follows the mistaken name may be right.
    QString const rest = key.mid(walk.typed.size() + 1 + walk.unknown.size());
    return childKey(walk.typed, name) + rest;
}
