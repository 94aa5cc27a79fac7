// varion unit VALUE FROM TO [--type TYPE]   and   varion units [SEARCH]
#include "cli.h"

#include <varion/units.h>

#include <cstdio>

namespace cli {
namespace {

constexpr Option kUnitOptions[] = {{"type", true}};

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
    case RC_NOT_CONVERTIBLE: return "bad call (source code -1); result untouched";
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

int Unit(const Args& args) {
    constexpr const char* kName = "unit";
    int status = kOk;
    if (!CheckPositionals(args, kName, 3, 3, "VALUE FROM TO", status)) return status;
    const auto& p = args.Positionals();
    const auto type = TypeArgument(args, kName, "type", VT_R8, status);
    if (!type) return status;
    if (!CVarion::IsNumericType(*type)) return Usage(kName, "--type takes a numeric type, not " + TypeName(*type));
    const auto value = ValueArgument(kName, p[0], *type, status);
    if (!value) return status;
    const auto from = IntegerArgument(kName, p[1], "FROM", -32768, 32767, status);
    if (!from) return status;
    const auto to = IntegerArgument(kName, p[2], "TO", -32768, 32767, status);
    if (!to) return status;

    CVarion result;
    const long code = value->UnitConvert(static_cast<short>(*from), static_cast<short>(*to), &result);
    Report(result, code)
        .Meaning(Meaning(code))
        .Add("from", *from)
        .Add("to", *to)
        .Line("from", std::to_string(*from) + " " + UnitText(static_cast<short>(*from)))
        .Line("to", std::to_string(*to) + " " + UnitText(static_cast<short>(*to)))
        .Print(args.Json());
    return code == RC_OK ? kOk : kFailure;
}

std::string JsonUnit(const VarionUnitInfo& info) {
    return "{\"code\":" + std::to_string(info.code) + ",\"symbol\":" + JsonString(info.symbol) +
           ",\"name\":" + JsonString(info.name) + ",\"group\":" + std::to_string(info.group) +
           ",\"kind\":" + std::to_string(info.kind) + ",\"factor\":" + JsonReal(info.factor) +
           ",\"quantity\":" + JsonString(info.quantity) + "}";
}

int Units(const Args& args) {
    constexpr const char* kName = "units";
    int status = kOk;
    if (!CheckPositionals(args, kName, 0, 1, "SEARCH", status)) return status;
    const std::string search = args.Positionals().empty() ? "" : args.Positionals()[0];

    int shown = 0;
    VarionUnitInfo info{};
    for (int i = 0; VarionUnitAt(i, &info); ++i) {
        if (!Matches(info, search)) continue;
        if (args.Json()) {
            std::printf("%s\n", JsonUnit(info).c_str());
            ++shown;
            continue;
        }
        if (shown++ == 0)
            std::printf("%6s %s%s%-6s %s\n", "code", Padded("symbol", 19).c_str(), Padded("name", 50).c_str(),
                        "group", "quantity");
        std::printf("%6u %s%s%-6u %s\n", static_cast<unsigned>(info.code), Padded(info.symbol, 19).c_str(),
                    Padded(info.name, 50).c_str(), static_cast<unsigned>(info.group), info.quantity);
    }
    if (shown == 0) {
        std::fprintf(stderr, "varion: units: no unit matches '%s'\n", Quoted(search).c_str());
        return kFailure;
    }
    return kOk;
}

}  // namespace

const Command kUnitCommand = {
    "unit",
    "convert a number between engineering unit codes",
    "usage: varion unit VALUE FROM TO [--type TYPE]\n"
    "  Converts VALUE, given in unit code FROM, into unit code TO with\n"
    "  UnitConvert and prints the result and the meaning of its code. VALUE is\n"
    "  held as TYPE (a numeric type, VT_R8 by default) and the result comes\n"
    "  back in that type where it fits. 'varion units' lists the codes.\n"
    "  Exit status 0 only when the value was converted.\n"
    "example: varion unit 2.5 1010 1013\n"
    "example: varion unit 20 32 33 --type I4\n",
    kUnitOptions,
    Unit,
};

const Command kUnitsCommand = {
    "units",
    "list the engineering unit codes",
    "usage: varion units [SEARCH]\n"
    "  Lists the engineering unit codes with symbol, name, conversion group and\n"
    "  quantity. Two codes convert into each other when their groups are equal.\n"
    "  SEARCH keeps the code equal to it and the units whose symbol, name or\n"
    "  quantity contain it (any case). With --json one object per unit:\n"
    "  code, symbol, name, group, kind, factor (units per unit of the group's\n"
    "  reference; 0 for temperatures) and quantity. Exit status 1 when nothing\n"
    "  matches.\n"
    "example: varion units pascal\n"
    "example: varion units 1013 --json\n",
    {},
    Units,
};

}  // namespace cli
