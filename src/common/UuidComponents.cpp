#include "common/UuidComponents.h"

#include <QUuid>

namespace {

QChar const kSeparator = QLatin1Char('/');

struct Span
{
    int begin;
    int end;
};

/// Where the first UUID component of `path` stands; an empty span at its end when there is none.
Span findUuid(QString const& path)
{
    for (int begin = 0; begin <= path.size();) {
        int const separator = path.indexOf(kSeparator, begin);
        int const end = separator < 0 ? path.size() : separator;
        if (isUuidComponent(path.mid(begin, end - begin)))
            return {begin, end};
        begin = end + 1;
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
    Span const uuid = findUuid(path);
    return uuid.begin == uuid.end ? QString() : path.mid(uuid.begin, uuid.end - uuid.begin);
}

QString pathToFirstUuid(QString const& path)
{
    return path.left(findUuid(path).end);
}
