// varion convert VALUE --to TYPE [--from TYPE]
#include "cli.h"

#include <charconv>
#include <cstdio>

namespace cli {
namespace {

template <class T>
bool ParseNumber(const std::string& text, T& out) {
    const char* first = text.data();
    const char* last = text.data() + text.size();
    if (first != last && *first == '+') ++first;
    const auto [ptr, ec] = std::from_chars(first, last, out);
    return ec == std::errc() && ptr == last && first != last;
}

// VALUE read as a number of type `from`; nullopt when it does not parse.
std::optional<CVarion> NumberOf(const std::string& text, VARTYPE from) {
    switch (from) {
    case VT_I1: case VT_I2: case VT_I4: case VT_I8: case VT_UI1: case VT_UI2: case VT_UI4: case VT_BOOL: {
        LONGLONG x = 0;
        if (!ParseNumber(text, x)) return std::nullopt;
        CVarion v(x);
        // The value must hold in `from` as it stands.
        if (v.SetType(from) != RC_OK) return std::nullopt;
        return v;
    }
    case VT_UI8: {
        ULONGLONG x = 0;
        if (!ParseNumber(text, x)) return std::nullopt;
        return CVarion(x);
    }
    case VT_R4: {
        float x = 0;
        if (!ParseNumber(text, x)) return std::nullopt;
        return CVarion(x);
    }
    case VT_R8: {
        double x = 0;
        if (!ParseNumber(text, x)) return std::nullopt;
        return CVarion(x);
    }
    default:
        return std::nullopt;
    }
}

}  // namespace

int Convert(const Args& args) {
    if (args.Flag("help")) {
        std::printf(
            "usage: varion convert VALUE --to TYPE [--from TYPE]\n"
            "  Reads VALUE as a number of type --from (default: an integer as VT_I8,\n"
            "  otherwise a double as VT_R8), converts it with SetType and prints the\n"
            "  resulting type, value and result code.\n"
            "  Types: VT_I4, I4 or 4.\n"
            "example: varion convert 2.5 --from R8 --to I4\n");
        return kOk;
    }
    if (auto unknown = args.Unknown({"to", "from", "help"})) return Usage("convert: unknown option " + *unknown);
    if (args.Positionals().size() != 1) return Usage("convert: expected one VALUE");
    const auto toName = args.Option("to");
    if (!toName) return Usage("convert: --to TYPE is required");
    const auto to = ParseType(*toName);
    if (!to) return Usage("convert: unknown type '" + *toName + "'");

    const std::string& text = args.Positionals()[0];
    std::optional<CVarion> value;
    if (const auto fromName = args.Option("from")) {
        const auto from = ParseType(*fromName);
        if (!from) return Usage("convert: unknown type '" + *fromName + "'");
        if (!CVarion::IsNumericType(*from)) return Usage("convert: --from takes a numeric type");
        value = NumberOf(text, *from);
        if (!value) return Usage("convert: '" + text + "' is not a " + TypeName(*from) + " value");
    } else {
        value = NumberOf(text, VT_I8);
        if (!value) value = NumberOf(text, VT_R8);
        if (!value) return Usage("convert: '" + text + "' is not a number");
    }
    const long code = value->SetType(*to);
    PrintResult(*value, code);
    return code < 0 ? kFailure : kOk;
}

}  // namespace cli
