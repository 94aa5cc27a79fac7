// Golden outputs of the date, duration, unit and demo commands.
#include "tools/tool_run.h"

#include <gtest/gtest.h>

namespace {

using tooltest::ExpectGolden;
using tooltest::Golden;
using tooltest::Varion;

// One hour east of UTC, no daylight saving: the zone offset is +01:00.
constexpr const char* kCet = "TZ=CET-1";

TEST(ToolTextForms, DateAndDuration) {
    const Golden cases[] = {
        {"date '17.11.2026 20:18:38,250' --locale de-DE", 0,
         "type:      VT_DATE (7)\nvalue:     17.11.2026 20:18:38,250\ncode:      RC_OK (0)\n"
         "day count: 46343.846276041666\ndate:      2026-11-17 (Tuesday)\ntime:      20:18:38, millisecond 250\n"
         "text:      17.11.2026 20:18:38,250\niso:       2026-11-17T20:18:38.25\n"
         "iso zone:  2026-11-17T20:18:38+01:00\n",
         kCet},
        {"date 2026-11-17T20:18:38.25 --iso --json", 0,
         "{\"type\":106,\"type_name\":\"VTX_ISO_DATETIME\",\"value\":\"2026-11-17T20:18:38.25\",\"code\":0,"
         "\"code_name\":\"RC_OK\",\"day_count\":46343.846276041666,\"year\":2026,\"month\":11,\"day\":17,"
         "\"day_of_week\":2,\"hour\":20,\"minute\":18,\"second\":38,\"millisecond\":250,"
         "\"text\":\"11/17/2026 20:18:38,250\",\"iso\":\"2026-11-17T20:18:38.25\","
         "\"iso_zone\":\"2026-11-17T20:18:38+01:00\"}\n",
         kCet},
        {"date 2026-02-30 --iso", 1, "type:  VT_BSTR (8)\nvalue: 2026-02-30\ncode:  RC_NOT_CONVERTIBLE (-2)\n"},
        {"duration '1 12:30:05,25'", 0,
         "type:          VTX_DURATION_MSF (101)\nvalue:         1 12:30:05.250\ncode:          RC_OK (0)\n"
         "day count:     1.5208940972222222\ncomponents:    1 days 12 h 30 min 5 s 250 ms 0/32 ms\n"
         "total ms:      131405250\ntotal 1/32 ms: 4204968000\ntext:          1 12:30:05.250\n"
         "iso:           PT131405.25S\n"},
        {"duration -PT1.25S --iso", 0,
         "type:          VTX_ISO_DURATION (105)\nvalue:         -PT1.25S\ncode:          RC_OK (0)\n"
         "day count:     -1.4467592592592593e-05\ncomponents:    0 days 0 h 0 min -1 s -250 ms 0/32 ms\n"
         "total ms:      -1250\ntotal 1/32 ms: -40000\ntext:          -00:00:01.250\n"
         "iso:           -PT1.25S\n"},
        {"duration PT90.5S --iso --json", 0,
         "{\"type\":105,\"type_name\":\"VTX_ISO_DURATION\",\"value\":\"PT90.5S\",\"code\":0,\"code_name\":\"RC_OK\","
         "\"day_count\":0.0010474537037037037,\"days\":0,\"hours\":0,\"minutes\":1,\"seconds\":30,"
         "\"milliseconds\":500,\"fractions\":0,\"total_milliseconds\":90500,\"total_fractions\":2896000,"
         "\"text\":\"00:01:30.500\",\"iso\":\"PT90.5S\"}\n"},
    };
    ExpectGolden(cases);
    // The local form follows the user locale: en-US reads and writes month first.
    const auto us = Varion("date '11/17/2026 8:05 PM' --locale en-US");
    EXPECT_NE(us.out.find("\nvalue:     11/17/2026 8:05:00 PM\n"), std::string::npos) << us.out;
    EXPECT_NE(us.out.find("\niso:       2026-11-17T20:05:00\n"), std::string::npos) << us.out;
}

TEST(ToolTextForms, Unit) {
    const Golden cases[] = {
        {"unit 2.5 1010 1013", 0,
         "type:  VT_R8 (5)\nvalue: 2500.0\ncode:  RC_OK (0): converted\nfrom:  1010 m (meter)\n"
         "to:    1013 mm (millimeter)\n"},
        {"unit 20 32 33 --type I4", 0,
         "type:  VT_I4 (3)\nvalue: 68\ncode:  RC_OK (0): converted\nfrom:  32 °C (degrees Celsius)\n"
         "to:    33 °F (degrees Fahrenheit)\n"},
        {"unit 5 11 0", 1,
         "type:  VT_R8 (5)\nvalue: 5.0\ncode:  RC_UNIT_NO_TARGET (2): no target unit; value passed on "
         "unconverted\nfrom:  11 Pa (pascals)\nto:    0 (no unit)\n"},
        {"unit 1 -1 11", 1,
         "type:  VT_EMPTY (0)\nvalue:\ncode:  RC_NOT_CONVERTIBLE (-2): bad call (source code -1); result "
         "untouched\nfrom:  -1 (not in the unit table)\nto:    11 Pa (pascals)\n"},
        {"unit 1 7 1137 --json", 1,
         "{\"type\":5,\"type_name\":\"VT_R8\",\"value\":\"1.0\",\"code\":1,\"code_name\":\"RC_UNIT_NOT_CONVERTIBLE\","
         "\"from\":7,\"to\":1137}\n"},
        {"units 1013 --json", 0,
         "{\"code\":1013,\"symbol\":\"mm\",\"name\":\"millimeter\",\"group\":1010,\"kind\":5,\"factor\":1000,"
         "\"quantity\":\"length\"}\n"},
        {"units no-such-unit", 1, ""},
    };
    ExpectGolden(cases);
    EXPECT_EQ(tooltest::Lines(Varion("units").out).size(), 1u + 991u);  // a heading and every code
    const auto pascal = Varion("units PASCAL");
    for (const char* row : {"  1130 Pa ", "    11 Pa "})
        EXPECT_NE(pascal.out.find(row), std::string::npos) << pascal.out;
    EXPECT_EQ(pascal.out.find(" bar "), std::string::npos) << pascal.out;
    EXPECT_EQ(Varion("units no-such-unit").err, "varion: units: no unit matches 'no-such-unit'\n");
}

TEST(ToolTextForms, DemoWalksTheTypicalUse) {
    const Golden cases[] = {
        {"demo", 0,
         "varion demo: a device parameter's value from an Automation VARIANT to the display\n"
         "\n1. A VARIANT holding the text \"12,5\" (VT_BSTR) becomes a CVarion (SetData copies the string).\n"
         "   SetData(VARIANT) = VT_BSTR 12,5, code RC_OK\n"
         "\n2. The device-description type 3 with size 4 names the value's type; the text is parsed into it.\n"
         "   DDType2VariantType(3, 4) = VT_R4\n   SetType(VT_R4): VT_R4 12.5, code RC_OK\n"
         "\n3. The number is converted from one engineering unit to another.\n"
         "   UnitConvert(1137 bar -> 1141 psi): VT_R4 181.297164916992188, code RC_OK\n"
         "\n4. The converted value is compared with a limit.\n   VT_R4 181.297164916992188 <= VT_R8 200.0: 1\n"
         "\n5. The converted value is rendered with the display format %.2f.\n"
         "   GetStringWithDisplayFormat(\"%.2f\") = 181.30\n"
         "\n6. A time stamp of the reading, from its ISO 8601 text.\n"
         "   SetType(VTX_ISO_DATETIME): VTX_ISO_DATETIME 2026-11-17T20:18:38.25, code RC_OK\n"
         "   fields: 2026-11-17 20:18:38.250, day of week 2\n"
         "\n7. The values are destroyed and release what they own.\n"
         "   done\n"},
    };
    ExpectGolden(cases);
    // Under a German user locale the library writes and shows decimal commas.
    const auto german = Varion("demo --locale de-DE");
    EXPECT_NE(german.out.find("GetStringWithDisplayFormat(\"%.2f\") = 181,30\n"), std::string::npos) << german.out;
}

}  // namespace
