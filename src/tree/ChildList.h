// SPDX-License-Identifier: MIT

#pragma once

#include <QHash>
#include <QList>
#include <QScopedPointer>
#include <QString>

class IConfigEntry;

/// The children of a branch in order, found by name and by identity. Owns none of them.
///
/// A short list is searched as it stands. A long one carries an index, so that adding, finding and
/// removing a child takes the same time whatever its length.
class ChildList
{
public:
    ChildList() { }

    bool isEmpty() const { return mEntries.size() == mGaps; }

    /// All children, in the order in which they were appended.
    QList<IConfigEntry*> const& entries() const;

    /// The first child of that name; null when there is none.
    IConfigEntry* find(QString const& name) const;

    /// `entry` must not be in the list yet.
    void append(IConfigEntry* entry);

    /// @return false when `entry` is not in the list.
    bool remove(IConfigEntry* entry);

    /// To be told whenever a child has got another name.
    void renamed(IConfigEntry* entry);

private:
    Q_DISABLE_COPY(ChildList)

    /// Where a child stands, and under which name it is found.
    struct Place
    {
        int position;
        QString name;
    };

    struct Index
    {
        QMultiHash<QString, IConfigEntry*> byName;
        QHash<IConfigEntry const*, Place> places;
    };

    void buildIndex();
    void addToIndex(int position);
    void closeGaps() const;

    // An indexed list leaves a null where a child was removed, so that the positions of the others
    // stay; the gaps are closed when somebody looks, or when half the list is gaps.
    mutable QList<IConfigEntry*> mEntries;
    mutable int mGaps = 0;
    QScopedPointer<Index> mIndex;
};
