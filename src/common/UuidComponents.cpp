// SPDX-License-Identifier: MIT

#include "common/UuidComponents.h"

#include "common/RegistryVocabulary.h"

#include <QUuid>

namespace {

QChar const kSeparator = QLatin1Char('/');

// Nothing shorter parses as a UUID, and most components are shorter: they need not be copied.
int const kShortestUuid = 36;

struct Span
{
    bool isEmpty() const { return begin == end; }
    int size() const { return end - begin; }

    int begin;
    int end;
};

/// Where the first UUID component at or behind `begin`, the place of a component, stands; an empty
/// span at the end of `path` when there is none.
Span findUuid(QString const& path, int begin)
{
    while (begin + kShortestUuid <= path.size()) {
        int const separator = path.indexOf(kSeparator, begin);
        Span const component = {begin, separator < 0 ? path.size() : separator};
        if (component.size() >= kShortestUuid
            && isUuidComponent(path.mid(component.begin, component.size())))
            return component;
        begin = component.end + 1;
    }
    return {path.size(), path.size()};
}

} // namespace

bool isUuidComponent(QString const& component)
{
    return !QUuid(component).isNull();
}

QString firstUuidComponent(QString const& path)
{
    Span const uuid = findUuid(path, 0);
    return uuid.isEmpty() ? QString() : path.mid(uuid.begin, uuid.size());
}

QString pathToFirstUuid(QString const& path)
{
    return path.left(findUuid(path, 0).end);
}

QString replaceUuidComponents(QString const& path, QString const& replacement)
{
    Span uuid = findUuid(path, 0);
    if (uuid.isEmpty())
        return path;
    QString result;
    result.reserve(path.size());
    int copied = 0;
    for (; !uuid.isEmpty(); uuid = findUuid(path, uuid.end + 1)) {
        result.append(path.midRef(copied, uuid.begin - copied));
        result.append(replacement);
        copied = uuid.end;
    }
    return result.append(path.midRef(copied));
}

QString generalisedPath(QString const& path)
{
    return replaceUuidComponents(path, RegistryVocabulary::viewPlaceholder());
}
