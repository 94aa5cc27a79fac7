// varion unit VALUE FROM TO [--type TYPE]   and   varion units [SEARCH]
#include "cli.h"

#include <varion/units.h>

#include <charconv>
#include <cstdio>

namespace cli {
namespace {

template <class T>
bool ParseWhole(const std::string& text, T& out) {
    const char* first = text.data();
    const char* last = text.data() + text.size();
    if (first != last && *first == '+') ++first;
    const auto [ptr, ec] = std::from_chars(first, last, out);
    return ec == std::errc() && ptr == last && first != last;
}

std::optional<short> ParseCode(const std::string& text) {
    int code = 0;
    if (!ParseWhole(text, code) || code < -32768 || code > 32767) return std::nullopt;
    return static_cast<short>(code);
}

// VALUE held as `type`: integers are read as integers so that no digit is
// lost on the way; the value must fit the type as it stands.
std::optional<CVarion> ValueOf(const std::string& text, VARTYPE type) {
    CVarion value;
    LONGLONG whole = 0;
    ULONGLONG unsignedWhole = 0;
    double real = 0;
    if (ParseWhole(text, whole))
        value = CVarion(whole);
    else if (ParseWhole(text, unsignedWhole))
        value = CVarion(unsignedWhole);
    else if (ParseWhole(text, real))
        value = CVarion(real);
    else
        return std::nullopt;
    if (value.SetType(type) != RC_OK) return std::nullopt;
    return value;
}

std::string UnitText(short code) {
    VarionUnitInfo info{};
    if (!VarionUnitFind(code, &info)) return code == 0 ? "(no unit)" : "(not in the unit table)";
    std::string text = info.symbol;
    if (!text.empty()) text += " ";
    return text + "(" + info.name + ")";
}

const char* Meaning(long code) {
    switch (code) {
    case RC_OK: return "converted";
    case RC_UNIT_NOT_CONVERTIBLE:
        return "not convertible (unknown code, other group or quantity, or no temperature formula); "
               "value passed on unconverted";
    case RC_UNIT_NO_TARGET: return "no target unit; value passed on unconverted";
    case RC_NOT_CONVERTIBLE: return "bad call (empty value or source code -1); result untouched";
    default: return "unexpected result";
    }
}

// Characters, not bytes, so that UTF-8 symbols line up.
std::string Padded(const std::string& text, std::size_t width) {
    std::size_t chars = 0;
    for (const char c : text) chars += (static_cast<unsigned char>(c) & 0xC0) != 0x80;
    return chars >= width ? text : text + std::string(width - chars, ' ');
}

std::string Lower(std::string_view s) {
    std::string r(s);
    for (char& c : r)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return r;
}

bool Matches(const VarionUnitInfo& info, const std::string& search) {
    if (search.empty() || std::to_string(info.code) == search) return true;
    for (const char* field : {info.symbol, info.name, info.quantity})
        if (Lower(field).find(Lower(search)) != std::string::npos) return true;
    return false;
}

}  // namespace

int Unit(const Args& args) {
    if (args.Flag("help")) {
        std::printf(
            "usage: varion unit VALUE FROM TO [--type TYPE]\n"
            "  Converts VALUE, given in unit code FROM, into unit code TO with\n"
            "  UnitConvert and prints the result and the meaning of its code. The\n"
            "  value is held as TYPE (a numeric type, default VT_R8) and the result\n"
            "  comes back in that type where it fits. 'varion units' lists the codes.\n"
            "  Exit status 0 only when the value was converted.\n"
            "example: varion unit 20 32 33 --type I4     (20 degrees Celsius in Fahrenheit)\n");
        return kOk;
    }
    if (auto unknown = args.Unknown({"type", "help"})) return Usage("unit: unknown option " + *unknown);
    const auto& positionals = args.Positionals();
    if (positionals.size() != 3) return Usage("unit: expected VALUE FROM TO");
    VARTYPE type = VT_R8;
    if (args.Flag("type")) {
        const auto typeName = args.Option("type");
        if (!typeName) return Usage("unit: --type needs a TYPE");
        const auto parsed = ParseType(*typeName);
        if (!parsed) return Usage("unit: unknown type '" + *typeName + "'");
        if (!CVarion::IsNumericType(*parsed)) return Usage("unit: --type takes a numeric type");
        type = *parsed;
    }
    const auto value = ValueOf(positionals[0], type);
    if (!value) return Usage("unit: '" + positionals[0] + "' is not a " + TypeName(type) + " value");
    const auto from = ParseCode(positionals[1]);
    const auto to = ParseCode(positionals[2]);
    if (!from) return Usage("unit: FROM '" + positionals[1] + "' is not a unit code");
    if (!to) return Usage("unit: TO '" + positionals[2] + "' is not a unit code");

    CVarion result;
    const long code = value->UnitConvert(*from, *to, &result);
    std::printf("from:  %d %s\nto:    %d %s\n", *from, UnitText(*from).c_str(), *to, UnitText(*to).c_str());
    std::printf("type:  %s (%u)\nvalue: %s\ncode:  %ld %s\n", TypeName(result.GetType()).c_str(),
                static_cast<unsigned>(result.GetType()), ValueText(result).c_str(), code, Meaning(code));
    return code == RC_OK ? kOk : kFailure;
}

int Units(const Args& args) {
    if (args.Flag("help")) {
        std::printf(
            "usage: varion units [SEARCH]\n"
            "  Lists the engineering unit codes with symbol, name, conversion group and\n"
            "  quantity. Two codes convert into each other when their groups are equal.\n"
            "  SEARCH keeps the codes equal to it and the units whose symbol, name or\n"
            "  quantity contain it (any case). Exit status 1 when nothing matches.\n"
            "example: varion units pascal\n");
        return kOk;
    }
    if (auto unknown = args.Unknown({"help"})) return Usage("units: unknown option " + *unknown);
    if (args.Positionals().size() > 1) return Usage("units: expected at most one SEARCH word");
    const std::string search = args.Positionals().empty() ? "" : args.Positionals()[0];

    int shown = 0;
    VarionUnitInfo info{};
    for (int i = 0; VarionUnitAt(i, &info); ++i) {
        if (!Matches(info, search)) continue;
        if (shown++ == 0)
            std::printf("%6s %s%s%-6s %s\n", "code", Padded("symbol", 19).c_str(), Padded("name", 50).c_str(),
                        "group", "quantity");
        std::printf("%6u %s%s%-6u %s\n", static_cast<unsigned>(info.code), Padded(info.symbol, 19).c_str(),
                    Padded(info.name, 50).c_str(), static_cast<unsigned>(info.group), info.quantity);
    }
    if (shown == 0) {
        std::fprintf(stderr, "varion: no unit matches '%s'\n", search.c_str());
        return kFailure;
    }
    return kOk;
}

}  // namespace cli
