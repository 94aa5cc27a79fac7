// varion record VALUE --type TYPE | varion record --decode HEXBYTES
// varion hex VALUE --type TYPE    | varion hex --decode DIGITS --type TYPE
#include "cli.h"

#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstring>

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

// A value of a date or duration type holding the day count `days`, made from
// its byte record.
CVarion DayCount(VARTYPE type, double days) {
    unsigned char record[14] = {14, 0, 0, 0, static_cast<unsigned char>(type & 0xFF),
                                static_cast<unsigned char>(type >> 8)};
    std::uint64_t bits = 0;
    std::memcpy(&bits, &days, sizeof(bits));
    for (int k = 0; k < 8; ++k) record[6 + k] = static_cast<unsigned char>(bits >> (8 * k));
    CVarion v;
    v.SetTypeValue(reinterpret_cast<const char*>(record), sizeof(record));
    return v;
}

// VALUE read as a value of `type`: numbers parsed into the type (they must
// hold in it as they stand), the text itself for VT_BSTR, a day count for
// the date and duration types; nullopt when it does not parse.
std::optional<CVarion> ValueOf(const std::string& text, VARTYPE type) {
    switch (type) {
    case VT_EMPTY:
        if (!text.empty()) return std::nullopt;
        return CVarion();
    case VT_BSTR:
        return CVarion(text.c_str());
    case VT_BOOL:
        if (text == "true") return CVarion(true);
        if (text == "false") return CVarion(false);
        [[fallthrough]];
    case VT_I1: case VT_I2: case VT_I4: case VT_I8: case VT_UI1: case VT_UI2: case VT_UI4: {
        LONGLONG x = 0;
        if (!ParseNumber(text, x)) return std::nullopt;
        CVarion v(x);
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
    default:
        if (CVarion::IsAnyDateType(type)) {
            double days = 0;
            if (!ParseNumber(text, days)) return std::nullopt;
            return DayCount(type, days);
        }
        return std::nullopt;
    }
}

// "0a 00 03": each byte as two lower-case digits, separated by spaces.
std::string HexBytes(const unsigned char* bytes, std::size_t count) {
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string out;
    for (std::size_t k = 0; k < count; ++k) {
        if (k != 0) out += ' ';
        out += kDigits[bytes[k] >> 4];
        out += kDigits[bytes[k] & 0xF];
    }
    return out;
}

int DigitValue(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

// Bytes from hex digit pairs; spaces and colons between bytes are ignored.
std::optional<std::vector<unsigned char>> ParseHexBytes(const std::string& text) {
    std::vector<unsigned char> bytes;
    int high = -1;
    for (char c : text) {
        if (c == ' ' || c == ':') {
            if (high >= 0) return std::nullopt;
            continue;
        }
        const int d = DigitValue(c);
        if (d < 0) return std::nullopt;
        if (high < 0) {
            high = d;
        } else {
            bytes.push_back(static_cast<unsigned char>(high * 16 + d));
            high = -1;
        }
    }
    if (high >= 0) return std::nullopt;
    return bytes;
}

// The --type option, required; nullopt after printing the usage error.
std::optional<VARTYPE> TypeOption(const Args& args, const char* command, int& status) {
    const auto name = args.Option("type");
    if (!name) {
        status = Usage(std::string(command) + ": --type TYPE is required");
        return std::nullopt;
    }
    const auto type = ParseType(*name);
    if (!type) status = Usage(std::string(command) + ": unknown type '" + *name + "'");
    return type;
}

int DecodeRecord(const std::string& text) {
    const auto bytes = ParseHexBytes(text);
    if (!bytes) return Usage("record: '" + text + "' is not a sequence of hex bytes");
    CVarion value;
    const long length = value.SetTypeValue(reinterpret_cast<const char*>(bytes->data()), bytes->size());
    if (length < 0) {
        std::fprintf(stderr, "varion: record: not a valid record (%s)\n", ResultName(length).c_str());
        return kFailure;
    }
    std::printf("type:   %s (%u)\nvalue:  %s\nlength: %ld\n", TypeName(value.GetType()).c_str(),
                static_cast<unsigned>(value.GetType()), ValueText(value).c_str(), length);
    return kOk;
}

}  // namespace

int Record(const Args& args) {
    if (args.Flag("help")) {
        std::printf(
            "usage: varion record VALUE --type TYPE\n"
            "       varion record --decode HEXBYTES\n"
            "  Prints the byte record of VALUE read as TYPE (length, type code,\n"
            "  payload; little-endian), or reads a record back and prints its type\n"
            "  and value. Date and duration types take their day count as VALUE.\n"
            "example: varion record 258 --type I4\n"
            "         varion record --decode '0a 00 00 00 03 00 02 01 00 00'\n");
        return kOk;
    }
    if (auto unknown = args.Unknown({"type", "decode", "help"})) return Usage("record: unknown option " + *unknown);
    if (args.Flag("decode")) {
        const auto text = args.Option("decode");
        if (!text || !args.Positionals().empty()) return Usage("record: --decode takes one HEXBYTES argument");
        return DecodeRecord(*text);
    }
    int status = kOk;
    const auto type = TypeOption(args, "record", status);
    if (!type) return status;
    if (args.Positionals().size() > 1 || (args.Positionals().empty() && *type != VT_EMPTY))
        return Usage("record: expected one VALUE");
    const std::string text = args.Positionals().empty() ? std::string() : args.Positionals()[0];
    const auto value = ValueOf(text, *type);
    if (!value) return Usage("record: '" + text + "' is not a " + TypeName(*type) + " value");

    const long length = value->GetLen();
    if (length < 0 || value->isArray()) {
        std::fprintf(stderr, "varion: record: %s has no record\n", TypeName(*type).c_str());
        return kFailure;
    }
    std::vector<char> buffer(static_cast<std::size_t>(length));
    if (value->GetTypeValue(buffer.data()) != length) {
        std::fprintf(stderr, "varion: record: %s has no record\n", TypeName(*type).c_str());
        return kFailure;
    }
    std::printf("%s\n", HexBytes(reinterpret_cast<const unsigned char*>(buffer.data()), buffer.size()).c_str());
    return kOk;
}

int Hex(const Args& args) {
    if (args.Flag("help")) {
        std::printf(
            "usage: varion hex VALUE --type TYPE\n"
            "       varion hex --decode DIGITS --type TYPE\n"
            "  Prints the hexadecimal digits of VALUE read as an integer or floating\n"
            "  TYPE, most significant byte first, or reads digits back into a single\n"
            "  (R4, 8 digits) or a double (R8, 16 digits) and prints it.\n"
            "example: varion hex 1.0 --type R4\n"
            "         varion hex --decode 3ff0000000000000 --type R8\n");
        return kOk;
    }
    if (auto unknown = args.Unknown({"type", "decode", "help"})) return Usage("hex: unknown option " + *unknown);
    int status = kOk;
    const auto type = TypeOption(args, "hex", status);
    if (!type) return status;

    if (args.Flag("decode")) {
        const auto digits = args.Option("decode");
        if (!digits || !args.Positionals().empty()) return Usage("hex: --decode takes one DIGITS argument");
        CVarion value;
        if (!value.HexStream2Value(CString(digits->c_str()), *type)) {
            std::fprintf(stderr, "varion: hex: '%s' does not read as %s\n", digits->c_str(),
                         TypeName(*type).c_str());
            return kFailure;
        }
        std::printf("type:  %s (%u)\nvalue: %s\n", TypeName(value.GetType()).c_str(),
                    static_cast<unsigned>(value.GetType()), ValueText(value).c_str());
        return kOk;
    }
    if (args.Positionals().size() != 1) return Usage("hex: expected one VALUE");
    const std::string& text = args.Positionals()[0];
    const auto value = ValueOf(text, *type);
    if (!value) return Usage("hex: '" + text + "' is not a " + TypeName(*type) + " value");
    CString digits;
    if (!value->Value2HexStream(digits)) {
        std::fprintf(stderr, "varion: hex: %s has no hexadecimal form\n", TypeName(*type).c_str());
        return kFailure;
    }
    std::printf("%s\n", digits.ToUtf8().c_str());
    return kOk;
}

}  // namespace cli
