// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringList>

#include <string>
#include <vector>

// The options of a program as its library for them has them, in the toolkit's types. Their bytes
// are UTF-8 on every version of Qt, unlike those that QString::fromStdString takes.

inline QString optionText(std::string const& utf8)
{
    return QString::fromUtf8(utf8.data(), int(utf8.size()));
}

inline QStringList optionTexts(std::vector<std::string> const& utf8)
{
    QStringList result;
    for (std::string const& item : utf8)
        result.append(optionText(item));
    return result;
}
