// varion format VALUE --type TYPE [--format FORMAT] [--dd-type N]
#include "cli.h"

#include <charconv>
#include <cstdio>

namespace cli {
namespace {

// A date-family value holding `text` read as its stored day count (days since
// 1899-12-30 for date-times, the length in days for durations). A number
// changes into a date-time as days since 1900-01-01 and into a duration as a
// count of milliseconds (1/32 ms for VTX_DURATION_MSF), so the day count is
// brought into those units first.
bool DayCount(const std::string& text, VARTYPE type, CVarion& value) {
    double days = 0;
    const char* first = text.data() + (!text.empty() && text[0] == '+' ? 1 : 0);
    const char* last = text.data() + text.size();
    const auto [ptr, ec] = std::from_chars(first, last, days);
    if (ec != std::errc() || ptr != last || first == last) return false;
    double number = days - 2.0;
    if (CVarion::IsDurationType(type)) number = days * (type == VTX_DURATION_MSF ? 2764800000.0 : 86400000.0);
    CVarion converted(number);
    if (converted.SetType(type) != RC_OK) return false;
    value = converted;
    return true;
}

}  // namespace

int Format(const Args& args) {
    if (args.Flag("help")) {
        std::printf(
            "usage: varion format VALUE --type TYPE [--format FORMAT] [--dd-type N]\n"
            "  Reads VALUE as text into a value of type TYPE (as SetType reads a\n"
            "  string) and prints it rendered by GetStringWithDisplayFormat. For a\n"
            "  date or duration type, VALUE may also be the stored day count (days\n"
            "  since 1899-12-30 for date-times, the length in days for durations).\n"
            "  FORMAT: a printf-like format (%%5.2f, %%X, %%o, %%b, %%s ...), a duration\n"
            "  format (%%H:%%M:%%S) or a strftime pattern for VTX_ISO_DATETIME; empty\n"
            "  or missing: the value's plain text.\n"
            "  N: the device-description type code that chooses how a VT_DATE shows\n"
            "  (15 time, 16 or 17 duration, 20 date, otherwise date and time); 0 by default.\n"
            "examples: varion format 3.14159 --type R8 --format \"%%5.2f\"\n"
            "          varion format 31 --type I4 --format %%X\n"
            "          varion format 0.5 --type DATE --dd-type 16 --format %%H:%%M:%%S\n");
        return kOk;
    }
    if (auto unknown = args.Unknown({"type", "format", "dd-type", "help"}))
        return Usage("format: unknown option " + *unknown);
    if (args.Positionals().size() != 1) return Usage("format: expected one VALUE");
    const auto typeName = args.Option("type");
    if (!typeName) return Usage("format: --type TYPE is required");
    const auto type = ParseType(*typeName);
    if (!type) return Usage("format: unknown type '" + *typeName + "'");

    short ddType = 0;
    if (const auto dd = args.Option("dd-type")) {
        int n = 0;
        const auto [ptr, ec] = std::from_chars(dd->data(), dd->data() + dd->size(), n);
        if (ec != std::errc() || ptr != dd->data() + dd->size() || dd->empty() || n < -32768 || n > 32767)
            return Usage("format: --dd-type takes a number from -32768 to 32767");
        ddType = static_cast<short>(n);
    }
    const std::string format = args.Option("format").value_or("");

    const std::string& text = args.Positionals()[0];
    CVarion value(text.c_str());
    if (value.SetType(*type) < 0 && !(CVarion::IsAnyDateType(*type) && DayCount(text, *type, value)))
        return Usage("format: '" + text + "' is not a " + TypeName(*type) + " value");

    const CString shown = value.GetStringWithDisplayFormat(CString(format.c_str()), ddType);
    std::printf("%s\n", shown.ToUtf8().c_str());
    return kOk;
}

}  // namespace cli
