// SPDX-License-Identifier: MIT

#include <vantora/vantora.h>

namespace {

int const kDone = 0;
int const kNoValue = 1;

} // namespace

Vantora::Vantora()
{
}

Vantora::~Vantora()
{
}

int Vantora::get(QString const& key, QString& out, _RegEntryParam const& param,
                 QString const& extra)
{
    QMap<QString, _RegNodeType> result;
    int const code = get(key, result, param, extra);
    if (code != kDone)
        return code;
    if (result.size() != 1)
        return kNoValue;
    QMap<QString, _RegNodeType>::const_iterator const answer = result.constBegin();
    if (answer.value() != REG_NODE_VALUE && answer.value() != REG_NODE_DEFAULT)
        return kNoValue;
    out = answer.key();
    return kDone;
}

int Vantora::get(QString const& key, int& out, _RegEntryParam const& param, QString const& extra)
{
    QString text;
    int const code = get(key, text, param, extra);
    if (code != kDone)
        return code;
    bool isNumber = false;
    int const number = text.toInt(&isNumber);
    if (!isNumber)
        return kNoValue;
    out = number;
    return kDone;
}
