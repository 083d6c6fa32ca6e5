// SPDX-License-Identifier: MIT

#include "shell/Options.h"

#include "options/ExitStatus.h"
#include "options/OptionTexts.h"
#include "shell/Printer.h"

#include <string>
#include <vector>

#include <CLI/CLI.hpp>

namespace {

int const kLongestTimeoutSeconds = 24 * 60 * 60;

char const* const kFile = "FILE";
char const* const kDirectory = "DIR";

char const* const kDescription
    = "Takes commands for the configuration registry and its plugins: from the arguments, "
      "separated by \";\", from standard input when there are none or the argument is \"-\", or at "
      "a prompt when standard input is a terminal. The command \"help\" lists the commands.";

// What CLI11 fills, in its own types.
struct RawOptions
{
    std::vector<std::string> plugins;
    std::vector<std::string> defaults;
    std::string baseDir;
    std::string registryFile;
};

void declareOptions(CLI::App& app, RawOptions& raw, Options& options)
{
    CLI::MultiOptionPolicy const takeLast = CLI::MultiOptionPolicy::TakeLast;
    // One value each time: what follows it may be a command.
    app.add_option("--plugin", raw.plugins,
                   "A plugin to load (repeatable; those installed if not given)")
        ->type_name(kFile)
        ->allow_extra_args(false);
    app.add_option("--base-dir", raw.baseDir,
                   "The plugins' base directory: holds wrappers/ and may hold defaults/ "
                   "(that of the installation if not given, or the working directory)")
        ->type_name(kDirectory)
        ->multi_option_policy(takeLast);
    app.add_option(
           "--registry", raw.registryFile,
           "The database of the live values; \":memory:\" keeps none (that of the installation "
           "if not given, or none)")
        ->type_name(kFile)
        ->multi_option_policy(takeLast);
    app.add_option("--defaults", raw.defaults,
                   "A directory of default settings (repeatable; those shipped if not given)")
        ->type_name(kDirectory)
        ->allow_extra_args(false);
    app.add_option("--timeout", options.timeoutSeconds,
                   "How many seconds \"apply\" waits for its end")
        ->capture_default_str()
        ->check(CLI::Range(0, kLongestTimeoutSeconds))
        ->multi_option_policy(takeLast);
    app.add_flag("--json", options.json, "Answer with one JSON object a command");
    app.add_flag("--keep-going", options.keepGoing, "Go on after a command that failed");
    app.add_flag("--verbose", options.verbose, "Say what each request answered and took");
    app.add_flag("--trace", options.trace,
                 "Show on standard error the backend calls, script runs and D-Bus calls that each "
                 "command leads to (with --json: one JSON object each)");
    app.add_flag("--echo", options.echo, "Repeat each line of input before its answer");
    app.set_version_flag("--version", std::string("vantora-shell " SHELL_VERSION));
}

} // namespace

bool readOptions(int argc, char** argv, Options& options, int& exitStatus)
{
    CLI::App app(kDescription, "vantora-shell");
    RawOptions raw;
    declareOptions(app, raw, options);
    // From the first command on, nothing is an option: a value may begin with "-".
    app.prefix_command();
    try {
        app.parse(argc, argv);
    } catch (CLI::ParseError const& outcome) {
        exitStatus = app.exit(outcome) == 0 ? 0 : kUsageError;
        return false;
    }
    options.plugins = optionTexts(raw.plugins);
    options.defaults = optionTexts(raw.defaults);
    options.baseDir = optionText(raw.baseDir);
    options.registryFile = optionText(raw.registryFile);
    options.words = optionTexts(app.remaining());
    QString const first = options.words.value(0);
    if (first.size() > 1 && first.startsWith(QLatin1Char('-'))) {
        writeMessage(shownText(first) + QLatin1String(": unknown option (see --help)"));
        exitStatus = kUsageError;
        return false;
    }
    return true;
}
