// SPDX-License-Identifier: MIT

#include "shell/ValueSource.h"

#include "registry/RegistryKey.h"
#include "shell/KeyNames.h"
#include "shell/Trace.h"
#include "shell/TracedHost.h"

int getWithSource(TracedHost& host, QString const& key, QMap<QString, _RegNodeType>& answer,
                  QString& source)
{
    QString told;
    host.trace().keepSource(&told);
    int const code = host.get(key, answer, REG_PARAM_VALUE, QString::fromLatin1(""));
    host.trace().keepSource(nullptr);
    if (code != 0 || !isOneValue(answer))
        return code;
    if (answer.constBegin().value() == REG_NODE_DEFAULT)
        source = QLatin1String("default");
    else
        source = host.pending().isPlugins(key) ? told : QString::fromLatin1("registry");
    return code;
}
