// SPDX-License-Identifier: MIT

#include "tree/KeyPath.h"

namespace {

QChar const kSeparator = QLatin1Char('/');

} // namespace

KeyPath::KeyPath(QString const& path)
    : mPath(path)
{
}

KeyPath::KeyPath(QLatin1String const& path)
    : mPath(path)
{
}

KeyPath::KeyPath(char const* path)
    : mPath(QString::fromLatin1(path))
{
}

QString KeyPath::basename() const
{
    return mPath.mid(mPath.lastIndexOf(kSeparator) + 1);
}

KeyPath KeyPath::dirname() const
{
    int const separator = mPath.lastIndexOf(kSeparator);
    return separator < 0 ? KeyPath() : KeyPath(mPath.left(separator));
}

QStringList KeyPath::splitEntryNames() const
{
    QStringList names;
    int begin = 0;
    while (begin < mPath.size()) {
        int const separator = mPath.indexOf(kSeparator, begin);
        int const end = separator < 0 ? mPath.size() : separator;
        if (end > begin)
            names.append(mPath.mid(begin, end - begin));
        begin = end + 1;
    }
    return names;
}

bool KeyPath::isRootOf(QString const& other) const
{
    if (other.size() == mPath.size())
        return other == mPath;
    return other.size() > mPath.size() && other.at(mPath.size()) == kSeparator
        && other.startsWith(mPath);
}

KeyPath& KeyPath::removeRoot(QString const& root)
{
    if (KeyPath(root).isRootOf(mPath))
        mPath.remove(0, root.size());
    return *this;
}
