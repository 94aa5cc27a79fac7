// varion convert VALUE --to TYPE [--from TYPE]
#include "cli.h"

#include <cstdio>

namespace cli {

int Convert(const Args& args) {
    if (args.Flag("help")) {
        std::printf(
            "usage: varion convert VALUE --to TYPE [--from TYPE]\n"
            "  Converts a value with SetType and prints the resulting type, value (in\n"
            "  the library's text form) and result code. Exit status 1 when the\n"
            "  library refuses the conversion.\n"
            "  Without --from (or with --from BSTR) VALUE is a text (VT_BSTR), read by\n"
            "  the rules of the target type: integers in bases 2 (0b), 8 (0), 10 and 16\n"
            "  (0x), decimals with '.' or ',', INF/NAN, byte lists, dates and durations.\n"
            "  With --from a numeric type, VALUE is a number of that type (decimal\n"
            "  digits, '.' as decimal point). With --from a date or duration type,\n"
            "  VALUE is the stored day count (days since 1899-12-30 for date-times,\n"
            "  the length in days for durations, kept to the millisecond, or to 1/32\n"
            "  ms for VTX_DURATION_MSF).\n"
            "  Types: VT_I4, I4 or 4; VTX_DURATION or DURATION; arrays as UI1_ARRAY or\n"
            "  0x2011.\n"
            "example: varion convert 0x1F --to I1\n"
            "example: varion convert \"12,5\" --to R4\n"
            "example: varion convert \"0x01, 0xAB\" --to UI1_ARRAY\n"
            "example: varion convert 2.5 --from R8 --to I4\n"
            "example: varion convert 45002.5 --from DATE --to BSTR\n");
        return kOk;
    }
    if (auto unknown = args.Unknown({"to", "from", "help"})) return Usage("convert: unknown option " + *unknown);
    if (args.Positionals().size() != 1) return Usage("convert: expected one VALUE");
    const auto toName = args.Option("to");
    if (!toName) return Usage("convert: --to TYPE is required");
    const auto to = ParseType(*toName);
    if (!to) return Usage("convert: unknown type '" + *toName + "'");

    const std::string& text = args.Positionals()[0];
    VARTYPE from = VT_BSTR;
    if (const auto fromName = args.Option("from")) {
        const auto parsed = ParseType(*fromName);
        if (!parsed) return Usage("convert: unknown type '" + *fromName + "'");
        from = *parsed;
    }
    if (from != VT_BSTR && !CVarion::IsNumericType(from) && !CVarion::IsAnyDateType(from))
        return Usage("convert: --from takes a numeric, date, duration or string type");
    std::optional<CVarion> value = ParseValue(text, from);
    if (!value) return Usage("convert: '" + text + "' is not a " + TypeName(from) + " value");
    const long code = value->SetType(*to);
    PrintResult(*value, code);
    return code < 0 ? kFailure : kOk;
}

}  // namespace cli
