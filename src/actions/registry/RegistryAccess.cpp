// SPDX-License-Identifier: MIT

#include "actions/registry/RegistryAccess.h"

#include "actions/ActionKit.h"
#include "common/RegistryVocabulary.h"
#include "common/Text.h"

#include <vantora/vantora.h>

bool readRegistry(QString const& key, _RegEntryParam param, QString& out)
{
    return ActionKit::instance()->vantoraBackend()->get(key, out, param, emptyText()) == 0;
}

bool isFalseWord(QString const& text)
{
    return RegistryVocabulary::falseWords().contains(text);
}

QString boolWord(QString const& text)
{
    return QLatin1String(isFalseWord(text) ? "false" : "true");
}
