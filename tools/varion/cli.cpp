// Argument reading, type names and the one value reader of the tool.
#include "cli.h"

#include <charconv>
#include <cstdio>
#include <cstring>

namespace cli {
namespace {

constexpr Option kCommonOptions[] = {{"help", false}, {"json", false}, {"locale", true}};

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

bool EndsWith(std::string_view s, std::string_view tail) {
    return s.size() > tail.size() && s.substr(s.size() - tail.size()) == tail;
}

std::optional<VARTYPE> ScalarType(std::string_view upper) {
    for (const TypeNameRow& row : kTypeNames) {
        const std::string_view full(row.name);
        if (upper == full || upper == full.substr(full.find('_') + 1)) return row.code;
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

// The whole of `text` as a number of type T; "+" may lead.
template <class T>
bool ReadNumber(std::string_view text, T& out) {
    const char* first = text.data();
    const char* last = text.data() + text.size();
    if (first != last && *first == '+') ++first;
    const auto [ptr, ec] = std::from_chars(first, last, out);
    return ec == std::errc() && ptr == last && first != last;
}

template <class T>
std::optional<CVarion> Whole(std::string_view text, VARTYPE type) {
    T x = 0;
    if (!ReadNumber(text, x)) return std::nullopt;
    CVarion v(x);
    if (v.SetType(type) != RC_OK) return std::nullopt;
    return v;
}

template <class T>
std::optional<CVarion> Real(std::string_view text) {
    T x = 0;
    if (!ReadNumber(text, x)) return std::nullopt;
    return CVarion(x);
}

// Step 1 of ParseValue: the plain forms of a type.
std::optional<CVarion> Plain(const std::string& text, VARTYPE type) {
    if (CVarion::IsAnyDateType(type)) {
        double days = 0;
        if (!ReadNumber(std::string_view(text), days)) return std::nullopt;
        return DayCountValue(type, days);
    }
    switch (type) {
    case VT_EMPTY:
        if (!text.empty()) return std::nullopt;
        return CVarion();
    case VT_BSTR: {
        CVarion v(text.c_str());
        if (v.GetType() != VT_BSTR) return std::nullopt;
        return v;
    }
    case VT_BOOL:
        if (text == "true" || text == "1") return CVarion(true);
        if (text == "false" || text == "0") return CVarion(false);
        return std::nullopt;
    case VT_I1: case VT_I2: case VT_I4: case VT_I8:
        return Whole<LONGLONG>(text, type);
    case VT_UI1: case VT_UI2: case VT_UI4: case VT_UI8:
        return Whole<ULONGLONG>(text, type);
    case VT_R4:
        return Real<float>(text);
    case VT_R8:
        return Real<double>(text);
    default:
        return std::nullopt;
    }
}

}  // namespace

// ---------------------------------------------------------------------------
// Args
// ---------------------------------------------------------------------------

bool Args::Parse(int argc, char** argv, int first, std::span<const Option> options, std::string& error) {
    const auto find = [&](std::string_view name) -> const Option* {
        for (const Option& o : kCommonOptions)
            if (name == o.name) return &o;
        for (const Option& o : options)
            if (name == o.name) return &o;
        return nullptr;
    };
    bool optionsEnded = false;
    for (int i = first; i < argc; ++i) {
        const std::string_view a(argv[i]);
        if (optionsEnded || a.size() < 2 || a[0] != '-' || (a[1] != '-' && a != "-h")) {
            m_positionals.emplace_back(a);
            continue;
        }
        if (a == "--") {
            optionsEnded = true;
            continue;
        }
        const std::string_view body = a == "-h" ? std::string_view("help") : a.substr(2);
        const std::size_t equals = body.find('=');
        const std::string_view name = body.substr(0, equals);
        const Option* option = find(name);
        if (option == nullptr) {
            error = "unknown option --" + Quoted(name);
            return false;
        }
        std::string value;
        if (equals != std::string_view::npos) {
            if (!option->takesValue) {
                error = "--" + std::string(name) + " takes no value";
                return false;
            }
            value = std::string(body.substr(equals + 1));
        } else if (option->takesValue) {
            if (i + 1 >= argc) {
                error = "--" + std::string(name) + " needs a value";
                return false;
            }
            value = argv[++i];
        }
        m_options.emplace_back(std::string(name), std::move(value));
    }
    return true;
}

std::optional<std::string> Args::Value(std::string_view name) const {
    std::optional<std::string> found;
    for (const auto& [n, v] : m_options)
        if (n == name) found = v;
    return found;
}

bool Args::Flag(std::string_view name) const {
    for (const auto& [n, v] : m_options)
        if (n == name) return true;
    return false;
}

// ---------------------------------------------------------------------------
// Types and values
// ---------------------------------------------------------------------------

std::optional<VARTYPE> ParseType(std::string_view name) {
    std::string upper = Upper(name);
    for (std::string_view array : {"|VT_ARRAY", "_ARRAY"}) {
        if (!EndsWith(upper, array)) continue;
        const auto element = ScalarType(std::string_view(upper).substr(0, upper.size() - array.size()));
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
    case RC_UNIT_NOT_CONVERTIBLE: return "RC_UNIT_NOT_CONVERTIBLE";
    case RC_UNIT_NO_TARGET: return "RC_UNIT_NO_TARGET";
    default: return "RC_" + std::to_string(code);
    }
}

std::string ValueText(const CVarion& value) { return static_cast<CString>(value).ToUtf8(); }

std::optional<long long> ParseInteger(std::string_view text, long long min, long long max) {
    long long n = 0;
    if (!ReadNumber(text, n) || n < min || n > max) return std::nullopt;
    return n;
}

double DayCount(const CVarion& value) {
    VARIANT raw;
    std::memcpy(&raw, &value, sizeof(raw));
    return raw.date;
}

CVarion DayCountValue(VARTYPE type, double days) {
    VARIANT raw;
    VariantInit(&raw);
    raw.vt = type;
    raw.date = days;
    return CVarion(raw);
}

std::optional<CVarion> ParseValue(const std::string& text, VARTYPE type) {
    if (auto plain = Plain(text, type)) return plain;
    if (type == VT_EMPTY) return std::nullopt;
    CVarion v(text.c_str());
    if (v.GetType() != VT_BSTR || v.SetType(type) != RC_OK) return std::nullopt;
    return v;
}

std::optional<CVarion> GuessValue(const std::string& text) {
    for (VARTYPE t : {VT_I4, VT_I8, VT_UI8, VT_R8})
        if (auto v = Plain(text, t)) return v;
    return Plain(text, VT_BSTR);
}

std::string Quoted(std::string_view text) {
    constexpr std::size_t kLongest = 60;
    std::string out;
    for (std::size_t k = 0; k < text.size() && k < kLongest; ++k) {
        const unsigned char c = static_cast<unsigned char>(text[k]);
        if (c < 0x20 || c == 0x7F) {
            char escaped[8];
            std::snprintf(escaped, sizeof(escaped), "\\x%02x", c);
            out += escaped;
        } else {
            out += static_cast<char>(c);
        }
    }
    if (text.size() > kLongest) out += "...";
    return out;
}

// ---------------------------------------------------------------------------
// Shared arguments
// ---------------------------------------------------------------------------

int Usage(std::string_view command, const std::string& message) {
    std::fprintf(stderr, "varion: %.*s%s%s\n", static_cast<int>(command.size()), command.data(),
                 command.empty() ? "" : ": ", message.c_str());
    return kUsage;
}

bool CheckPositionals(const Args& args, std::string_view command, std::size_t min, std::size_t max,
                      const char* names, int& status) {
    const auto& p = args.Positionals();
    if (p.size() < min) {
        status = Usage(command, std::string("missing ") + names);
        return false;
    }
    if (p.size() > max) {
        status = Usage(command, "unexpected argument '" + Quoted(p[max]) + "'");
        return false;
    }
    return true;
}

std::optional<VARTYPE> TypeArgument(const Args& args, std::string_view command, std::string_view option,
                                    std::optional<VARTYPE> fallback, int& status) {
    const auto name = args.Value(option);
    if (!name) {
        if (!fallback) status = Usage(command, "--" + std::string(option) + " TYPE is required");
        return fallback;
    }
    const auto type = ParseType(*name);
    if (!type) status = Usage(command, "unknown type '" + Quoted(*name) + "' for --" + std::string(option));
    return type;
}

std::optional<CVarion> ValueArgument(std::string_view command, const std::string& text, VARTYPE type, int& status) {
    auto value = ParseValue(text, type);
    if (!value) status = Usage(command, "'" + Quoted(text) + "' is not a " + TypeName(type) + " value");
    return value;
}

std::optional<long long> IntegerArgument(std::string_view command, const std::string& text, const char* what,
                                         long long min, long long max, int& status) {
    const auto n = ParseInteger(text, min, max);
    if (!n)
        status = Usage(command, std::string(what) + " '" + Quoted(text) + "' is not a whole number from " +
                                    std::to_string(min) + " to " + std::to_string(max));
    return n;
}

}  // namespace cli
