#include "cli.h"

#include <charconv>
#include <cstdio>
#include <cstring>

namespace cli {
namespace {

struct TypeNameRow {
    VARTYPE code;
    const char* name;
};

// clang-format off
constexpr TypeNameRow kTypeNames[] = {
    {VT_EMPTY, "VT_EMPTY"}, {VT_NULL, "VT_NULL"}, {VT_I2, "VT_I2"}, {VT_I4, "VT_I4"},
    {VT_R4, "VT_R4"}, {VT_R8, "VT_R8"}, {VT_CY, "VT_CY"}, {VT_DATE, "VT_DATE"},
    {VT_BSTR, "VT_BSTR"}, {VT_DISPATCH, "VT_DISPATCH"}, {VT_ERROR, "VT_ERROR"}, {VT_BOOL, "VT_BOOL"},
    {VT_VARIANT, "VT_VARIANT"}, {VT_UNKNOWN, "VT_UNKNOWN"}, {VT_DECIMAL, "VT_DECIMAL"},
    {VT_I1, "VT_I1"}, {VT_UI1, "VT_UI1"}, {VT_UI2, "VT_UI2"}, {VT_UI4, "VT_UI4"},
    {VT_I8, "VT_I8"}, {VT_UI8, "VT_UI8"}, {VT_INT, "VT_INT"}, {VT_UINT, "VT_UINT"},
    {VTX_DURATION, "VTX_DURATION"}, {VTX_DURATION_MSF, "VTX_DURATION_MSF"},
    {VTX_DATETIME_ALT, "VTX_DATETIME_ALT"}, {VTX_DATETIME, "VTX_DATETIME"},
    {VTX_ISO_DURATION, "VTX_ISO_DURATION"}, {VTX_ISO_DATETIME, "VTX_ISO_DATETIME"},
};
// clang-format on

std::string Upper(std::string_view s) {
    std::string r(s);
    for (char& c : r)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    return r;
}

std::optional<VARTYPE> ScalarType(std::string_view name) {
    const std::string upper = Upper(name);
    for (const TypeNameRow& row : kTypeNames) {
        const std::string_view full(row.name);
        const std::string_view shortName = full.substr(full.find('_') + 1);
        if (upper == full || upper == shortName) return row.code;
    }
    // Numbers: decimal or 0x hexadecimal.
    unsigned value = 0;
    const char* first = upper.data();
    const char* last = upper.data() + upper.size();
    int base = 10;
    if (upper.size() > 2 && upper[0] == '0' && upper[1] == 'X') {
        first += 2;
        base = 16;
    }
    const auto [ptr, ec] = std::from_chars(first, last, value, base);
    if (ec != std::errc() || ptr != last || first == last || value > 0xFFFF) return std::nullopt;
    return static_cast<VARTYPE>(value);
}

constexpr double kMillisecondsPerDay = 86400000.0;
constexpr double kFractionsPerDay = 32.0 * kMillisecondsPerDay;

template <class T>
bool ParseNumber(const std::string& text, T& out) {
    const char* first = text.data();
    const char* last = text.data() + text.size();
    if (first != last && *first == '+') ++first;
    const auto [ptr, ec] = std::from_chars(first, last, out);
    return ec == std::errc() && ptr == last && first != last;
}

// VALUE read as the stored day count of a date or duration type. Date-times
// pass through their number (days since 1900-01-01), durations through their
// count of milliseconds (1/32 ms for VTX_DURATION_MSF), so a duration keeps
// that resolution.
std::optional<CVarion> DayCountOf(const std::string& text, VARTYPE type) {
    double days = 0;
    if (!ParseNumber(text, days)) return std::nullopt;
    double number = days - 2.0;
    if (CVarion::IsDurationType(type))
        number = days * (type == VTX_DURATION_MSF ? kFractionsPerDay : kMillisecondsPerDay);
    CVarion v(number);
    if (v.SetType(type) != RC_OK) return std::nullopt;
    return v;
}

}  // namespace

std::optional<CVarion> ParseValue(const std::string& text, VARTYPE type) {
    if (CVarion::IsAnyDateType(type)) return DayCountOf(text, type);
    switch (type) {
    case VT_I1: case VT_I2: case VT_I4: case VT_I8: case VT_UI1: case VT_UI2: case VT_UI4: case VT_BOOL: {
        LONGLONG x = 0;
        if (!ParseNumber(text, x)) return std::nullopt;
        CVarion v(x);
        // The value must hold in the type as it stands.
        if (v.SetType(type) != RC_OK) return std::nullopt;
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
    default: {
        // Any other type from its text: VT_BSTR as it stands, byte arrays
        // from their list ("0x01, 0xAB").
        CVarion v(text.c_str());
        if (v.GetType() != VT_BSTR || v.SetType(type) != RC_OK) return std::nullopt;
        return v;
    }
    }
}

std::optional<CVarion> GuessValue(const std::string& text) {
    for (VARTYPE t : {VT_I4, VT_I8, VT_UI8, VT_R8})
        if (auto v = ParseValue(text, t)) return v;
    return ParseValue(text, VT_BSTR);
}

Args::Args(int argc, char** argv, int first) {
    for (int i = first; i < argc; ++i) {
        const std::string_view a(argv[i]);
        if (a.size() > 2 && a.substr(0, 2) == "--") {
            const std::string name(a.substr(2));
            if (i + 1 < argc && std::strncmp(argv[i + 1], "--", 2) != 0)
                m_options.emplace_back(name, std::string(argv[++i]));
            else
                m_options.emplace_back(name, std::nullopt);
        } else {
            m_positionals.emplace_back(a);
        }
    }
}

std::optional<std::string> Args::Option(std::string_view name) const {
    for (const auto& [n, v] : m_options)
        if (n == name) return v;
    return std::nullopt;
}

bool Args::Flag(std::string_view name) const {
    for (const auto& [n, v] : m_options)
        if (n == name) return true;
    return false;
}

std::optional<std::string> Args::Unknown(const std::vector<std::string_view>& known) const {
    for (const auto& [n, v] : m_options) {
        bool found = false;
        for (std::string_view k : known) found = found || n == k;
        if (!found) return "--" + n;
    }
    return std::nullopt;
}

std::optional<VARTYPE> ParseType(std::string_view name) {
    const std::string upper = Upper(name);
    constexpr std::string_view suffix = "_ARRAY";
    if (upper.size() > suffix.size() && upper.compare(upper.size() - suffix.size(), suffix.size(), suffix) == 0) {
        const auto element = ScalarType(std::string_view(upper).substr(0, upper.size() - suffix.size()));
        if (!element || (*element & VT_ARRAY)) return std::nullopt;
        return static_cast<VARTYPE>(*element | VT_ARRAY);
    }
    return ScalarType(upper);
}

std::string TypeName(VARTYPE type) {
    const VARTYPE base = type & static_cast<VARTYPE>(~(VT_ARRAY | VT_BYREF));
    std::string name;
    for (const TypeNameRow& row : kTypeNames)
        if (row.code == base) name = row.name;
    if (name.empty()) name = std::to_string(base);
    if (type & VT_ARRAY) name += "|VT_ARRAY";
    if (type & VT_BYREF) name += "|VT_BYREF";
    return name;
}

std::string ResultName(long code) {
    switch (code) {
    case RC_OK: return "RC_OK";
    case RC_NOT_APPLICABLE: return "RC_NOT_APPLICABLE";
    case RC_NOT_CONVERTIBLE: return "RC_NOT_CONVERTIBLE";
    case RC_ABOVE_MAX: return "RC_ABOVE_MAX";
    case RC_BELOW_MIN: return "RC_BELOW_MIN";
    default: return "RC_" + std::to_string(code);
    }
}

std::string ValueText(const CVarion& value) { return static_cast<CString>(value).ToUtf8(); }

void PrintResult(const CVarion& value, long code) {
    std::printf("type:  %s (%u)\nvalue: %s\ncode:  %s (%ld)\n", TypeName(value.GetType()).c_str(),
                static_cast<unsigned>(value.GetType()), ValueText(value).c_str(), ResultName(code).c_str(), code);
}

int Usage(const std::string& message) {
    std::fprintf(stderr, "varion: %s\n", message.c_str());
    return kUsage;
}

}  // namespace cli
