#include "shell/CommandSource.h"

#include "shell/Printer.h"

#include <cstdio>

CommandSource::~CommandSource()
{
}

void CommandSource::readLine(QByteArray const& line, Input& input)
{
    input = Input();
    input.line = QString::fromUtf8(line.constData(), line.size());
    QString error;
    if (!readCommand(line, input.command, error))
        input.error = error;
}

ArgumentSource::ArgumentSource(QStringList const& arguments)
    : mCommands(commandsFromArguments(arguments))
{
}

bool ArgumentSource::next(Input& input)
{
    if (mCommands.isEmpty())
        return false;
    input = Input();
    input.command = mCommands.takeFirst();
    input.line = commandText(input.command);
    return true;
}

StreamSource::StreamSource()
{
    mFile.open(stdin, QIODevice::ReadOnly);
}

bool StreamSource::next(Input& input)
{
    QByteArray line = mFile.readLine();
    if (line.isEmpty())
        return false;
    if (line.endsWith('\n'))
        line.chop(1);
    readLine(line, input);
    return true;
}
