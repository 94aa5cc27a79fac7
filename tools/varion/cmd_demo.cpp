// varion demo: the typical use of a device parameter's value, step by step.
#include "cli.h"

#include <cstdio>

namespace cli {
namespace {

void Step(int n, const char* what) { std::printf("\n%d. %s\n", n, what); }
void ToCome(const char* what) { std::printf("   (still to come: %s)\n", what); }

}  // namespace

int Demo(const Args& args) {
    if (args.Flag("help")) {
        std::printf("usage: varion demo\n  Walks through the typical use of a parameter value.\n");
        return kOk;
    }
    std::printf("varion demo: a device parameter's value from an Automation VARIANT to the display\n");

    Step(1, "A VARIANT holding the text \"12,5\" (VT_BSTR) becomes a CVarion.");
    ToCome("VARIANT exchange");

    Step(2, "The device-description type 3 with size 4 names the value's type; the text is parsed into it.");
    const VARTYPE type = CVarion::DDType2VariantType(3, 4);
    std::printf("   DDType2VariantType(3, 4) = %s\n", TypeName(type).c_str());
    CVarion value("12,5");
    const long code = value.SetType(type);
    std::printf("   VT_BSTR \"12,5\" -> SetType(%s): %s %s, code %s\n", TypeName(type).c_str(),
                TypeName(value.GetType()).c_str(), ValueText(value).c_str(), ResultName(code).c_str());

    Step(3, "The number is converted from one engineering unit to another.");
    CVarion converted;
    const long unitCode = value.UnitConvert(1137, 1141, &converted);
    std::printf("   UnitConvert(1137 bar -> 1141 psi): %s %s, code %ld\n", TypeName(converted.GetType()).c_str(),
                ValueText(converted).c_str(), unitCode);

    Step(4, "The converted value is compared with a limit.");
    ToCome("comparison");

    Step(5, "The converted value is rendered with the display format %.2f.");
    const CVarion& display = converted.GetType() == VT_EMPTY ? value : converted;
    const CString shown = display.GetStringWithDisplayFormat(CString(OLESTR("%.2f")), 0);
    std::printf("   %s %s -> GetStringWithDisplayFormat(\"%%.2f\") = %s\n", TypeName(display.GetType()).c_str(),
                ValueText(display).c_str(), shown.ToUtf8().c_str());

    Step(6, "The values are destroyed and release what they own.");
    std::printf("   done\n");
    return kOk;
}

}  // namespace cli
