// varion format VALUE --type TYPE [--format FORMAT] [--dd-type N]
#include "cli.h"

#include <charconv>
#include <cstdio>

namespace cli {

int Format(const Args& args) {
    if (args.Flag("help")) {
        std::printf(
            "usage: varion format VALUE --type TYPE [--format FORMAT] [--dd-type N]\n"
            "  Reads VALUE as text into a value of type TYPE (as SetType reads a\n"
            "  string) and prints it rendered by GetStringWithDisplayFormat.\n"
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
    if (value.SetType(*type) < 0) return Usage("format: '" + text + "' is not a " + TypeName(*type) + " value");

    const CString shown = value.GetStringWithDisplayFormat(CString(format.c_str()), ddType);
    std::printf("%s\n", shown.ToUtf8().c_str());
    return kOk;
}

}  // namespace cli
