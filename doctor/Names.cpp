// SPDX-License-Identifier: MIT

#include "doctor/Names.h"

#include <algorithm>

namespace {

// A shorter word, "get.sh" included, is one letter away from many others.
int const kShortestForOneLetter = 6;

/// Its letters and digits, in lower case.
QString simplified(QString const& name)
{
    QString result;
    for (QChar const c : name) {
        if (c.isLetterOrNumber())
            result.append(c.toLower());
    }
    return result;
}

QString sorted(QString text)
{
    std::sort(text.begin(), text.end());
    return text;
}

/// Whether one letter more, less or other makes one of the other.
bool isOneLetterAway(QString const& a, QString const& b)
{
    if (qAbs(a.size() - b.size()) > 1)
        return false;
    int head = 0;
    while (head < qMin(a.size(), b.size()) && a.at(head) == b.at(head))
        ++head;
    int tail = 0;
    while (tail < qMin(a.size(), b.size()) - head
           && a.at(a.size() - 1 - tail) == b.at(b.size() - 1 - tail))
        ++tail;
    return qMax(a.size(), b.size()) - head - tail <= 1;
}

bool isLike(QString const& name, QString const& known)
{
    QString const a = simplified(name);
    QString const b = simplified(known);
    return a == b || sorted(a) == sorted(b)
        || (qMin(a.size(), b.size()) >= kShortestForOneLetter && isOneLetterAway(a, b));
}

} // namespace

QString likelyMeant(QString const& name, QStringList const& known)
{
    if (known.contains(name))
        return QString();
    for (QString const& candidate : known) {
        if (isLike(name, candidate))
            return candidate;
    }
    return QString();
}

QString didYouMean(QString const& likely)
{
    return likely.isNull() ? QString() : QString::fromLatin1("; did you mean %1?").arg(likely);
}
