// varion convert VALUE --to TYPE [--from TYPE]
#include "cli.h"

namespace cli {
namespace {

constexpr const char* kName = "convert";

constexpr Option kOptions[] = {{"to", true}, {"from", true}};

int Run(const Args& args) {
    int status = kOk;
    if (!CheckPositionals(args, kName, 1, 1, "VALUE", status)) return status;
    const auto to = TypeArgument(args, kName, "to", std::nullopt, status);
    if (!to) return status;
    const auto from = TypeArgument(args, kName, "from", VT_BSTR, status);
    if (!from) return status;
    auto value = ValueArgument(kName, args.Positionals()[0], *from, status);
    if (!value) return status;

    const Report report(*value, value->SetType(*to));
    report.Print(args.Json());
    return report.Status();
}

}  // namespace

const Command kConvertCommand = {
    kName,
    "convert a value to another type",
    "usage: varion convert VALUE --to TYPE [--from TYPE]\n"
    "  Converts a value with SetType and prints the resulting type, the value in\n"
    "  the library's text form and the result code. A refused conversion leaves\n"
    "  the value as it was (exit status 1).\n"
    "  Without --from, VALUE is a text (VT_BSTR) read by the rules of the target\n"
    "  type: integers in bases 2 (0b), 8 (0), 10 and 16 (0x), decimals with '.'\n"
    "  or ',', INF/NAN, byte lists, locale dates, durations, ISO 8601 texts.\n"
    "  With --from TYPE, VALUE is a value of that type: a number of the type\n"
    "  ('.' as decimal point), true/false, the stored day count of a date or\n"
    "  duration (days since 1899-12-30 for date-times, the length in days for\n"
    "  durations), or any text the library reads into that type.\n"
    "  TYPE: VT_I4, I4 or 3; VTX_DURATION or DURATION; UI1_ARRAY or 0x2011.\n"
    "example: varion convert 0x1F --to I1\n"
    "example: varion convert 12,5 --to R4\n"
    "example: varion convert \"0x01, 0xAB\" --to UI1_ARRAY\n"
    "example: varion convert 2.5 --from R8 --to I4\n"
    "example: varion convert 45002.5 --from DATE --to BSTR --locale de-DE\n",
    kOptions,
    Run,
};

}  // namespace cli
