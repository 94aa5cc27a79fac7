// varion format VALUE --type TYPE [--format FORMAT] [--dd-type N]
#include "cli.h"

#include <cstdio>

namespace cli {
namespace {

constexpr const char* kName = "format";

constexpr Option kOptions[] = {{"type", true}, {"format", true}, {"dd-type", true}};

int Run(const Args& args) {
    int status = kOk;
    if (!CheckPositionals(args, kName, 1, 1, "VALUE", status)) return status;
    const auto type = TypeArgument(args, kName, "type", std::nullopt, status);
    if (!type) return status;
    long long ddType = 0;
    if (const auto text = args.Value("dd-type")) {
        const auto n = IntegerArgument(kName, *text, "--dd-type", -32768, 32767, status);
        if (!n) return status;
        ddType = *n;
    }
    const auto value = ValueArgument(kName, args.Positionals()[0], *type, status);
    if (!value) return status;

    const std::string format = args.Value("format").value_or("");
    const std::string shown =
        value->GetStringWithDisplayFormat(CString(format.c_str()), static_cast<short>(ddType)).ToUtf8();
    if (args.Json()) {
        Report(*value, RC_OK).Add("format", format).Add("dd_type", ddType).Add("display", shown).Print(true);
    } else {
        std::fwrite(shown.data(), 1, shown.size(), stdout);
        std::putchar('\n');
    }
    return kOk;
}

}  // namespace

const Command kFormatCommand = {
    kName,
    "render a value under a display format",
    "usage: varion format VALUE --type TYPE [--format FORMAT] [--dd-type N]\n"
    "  Reads VALUE as a value of TYPE (see 'varion convert --help' for --from)\n"
    "  and prints it rendered by GetStringWithDisplayFormat. Never fails: a\n"
    "  format the library cannot use gives an empty line.\n"
    "  FORMAT: a printf-like format (%5.2f, %X, %o, %b, %s, \"Speed: %.1f km/h\"),\n"
    "  a duration format (%H:%M:%S, %D days) or a strftime pattern for\n"
    "  VTX_ISO_DATETIME; empty or missing: the value's plain text.\n"
    "  N: the device-description type that chooses how a VT_DATE shows (15 time,\n"
    "  16 or 17 duration, 20 date, otherwise date and time); 0 by default.\n"
    "example: varion format 3.14159 --type R8 --format %5.2f\n"
    "example: varion format 31 --type I4 --format %X\n"
    "example: varion format 0.5 --type DATE --dd-type 16 --format %H:%M:%S\n"
    "example: varion format 2026-11-17T20:18:38 --type VTX_ISO_DATETIME --format %d.%m.%Y\n",
    kOptions,
    Run,
};

}  // namespace cli
