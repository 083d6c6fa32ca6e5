// SPDX-License-Identifier: MIT

#include "registry/ValueType.h"

#include <QDate>
#include <QStringList>
#include <QUuid>

#include <cmath>

namespace {

struct TypeRow
{
    char const* word;
    bool (*admits)(QString const& text);
};

bool isAsciiDigit(QChar character)
{
    return character >= QLatin1Char('0') && character <= QLatin1Char('9');
}

bool consistsOf(QString const& text, char const* further)
{
    QString const allowed = QLatin1String(further);
    for (int i = 0; i < text.size(); ++i) {
        if (!isAsciiDigit(text.at(i)) && !allowed.contains(text.at(i)))
            return false;
    }
    return true;
}

bool anyText(QString const&)
{
    return true;
}

bool isUuid(QString const& text)
{
    return text.isEmpty() || !QUuid(text).isNull();
}

bool isOneCharacter(QString const& text)
{
    bool const isPair
        = text.size() == 2 && text.at(0).isHighSurrogate() && text.at(1).isLowSurrogate();
    return text.size() == 1 || isPair;
}

bool isOctet(QString const& text)
{
    int const longest = 3;
    int const largest = 255;
    if (text.isEmpty() || text.size() > longest || !consistsOf(text, ""))
        return false;
    bool const hasLeadingZero = text.size() > 1 && text.at(0) == QLatin1Char('0');
    return !hasLeadingZero && text.toInt() <= largest;
}

bool isIpv4(QString const& text)
{
    if (text.isEmpty())
        return true;
    QString const longest = QLatin1String("255.255.255.255");
    if (text.size() > longest.size())
        return false;
    QStringList const octets = text.split(QLatin1Char('.'));
    if (octets.size() != 4)
        return false;
    for (QString const& octet : octets) {
        if (!isOctet(octet))
            return false;
    }
    return true;
}

// The toolkit's conversions let blanks and the like pass: the characters are looked at first.
bool isNumber(QString const& text)
{
    bool isInteger = false;
    if (consistsOf(text, "+-"))
        static_cast<void>(text.toLongLong(&isInteger));
    return isInteger;
}

bool isFloat(QString const& text)
{
    bool isReal = false;
    double const number = consistsOf(text, "+-.eE") ? text.toDouble(&isReal) : 0.0;
    return isReal && std::isfinite(number);
}

bool isDate(QString const& text)
{
    QString const format = QLatin1String("yyyy-MM-dd");
    if (text.isEmpty())
        return true;
    return text.size() == format.size() && consistsOf(text, "-")
        && QDate::fromString(text, format).isValid();
}

bool isBool(QString const& text)
{
    static char const* const words[]
        = {"yes", "true", "on", "1", "ok", "no", "false", "off", "0", "ko"};
    for (char const* word : words) {
        if (text == QLatin1String(word))
            return true;
    }
    return false;
}

// By _RegEntryType.
// clang-format off
TypeRow const kTypes[] = {
    {"string", anyText},
    {"rc4",    anyText},
    {"uuid",   isUuid},
    {"char",   isOneCharacter},
    {"ipv4",   isIpv4},
    {"number", isNumber},
    {"float",  isFloat},
    {"date",   isDate},
    {"bool",   isBool},
};
// clang-format on

int const kTypeCount = sizeof(kTypes) / sizeof(kTypes[0]);

} // namespace

QString typeWord(_RegEntryType type)
{
    return QLatin1String(kTypes[type].word);
}

bool typeFromWord(QString const& word, _RegEntryType& type)
{
    for (int i = 0; i < kTypeCount; ++i) {
        if (word == QLatin1String(kTypes[i].word)) {
            type = static_cast<_RegEntryType>(i);
            return true;
        }
    }
    return false;
}

bool typeAdmits(_RegEntryType type, QString const& text)
{
    return kTypes[type].admits(text);
}
