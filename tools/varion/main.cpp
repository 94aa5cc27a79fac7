// varion: the command-line face of the varion library.
#include "cli.h"

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string_view>

#ifndef VARION_VERSION
#define VARION_VERSION "unknown"
#endif

namespace {

constexpr const cli::Command* kCommands[] = {
    &cli::kConvertCommand,  &cli::kFormatCommand, &cli::kCalcCommand,   &cli::kCompareCommand,
    &cli::kUnitCommand,     &cli::kUnitsCommand,  &cli::kDateCommand,   &cli::kDurationCommand,
    &cli::kRecordCommand,   &cli::kHexCommand,    &cli::kDdtypeCommand, &cli::kDemoCommand,
};

constexpr const char* kCommonHelp =
    "\ncommon options:\n"
    "  --locale NAME  run in the user locale NAME (de-DE, de_DE.UTF-8, en-US, C): the\n"
    "                 decimal separator of number texts and the date texts follow it\n"
    "  --json         print each result as one JSON object on one line\n"
    "  --help         show this text\n"
    "exit status: 0 success, 1 the library answered a failure, 2 usage error\n";

void Help() {
    std::printf("usage: varion COMMAND [ARGS] [--locale NAME] [--json]\n\ncommands:\n");
    for (const cli::Command* c : kCommands) std::printf("  %-9s %s\n", c->name, c->summary);
    std::printf("\n'varion COMMAND --help' describes a command; 'varion --version' names the version.\n%s",
                kCommonHelp);
}

void CommandHelp(const cli::Command& command) { std::printf("%s%s", command.help, kCommonHelp); }

const cli::Command* Find(std::string_view name) {
    for (const cli::Command* c : kCommands)
        if (name == c->name) return c;
    return nullptr;
}

// The user locale for the run: LC_ALL in the environment, which the date
// services read on every call, and the C library's numeric locale from it.
// A name the C library lacks in that spelling is tried as <ll>_<CC>.UTF-8
// ("de-DE" as "de_DE.UTF-8"); when that fails too, numbers keep '.' and a
// warning says so.
void ApplyLocale(const std::string& name) {
    setenv("LC_ALL", name.c_str(), 1);
    if (std::setlocale(LC_NUMERIC, "") != nullptr) return;
    std::string candidate = name.substr(0, name.find_first_of(".@"));
    for (char& c : candidate)
        if (c == '-') c = '_';
    candidate += ".UTF-8";
    if (std::setlocale(LC_NUMERIC, candidate.c_str()) != nullptr) return;
    std::setlocale(LC_NUMERIC, "C");
    std::fprintf(stderr, "varion: warning: the C library has no locale '%s'; numbers are written with '.'\n",
                 cli::Quoted(name).c_str());
}

int Run(int argc, char** argv) {
    if (argc < 2) return cli::Usage("", "missing COMMAND (see 'varion --help')");
    const std::string_view name(argv[1]);
    if (name == "--version") {
        std::printf("varion %s\n", VARION_VERSION);
        return cli::kOk;
    }
    if (name == "--help" || name == "-h" || name == "help") {
        if (argc < 3) {
            Help();
            return cli::kOk;
        }
        const cli::Command* command = Find(argv[2]);
        if (command == nullptr) return cli::Usage("help", "unknown command '" + cli::Quoted(argv[2]) + "'");
        CommandHelp(*command);
        return cli::kOk;
    }
    const cli::Command* command = Find(name);
    if (command == nullptr) return cli::Usage("", "unknown command '" + cli::Quoted(name) + "' (see 'varion --help')");

    cli::Args args;
    std::string error;
    if (!args.Parse(argc, argv, 2, command->options, error)) return cli::Usage(command->name, error);
    if (args.Flag("help")) {
        CommandHelp(*command);
        return cli::kOk;
    }
    if (const auto locale = args.Value("locale")) {
        if (locale->empty()) return cli::Usage(command->name, "--locale needs a NAME");
        ApplyLocale(*locale);
    }
    return command->run(args);
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return Run(argc, argv);
    } catch (const std::exception& e) {
        // CString answers a failed allocation with std::bad_alloc.
        std::fprintf(stderr, "varion: %s\n", e.what());
        return cli::kFailure;
    }
}
