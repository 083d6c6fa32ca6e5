// SPDX-License-Identifier: MIT

#include "options/ExitStatus.h"
#include "shell/KeyNames.h"
#include "shell/TracedHost.h"
#include "shell/commands/Commands.h"

#include <QFile>

Reply Commands::exportXml(ShellState& shell, QStringList const& arguments)
{
    Reply reply(0, Reply::Text);
    QByteArray xml;
    reply.code = shell.host.exportRegistry(fullKey(arguments.value(0, QLatin1String("root"))), xml);
    reply.text = QString::fromUtf8(xml.constData(), xml.size());
    return reply;
}

Reply Commands::importXml(ShellState& shell, QStringList const& arguments)
{
    QFile file(arguments.at(0));
    if (!file.open(QIODevice::ReadOnly))
        return Reply(
            kNoInput,
            QString::fromLatin1("cannot read %1: %2").arg(file.fileName(), file.errorString()));
    QByteArray xml = file.readAll();
    return Reply(shell.host.importRegistry(xml));
}
