// SPDX-License-Identifier: MIT

#include "doctor/Options.h"

#include "options/ExitStatus.h"
#include "options/OptionTexts.h"

#include <string>
#include <vector>

#include <CLI/CLI.hpp>

namespace {

char const* const kFile = "FILE";
char const* const kDirectory = "DIR";

char const* const kDescription
    = "Tells what stands behind the keys of the view: which action serves each operation, which "
      "registry keys and wrapper scripts take part, and what is wrong with the scripts.";

char const* const kExplain
    = "Where a key's value comes from. KEY is a key of the view, its session a UUID or {uuid}";
char const* const kCheck
    = "What is wrong with the wrappers of a base directory: scripts that would not start and so "
      "count as successful, lines that an environment file ignores, names that nothing looks for";
char const* const kMap = "The whole view, and what stands behind each key where no script does";

char const* const kExitStatus
    = "Exit status: 0 nothing is wrong, notes apart, 1 something is (explain: or there "
      "is no such key), 2 it could not be told.";

// What CLI11 fills, in its own types.
struct RawOptions
{
    std::vector<std::string> defaults;
    std::vector<std::string> keys;
    std::string baseDir;
    std::string checkedDir;
    std::string registryFile;
};

void declareOptions(CLI::App& app, RawOptions& raw, Options& options)
{
    CLI::MultiOptionPolicy const takeLast = CLI::MultiOptionPolicy::TakeLast;
    app.add_option("--base-dir", raw.baseDir,
                   "The plugin's base directory: holds wrappers/ and may hold defaults/ "
                   "(that of the installation if not given, or the working directory)")
        ->type_name(kDirectory)
        ->multi_option_policy(takeLast);
    app.add_option("--defaults", raw.defaults,
                   "A directory of default settings (repeatable; those shipped if not given)")
        ->type_name(kDirectory)
        ->allow_extra_args(false);
    app.add_option("--registry", raw.registryFile,
                   "The database of the live values, for explain --run (none if not given)")
        ->type_name(kFile)
        ->multi_option_policy(takeLast);
    app.add_flag("--json", options.json, "Answer in JSON, one object a line");
    app.set_version_flag("--version", std::string("zelvo-view-doctor " DOCTOR_VERSION));
    app.footer(kExitStatus);
    // The options may stand behind the command, too.
    app.fallthrough();
    app.require_subcommand(1);
}

void declareCommands(CLI::App& app, RawOptions& raw, Options& options)
{
    CLI::App* const explain = app.add_subcommand("explain", kExplain);
    explain->add_option("KEY", raw.keys, "zelvo-view/usb/enable, say")->required();
    explain->add_flag("--run", options.run,
                      "Run what only reads, isVisible.sh and get.sh, and tell what it answered");
    explain->callback([&options] { options.command = Options::Explain; });

    CLI::App* const check = app.add_subcommand("check", kCheck);
    check->add_option("DIR", raw.checkedDir, "The base directory, in place of that of --base-dir");
    check->callback([&options] { options.command = Options::Check; });

    CLI::App* const map = app.add_subcommand("map", kMap);
    map->add_flag("--markdown", options.markdown, "As a document");
    map->callback([&options] { options.command = Options::Map; });
}

} // namespace

Options::Options()
    : command(Map)
    , json(false)
    , run(false)
    , markdown(false)
{
}

bool readOptions(int argc, char** argv, Options& options, int& exitStatus)
{
    CLI::App app(kDescription, "zelvo-view-doctor");
    RawOptions raw;
    declareOptions(app, raw, options);
    declareCommands(app, raw, options);
    try {
        app.parse(argc, argv);
    } catch (CLI::ParseError const& outcome) {
        exitStatus = app.exit(outcome) == 0 ? 0 : kDoctorUsageError;
        return false;
    }
    options.defaults = optionTexts(raw.defaults);
    options.keys = optionTexts(raw.keys);
    options.baseDir = optionText(raw.checkedDir.empty() ? raw.baseDir : raw.checkedDir);
    options.registryFile = optionText(raw.registryFile);
    return true;
}
