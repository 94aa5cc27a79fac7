// varion demo: the typical use of a device parameter's value, step by step.
#include "cli.h"

#include <cstdio>

namespace cli {
namespace {

// Prints one step: its narration and result line, or with --json its result
// as a report carrying the step number and the operation.
class Steps {
public:
    explicit Steps(bool json) : m_json(json) {}

    void Step(const char* what) {
        ++m_step;
        if (!m_json) std::printf("\n%d. %s\n", m_step, what);
    }
    void Show(const std::string& operation, const CVarion& value, long code, const std::string& line) {
        if (m_json)
            Report(value, code).Add("step", m_step).Add("operation", operation).Print(true);
        else
            std::printf("   %s\n", line.c_str());
    }
    bool Json() const { return m_json; }

private:
    bool m_json;
    int m_step = 0;
};

std::string Show(const CVarion& v) { return TypeName(v.GetType()) + " " + ValueText(v); }

int Run(const Args& args) {
    int status = kOk;
    if (!CheckPositionals(args, "demo", 0, 0, "", status)) return status;
    Steps steps(args.Json());
    if (!steps.Json()) std::printf("varion demo: a device parameter's value from an Automation VARIANT to the display\n");

    steps.Step("A VARIANT holding the text \"12,5\" (VT_BSTR) becomes a CVarion (SetData copies the string).");
    VARIANT received;
    VariantInit(&received);
    received.vt = VT_BSTR;
    received.bstrVal = SysAllocString(OLESTR("12,5"));
    CVarion value;
    const long dataCode = value.SetData(received);
    VariantClear(&received);  // the value owns its own copy
    steps.Show("SetData", value, dataCode, "SetData(VARIANT) = " + Show(value) + ", code " + ResultName(dataCode));

    steps.Step("The device-description type 3 with size 4 names the value's type; the text is parsed into it.");
    const VARTYPE type = CVarion::DDType2VariantType(3, 4);
    if (!steps.Json()) std::printf("   DDType2VariantType(3, 4) = %s\n", TypeName(type).c_str());
    const long code = value.SetType(type);
    steps.Show("SetType(" + TypeName(type) + ")", value, code,
               "SetType(" + TypeName(type) + "): " + Show(value) + ", code " + ResultName(code));

    steps.Step("The number is converted from one engineering unit to another.");
    CVarion converted;
    const long unitCode = value.UnitConvert(1137, 1141, &converted);
    steps.Show("UnitConvert(1137, 1141)", converted, unitCode,
               "UnitConvert(1137 bar -> 1141 psi): " + Show(converted) + ", code " + ResultName(unitCode));

    steps.Step("The converted value is compared with a limit.");
    const CVarion limit(200.0);
    const int withinLimit = converted <= limit;
    steps.Show("operator<=(" + Show(limit) + ")", CVarion(withinLimit), RC_OK,
               Show(converted) + " <= " + Show(limit) + ": " + std::to_string(withinLimit));

    steps.Step("The converted value is rendered with the display format %.2f.");
    const CString shown = converted.GetStringWithDisplayFormat(CString(OLESTR("%.2f")), 0);
    steps.Show("GetStringWithDisplayFormat(%.2f)", CVarion(shown), RC_OK,
               "GetStringWithDisplayFormat(\"%.2f\") = " + shown.ToUtf8());

    steps.Step("A time stamp of the reading, from its ISO 8601 text.");
    CVarion stamp("2026-11-17T20:18:38.25");
    const long stampCode = stamp.SetType(VTX_ISO_DATETIME);
    steps.Show("SetType(VTX_ISO_DATETIME)", stamp, stampCode,
               "SetType(VTX_ISO_DATETIME): " + Show(stamp) + ", code " + ResultName(stampCode));
    if (!steps.Json())
        std::printf("   fields: %04ld-%02ld-%02ld %02ld:%02ld:%02ld.%03ld, day of week %ld\n", stamp.GetYear(),
                    stamp.GetMonth(), stamp.GetDay(), stamp.GetHour(), stamp.GetMinute(), stamp.GetSecond(),
                    stamp.GetMillisecond(), stamp.GetDayOfWeek());

    steps.Step("The values are destroyed and release what they own.");
    if (!steps.Json()) std::printf("   done\n");
    const bool ok = dataCode == RC_OK && code == RC_OK && unitCode == RC_OK && stampCode == RC_OK;
    return ok ? kOk : kFailure;
}

}  // namespace

const Command kDemoCommand = {
    "demo",
    "walk through the typical use of a parameter value",
    "usage: varion demo\n"
    "  Walks through the typical use of a parameter value and prints each step\n"
    "  and its result: a VARIANT holding the text 12,5 comes in, the\n"
    "  device-description type 3 of size 4 makes it a single, the number is\n"
    "  converted from bar to psi, compared with a limit and rendered with the\n"
    "  display format %.2f; a time stamp is read from its ISO 8601 text.\n"
    "  With --json each step's result is one object with its step number.\n"
    "example: varion demo\n"
    "example: varion demo --locale de-DE\n",
    {},
    Run,
};

}  // namespace cli
