// SPDX-License-Identifier: MIT

#include "doctor/ViewMap.h"

#include "doctor/ExaminedView.h"
#include "registry/RegistryKey.h"

namespace {

MapRow rowOf(ExaminedEntry const& entry)
{
    MapRow row;
    row.viewKey = entry.viewKey();
    row.kind = entry.kind();
    row.type = entry.type();
    row.defaultValue = entry.defaultValue();
    row.backEnd = nullptr;
    for (Operation const& operation : operations()) {
        ActionDescription const description = entry.description(operation);
        if (!operation.isFor(row.kind) || !description.backEnd)
            continue;
        row.operations.append(QLatin1String(operation.name));
        if (!row.backEnd) {
            row.backEnd = description.backEnd;
            row.registryKeys = description.registryKeys;
        }
    }
    return row;
}

void addRows(ExaminedView& view, QString const& key, QList<MapRow>& rows)
{
    ExaminedEntry const entry(view, key);
    if (!entry.isKnown())
        return;
    MapRow const row = rowOf(entry);
    if (row.kind == ValueKey || row.backEnd)
        rows.append(row);
    if (row.kind == ValueKey)
        return;
    QStringList const names = view.namesBelow(key);
    for (QString const& name : names)
        addRows(view, childKey(key, name), rows);
}

} // namespace

QList<MapRow> viewMap(ExaminedView& view)
{
    QList<MapRow> rows;
    addRows(view, view.rootKey(), rows);
    return rows;
}
