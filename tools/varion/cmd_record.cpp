// varion record VALUE --type TYPE | varion record --decode HEXBYTES
// varion hex VALUE --type TYPE    | varion hex --decode DIGITS --type TYPE
#include "cli.h"

#include <cstdio>

namespace cli {
namespace {

constexpr Option kOptions[] = {{"type", true}, {"decode", true}};

// "0a 00 03": each byte as two lower-case digits, separated by spaces.
std::string HexBytes(const std::vector<char>& bytes) {
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string out;
    for (const char b : bytes) {
        const auto byte = static_cast<unsigned char>(b);
        if (!out.empty()) out += ' ';
        out += kDigits[byte >> 4];
        out += kDigits[byte & 0xF];
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
std::optional<std::vector<char>> ParseHexBytes(const std::string& text) {
    std::vector<char> bytes;
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
            bytes.push_back(static_cast<char>(high * 16 + d));
            high = -1;
        }
    }
    if (high >= 0) return std::nullopt;
    return bytes;
}

// A value's text output: the text itself, or with --json the report with the
// text as member `key`; on failure a message (or the report) and status 1.
int Emit(const Args& args, const char* command, const Report& report, const char* key, const std::string& text,
         const std::string& failure) {
    if (args.Json()) {
        Report(report).Add(key, text).Print(true);
    } else if (report.Code() < 0) {
        std::fprintf(stderr, "varion: %s: %s (%s)\n", command, failure.c_str(), ResultName(report.Code()).c_str());
    } else {
        std::printf("%s\n", text.c_str());
    }
    return report.Status();
}

int Record(const Args& args) {
    constexpr const char* kName = "record";
    int status = kOk;
    if (const auto text = args.Value("decode")) {
        if (!CheckPositionals(args, kName, 0, 0, "", status)) return status;
        if (args.Value("type")) return Usage(kName, "--decode takes no --type: the record names its type");
        const auto bytes = ParseHexBytes(*text);
        if (!bytes) return Usage(kName, "--decode '" + Quoted(*text) + "' is not a sequence of hex bytes");
        CVarion value;
        const long length = value.SetTypeValue(bytes->data(), bytes->size());
        const Report report(value, length < 0 ? length : RC_OK);
        Report(report).Add("length", length, "length").Print(args.Json());
        return report.Status();
    }
    const auto type = TypeArgument(args, kName, "type", std::nullopt, status);
    if (!type) return status;
    // VT_EMPTY has no VALUE: its text is empty.
    if (!CheckPositionals(args, kName, *type == VT_EMPTY ? 0 : 1, 1, "VALUE", status)) return status;
    const std::string text = args.Positionals().empty() ? std::string() : args.Positionals()[0];
    const auto value = ValueArgument(kName, text, *type, status);
    if (!value) return status;

    const long length = value->GetLen();
    std::vector<char> buffer(length > 0 ? static_cast<std::size_t>(length) : 0);
    // GetTypeValue answers -1 (writing nothing) for arrays and types without a record.
    const long written = length > 0 ? value->GetTypeValue(buffer.data()) : -1;
    return Emit(args, kName, Report(*value, written < 0 ? written : RC_OK), "record",
                written < 0 ? std::string() : HexBytes(buffer), TypeName(value->GetType()) + " has no record");
}

int Hex(const Args& args) {
    constexpr const char* kName = "hex";
    int status = kOk;
    const auto type = TypeArgument(args, kName, "type", std::nullopt, status);
    if (!type) return status;
    if (const auto digits = args.Value("decode")) {
        if (!CheckPositionals(args, kName, 0, 0, "", status)) return status;
        CVarion value;
        const bool read = value.HexStream2Value(CString(digits->c_str()), *type);
        const Report report(value, read ? RC_OK : RC_NOT_CONVERTIBLE);
        report.Print(args.Json());
        return report.Status();
    }
    if (!CheckPositionals(args, kName, 1, 1, "VALUE", status)) return status;
    const auto value = ValueArgument(kName, args.Positionals()[0], *type, status);
    if (!value) return status;
    CString digits;
    const bool written = value->Value2HexStream(digits);
    return Emit(args, kName, Report(*value, written ? RC_OK : RC_NOT_CONVERTIBLE), "hex", digits.ToUtf8(),
                TypeName(value->GetType()) + " has no hexadecimal form");
}

}  // namespace

const Command kRecordCommand = {
    "record",
    "write a value as a byte record, or read a record back",
    "usage: varion record VALUE --type TYPE\n"
    "       varion record --decode HEXBYTES\n"
    "  Prints the byte record of VALUE read as TYPE (GetTypeValue: length, type\n"
    "  code, payload; little-endian), or reads a record back (SetTypeValue with\n"
    "  the buffer's size) and prints its type, value and length. Arrays and\n"
    "  types without a record answer -1 (RC_NOT_APPLICABLE), a record that does\n"
    "  not read answers -2 (RC_NOT_CONVERTIBLE); both exit with status 1.\n"
    "  VALUE is read as by 'varion convert --from TYPE'; date and duration types\n"
    "  take their day count. VT_EMPTY takes no VALUE.\n"
    "example: varion record 258 --type I4\n"
    "example: varion record --decode \"0a 00 00 00 03 00 02 01 00 00\"\n",
    kOptions,
    Record,
};

const Command kHexCommand = {
    "hex",
    "write a value as hexadecimal digits, or read digits back",
    "usage: varion hex VALUE --type TYPE\n"
    "       varion hex --decode DIGITS --type TYPE\n"
    "  Prints the hexadecimal digits of VALUE read as an integer or floating\n"
    "  TYPE (Value2HexStream, most significant byte first), or reads digits\n"
    "  back (HexStream2Value) into a single (R4, 8 digits) or a double (R8, 16\n"
    "  digits) and prints it. A type without a hexadecimal form, or digits that\n"
    "  do not read, give exit status 1 (RC_NOT_CONVERTIBLE in --json).\n"
    "example: varion hex 1.0 --type R4\n"
    "example: varion hex --decode 3ff0000000000000 --type R8\n",
    kOptions,
    Hex,
};

}  // namespace cli
