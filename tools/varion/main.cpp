// varion: the command-line face of the varion library.
#include "cli.h"

#include <cstdio>
#include <string_view>

namespace {

struct Command {
    const char* name;
    int (*run)(const cli::Args&);
    const char* summary;
};

constexpr Command kCommands[] = {
    {"convert", cli::Convert, "convert a value to another type"},
    {"calc", cli::Calc, "compute A OP B across mixed types"},
    {"compare", cli::Compare, "compare A OP B across mixed types"},
    {"date", cli::Date, "parse a date text and show its fields and text forms"},
    {"duration", cli::Duration, "parse a duration text and show its components and text forms"},
    {"demo", cli::Demo, "walk through the typical use of a parameter value"},
    {"format", cli::Format, "render a value under a display format"},
    {"unit", cli::Unit, "convert a number between engineering unit codes"},
    {"units", cli::Units, "list the engineering unit codes"},
    {"hex", cli::Hex, "write a value as hexadecimal digits, or read digits back"},
    {"record", cli::Record, "write a value as a byte record, or read a record back"},
};

void Help() {
    std::printf("usage: varion COMMAND [ARGS]\n\ncommands:\n");
    for (const Command& c : kCommands) std::printf("  %-10s %s\n", c.name, c.summary);
    std::printf("\n'varion COMMAND --help' describes a command.\n");
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        Help();
        return cli::kUsage;
    }
    const std::string_view name(argv[1]);
    if (name == "--help" || name == "-h" || name == "help") {
        Help();
        return cli::kOk;
    }
    for (const Command& c : kCommands)
        if (name == c.name) return c.run(cli::Args(argc, argv, 2));
    return cli::Usage("unknown command '" + std::string(name) + "' (see 'varion --help')");
}
