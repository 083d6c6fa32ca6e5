// SPDX-License-Identifier: MIT

#include "registry/Place.h"

#include "registry/DefaultNode.h"
#include "registry/LiveTree.h"
#include "registry/RegistryKey.h"

namespace {

// Goes from a directory to its child of the current component. False when there is none declared.
bool enter(Place& place, KeyPieces const& pieces)
{
    QString const name = pieces.piece();
    DefaultNode const* const declared = place.declaration->child(name);
    DefaultNode const* const pattern = place.declaration->templateDirectory();
    place.live = place.live ? place.live->child(name) : nullptr;
    if (declared) {
        place.declaration = declared;
        place.isTemplate = place.isTemplate || isPlaceholder(name);
        return true;
    }
    if (!pattern || !isSessionName(name))
        return false;
    place.declaration = pattern;
    place.sessions.append(pieces.upToHere());
    place.exists = place.exists && place.live && place.live->isSession();
    return true;
}

} // namespace

bool Place::isSession(QString const& key) const
{
    return !sessions.isEmpty() && sessions.last() == key;
}

Place findPlace(DefaultNode const& declarations, LiveNode const& live, QString const& key)
{
    Place place;
    place.declaration = &declarations;
    place.live = &live;
    place.exists = true;
    KeyPieces pieces(key);
    while (pieces.next()) {
        if (!enter(place, pieces))
            return Place();
    }
    place.exists = place.exists && !place.isTemplate;
    return place;
}
