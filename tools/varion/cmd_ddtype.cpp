// varion ddtype DDTYPE SIZE [--value TEXT]
#include "cli.h"

#include <cstdio>

namespace cli {
namespace {

constexpr const char* kName = "ddtype";

constexpr Option kOptions[] = {{"value", true}};

int Run(const Args& args) {
    int status = kOk;
    if (!CheckPositionals(args, kName, 2, 2, "DDTYPE SIZE", status)) return status;
    const auto ddType = IntegerArgument(kName, args.Positionals()[0], "DDTYPE", 0, 65535, status);
    if (!ddType) return status;
    const auto size = IntegerArgument(kName, args.Positionals()[1], "SIZE", -32768, 32767, status);
    if (!size) return status;

    const VARTYPE type = CVarion::DDType2VariantType(static_cast<unsigned short>(*ddType), static_cast<short>(*size));
    const auto text = args.Value("value");
    if (!text) {
        // The type alone: there is no value and nothing that can fail.
        if (args.Json())
            Report(type, "", RC_OK).Add("dd_type", *ddType).Add("size", *size).Print(true);
        else
            std::printf("%s (%u)\n", TypeName(type).c_str(), static_cast<unsigned>(type));
        return kOk;
    }
    // The text read into the type as SetType reads a string, as a parameter's
    // value arrives from a device.
    CVarion value(text->c_str());
    if (value.GetType() != VT_BSTR) return kFailure;  // the text could not be allocated
    const long code = value.SetType(type);
    const Report report(value, code);
    Report(report).Add("dd_type", *ddType).Add("size", *size).Print(args.Json());
    return report.Status();
}

}  // namespace

const Command kDdtypeCommand = {
    kName,
    "name the type code of a device-description type and size",
    "usage: varion ddtype DDTYPE SIZE [--value TEXT]\n"
    "  Prints the type code that DDType2VariantType gives for a device parameter\n"
    "  of device-description type DDTYPE (0 to 65535) with SIZE bytes (-32768 to\n"
    "  32767; only types 1, 2, 5, 6 and 13 look at it). Types without a type\n"
    "  code give VT_EMPTY. With --value, TEXT is read into that type as SetType\n"
    "  reads a string, and the value and result code are printed as well\n"
    "  (exit status 1 when the library refuses the text).\n"
    "example: varion ddtype 1 4\n"
    "example: varion ddtype 3 4 --value 12,5\n",
    kOptions,
    Run,
};

}  // namespace cli
