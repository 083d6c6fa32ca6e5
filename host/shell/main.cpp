// SPDX-License-Identifier: MIT

#include "installation/Installation.h"
#include "loader/PluginLoader.h"
#include "options/ExitStatus.h"
#include "registry/DefaultsDirectories.h"
#include "registry/RegistryHost.h"
#include "shell/CommandSource.h"
#include "shell/Events.h"
#include "shell/Interrupt.h"
#include "shell/Options.h"
#include "shell/Printer.h"
#include "shell/Prompt.h"
#include "shell/Shell.h"
#include "shell/Terminal.h"
#include "shell/Trace.h"
#include "shell/TracedHost.h"

#include <vantora/abstractplugin.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QScopedPointer>
#include <QVariant>

#include <cstdlib>

#include <unistd.h>

namespace {

char const* const kInMemory = ":memory:";

/// Has a plugin tell what it does beside its backend calls, if it can.
void reportActivity(AbstractPlugin& plugin, Trace& trace)
{
    if (QObject* const object = dynamic_cast<QObject*>(&plugin))
        object->setProperty(kListenerProperty, QVariant::fromValue<QObject*>(&trace));
}

// What the command line left open is taken from where the program is installed.
void completeFromInstallation(Options& options)
{
    Installation const installation;
    if (!installation.exists())
        return;
    if (options.plugins.isEmpty())
        options.plugins = installation.plugins();
    if (options.baseDir.isEmpty())
        options.baseDir = installation.baseDir();
    if (options.registryFile.isEmpty()) {
        options.registryFile = installation.registryFile();
        // If this fails, opening the file says so.
        static_cast<void>(QDir().mkpath(QFileInfo(options.registryFile).path()));
    }
}

bool loadPlugins(Options const& options, QString const& baseDir, PluginLoader& loader,
                 RegistryHost& host, TracedHost& tracedHost, QString& error)
{
    for (QString const& file : options.plugins) {
        AbstractPlugin* const plugin = loader.load(file, error);
        if (!plugin)
            return false;
        reportActivity(*plugin, tracedHost.trace());
        plugin->pluginIsLoaded(tracedHost, host.defaultSettings(),
                               QCoreApplication::applicationName(), baseDir);
        host.addPlugin(*plugin);
        tracedHost.pending().addPluginRoot(plugin->rootDir());
    }
    return true;
}

bool startHost(Options const& options, PluginLoader& loader, RegistryHost& host,
               TracedHost& tracedHost, QString& error)
{
    QString const baseDir = QDir::cleanPath(QDir::current().absoluteFilePath(options.baseDir));
    QStringList const directories = defaultsDirectories(options.defaults, baseDir);
    for (QString const& directory : directories) {
        if (!host.loadDefaults(directory, error))
            return false;
    }
    QString const registryFile
        = options.registryFile.isEmpty() ? QString::fromLatin1(kInMemory) : options.registryFile;
    return host.open(registryFile, error)
        && loadPlugins(options, baseDir, loader, host, tracedHost, error);
}

QString historyFile(Options const& options)
{
    if (options.registryFile.isEmpty() || options.registryFile == QLatin1String(kInMemory))
        return QString();
    return options.registryFile + QLatin1String(".history");
}

bool takesStandardInput(Options const& options)
{
    return options.words.isEmpty() || options.words == QStringList(QLatin1String("-"));
}

bool isAtPrompt(Options const& options)
{
    return options.words.isEmpty() && isatty(STDIN_FILENO) != 0;
}

/// The caller owns the answer.
CommandSource* makeSource(Options const& options, Vantora& host)
{
    if (isAtPrompt(options))
        return new Prompt(host, historyFile(options));
    if (takesStandardInput(options))
        return new StreamSource;
    return new ArgumentSource(options.words);
}

/// The caller owns the answer.
Printer* makePrinter(Options const& options)
{
    return options.json ? static_cast<Printer*>(new JsonPrinter) : new TextPrinter;
}

int carryOut(CommandSource::Input const& input, Shell& shell)
{
    return input.error.isNull() ? shell.execute(input.command)
                                : shell.refuse(input.line, input.error);
}

bool isEmpty(CommandSource::Input const& input)
{
    return input.error.isNull() && input.command.name.isEmpty()
        && input.command.arguments.isEmpty();
}

void echoInput(CommandSource::Input const& input)
{
    writeOutput(QLatin1String(isEmpty(input) ? "" : "> ") + input.line + QLatin1Char('\n'));
}

Trace::Format traceFormat(Options const& options)
{
    if (!options.trace)
        return Trace::Silent;
    return options.json ? Trace::JsonLines : Trace::Text;
}

/// @return the code of the last command, or of the first that failed.
int runCommands(CommandSource& source, Shell& shell, Options const& options)
{
    bool const keepGoing = options.keepGoing || isAtPrompt(options);
    int code = 0;
    CommandSource::Input input;
    while ((code == 0 || keepGoing) && !shell.isFinished() && source.next(input)) {
        if (options.echo)
            echoInput(input);
        if (isEmpty(input))
            continue;
        int const result = carryOut(input, shell);
        serveEvents();
        // Leaving says nothing about what was done before.
        if (!shell.isFinished())
            code = result;
    }
    return code;
}

/// @return the exit status of the program.
int serve(Options const& options)
{
    // In this order: the plugins go before the host that serves them.
    Trace trace(traceFormat(options));
    RegistryHost host;
    TracedHost tracedHost(host, trace);
    PluginLoader loader;
    QString error;
    if (!startHost(options, loader, host, tracedHost, error)) {
        writeMessage(QLatin1String("vantora-shell: ") + error);
        return kHostUnavailable;
    }

    QScopedPointer<Printer> const printer(makePrinter(options));
    QScopedPointer<CommandSource> source(makeSource(options, host));
    Shell shell(tracedHost, *printer, options.timeoutSeconds);
    shell.setVerbose(options.verbose);
    shell.setProgressShown(!options.trace && Terminal::sShowsProgress());
    if (isAtPrompt(options))
        catchInterrupts();
    int const code = runCommands(*source, shell, options);
    if (shell.hasUnfinishedApply()) {
        // Its threads still use the host: nothing may be taken down under them. What was committed
        // is on disk already.
        source.reset();
        std::_Exit(code);
    }
    return code;
}

} // namespace

int main(int argc, char** argv)
{
    Options options;
    int exitStatus = 0;
    if (!readOptions(argc, argv, options, exitStatus))
        return exitStatus;

    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QLatin1String("vantora-shell"));
    completeFromInstallation(options);
    return serve(options);
}
