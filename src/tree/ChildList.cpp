// SPDX-License-Identifier: MIT

#include "tree/ChildList.h"

#include "tree/IConfigEntry.h"

namespace {

// Below this a walk over the list is as quick as the index, and most branches are below it.
int const kIndexedLength = 32;

} // namespace

QList<IConfigEntry*> const& ChildList::entries() const
{
    if (mGaps > 0)
        closeGaps();
    return mEntries;
}

IConfigEntry* ChildList::find(QString const& name) const
{
    if (!mIndex) {
        // A constant list: walking over the mutable one would copy it.
        QList<IConfigEntry*> const& entries = mEntries;
        for (IConfigEntry* const entry : entries) {
            if (entry->name() == name)
                return entry;
        }
        return nullptr;
    }

    IConfigEntry* first = nullptr;
    QMultiHash<QString, IConfigEntry*>::const_iterator match = mIndex->byName.constFind(name);
    for (; match != mIndex->byName.constEnd() && match.key() == name; ++match) {
        IConfigEntry* const entry = match.value();
        if (!first || mIndex->places[entry].position < mIndex->places[first].position)
            first = entry;
    }
    return first;
}

void ChildList::append(IConfigEntry* entry)
{
    mEntries.append(entry);
    if (mIndex)
        addToIndex(mEntries.size() - 1);
    else if (mEntries.size() >= kIndexedLength)
        buildIndex();
}

bool ChildList::remove(IConfigEntry* entry)
{
    if (!mIndex)
        return mEntries.removeOne(entry);

    QHash<IConfigEntry const*, Place>::iterator const place = mIndex->places.find(entry);
    if (place == mIndex->places.end())
        return false;
    mEntries[place->position] = nullptr;
    ++mGaps;
    mIndex->byName.erase(mIndex->byName.find(place->name, entry));
    mIndex->places.erase(place);
    if (mGaps > mEntries.size() / 2)
        closeGaps();
    return true;
}

void ChildList::renamed(IConfigEntry* entry)
{
    if (!mIndex)
        return;
    QHash<IConfigEntry const*, Place>::iterator const place = mIndex->places.find(entry);
    if (place == mIndex->places.end())
        return;
    mIndex->byName.erase(mIndex->byName.find(place->name, entry));
    place->name = entry->name();
    mIndex->byName.insert(place->name, entry);
}

void ChildList::buildIndex()
{
    mIndex.reset(new Index);
    for (int position = 0; position < mEntries.size(); ++position)
        addToIndex(position);
}

void ChildList::addToIndex(int position)
{
    IConfigEntry* const entry = mEntries.at(position);
    Place const place = {position, entry->name()};
    mIndex->places.insert(entry, place);
    mIndex->byName.insert(place.name, entry);
}

void ChildList::closeGaps() const
{
    mEntries.removeAll(nullptr);
    mGaps = 0;
    for (int position = 0; position < mEntries.size(); ++position)
        mIndex->places[mEntries.at(position)].position = position;
}
