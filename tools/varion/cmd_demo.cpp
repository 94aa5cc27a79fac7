// varion demo: the typical use of a device parameter's value, step by step.
#include "cli.h"

#include <cstdio>

namespace cli {
namespace {

void Step(int n, const char* what) { std::printf("\n%d. %s\n", n, what); }

std::string Show(const CVarion& v) { return TypeName(v.GetType()) + " " + ValueText(v); }

}  // namespace

int Demo(const Args& args) {
    if (args.Flag("help")) {
        std::printf("usage: varion demo\n"
                    "  Walks through the typical use of a parameter value: a VARIANT text in, its\n"
                    "  device type, a unit conversion, a comparison, a display text, a date.\n"
                    "example: varion demo\n");
        return kOk;
    }
    std::printf("varion demo: a device parameter's value from an Automation VARIANT to the display\n");

    Step(1, "A VARIANT holding the text \"12,5\" (VT_BSTR) becomes a CVarion.");
    VARIANT received;
    VariantInit(&received);
    received.vt = VT_BSTR;
    received.bstrVal = SysAllocString(CString("12,5").GetString());
    CVarion value(received);
    VariantClear(&received);  // the value owns its own copy
    std::printf("   CVarion(VARIANT) = %s\n", Show(value).c_str());

    Step(2, "The device-description type 3 with size 4 names the value's type; the text is parsed into it.");
    const VARTYPE type = CVarion::DDType2VariantType(3, 4);
    std::printf("   DDType2VariantType(3, 4) = %s\n", TypeName(type).c_str());
    const long code = value.SetType(type);
    std::printf("   SetType(%s): %s, code %s\n", TypeName(type).c_str(), Show(value).c_str(), ResultName(code).c_str());

    Step(3, "The number is converted from one engineering unit to another.");
    CVarion converted;
    const long unitCode = value.UnitConvert(1137, 1141, &converted);
    std::printf("   UnitConvert(1137 bar -> 1141 psi): %s, code %ld\n", Show(converted).c_str(), unitCode);

    Step(4, "The converted value is compared with a limit.");
    const CVarion limit(200.0);
    std::printf("   %s <= %s: %d\n", Show(converted).c_str(), Show(limit).c_str(), converted <= limit);

    Step(5, "The converted value is rendered with the display format %.2f.");
    const CString shown = converted.GetStringWithDisplayFormat(CString(OLESTR("%.2f")), 0);
    std::printf("   GetStringWithDisplayFormat(\"%%.2f\") = %s\n", shown.ToUtf8().c_str());

    Step(6, "A time stamp of the reading, from its ISO 8601 text.");
    CVarion stamp("2026-11-17T20:18:38.25");
    const long stampCode = stamp.SetType(VTX_ISO_DATETIME);
    std::printf("   SetType(VTX_ISO_DATETIME): %s, code %s\n", Show(stamp).c_str(), ResultName(stampCode).c_str());
    std::printf("   fields: %04ld-%02ld-%02ld %02ld:%02ld:%02ld.%03ld, day of week %ld\n", stamp.GetYear(),
                stamp.GetMonth(), stamp.GetDay(), stamp.GetHour(), stamp.GetMinute(), stamp.GetSecond(),
                stamp.GetMillisecond(), stamp.GetDayOfWeek());

    Step(7, "The values are destroyed and release what they own.");
    std::printf("   done\n");
    return kOk;
}

}  // namespace cli
