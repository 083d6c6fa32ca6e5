// SPDX-License-Identifier: MIT

#include "common/RegistryVocabulary.h"

namespace {

QStringList words(char const* commaSeparated)
{
    return QString::fromLatin1(commaSeparated).split(QLatin1Char(','));
}

} // namespace

namespace RegistryVocabulary {

QString const& viewPlaceholder()
{
    static QString const word = QLatin1String("{uuid}");
    return word;
}

QString const& registryPlaceholder()
{
    static QString const word = QLatin1String("{UUID}");
    return word;
}

QString const& rootWord()
{
    static QString const word = QLatin1String("root");
    return word;
}

QStringList const& nodeKinds()
{
    static QStringList const list = words("dir,key,value,default");
    return list;
}

QStringList const& entryParams()
{
    static QStringList const list = words("value,type,regexp");
    return list;
}

QStringList const& entryTypes()
{
    static QStringList const list = words("string,rc4,uuid,char,ipv4,number,float,date,bool");
    return list;
}

QStringList const& changeKinds()
{
    static QStringList const list = words("modified,created,deleted,nothing");
    return list;
}

QStringList const& trueWords()
{
    static QStringList const list = words("yes,true,on,1,ok");
    return list;
}

QStringList const& falseWords()
{
    static QStringList const list = words("no,false,off,0,ko");
    return list;
}

} // namespace RegistryVocabulary
