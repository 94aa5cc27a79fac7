// The command-line tool's convert command: text in, text out.
#include "convert_test_util.h"

#include <gtest/gtest.h>

using namespace varion::test;

namespace {

struct CliCase {
    const char* arguments;
    int status;
    const char* output;  // the expected "type/value/code" lines
};

std::string RunConvert(const std::string& arguments, int& status, const char* environment = "LC_ALL=C") {
    std::string output;
    status = RunCommand(std::string(environment) + " " + VARION_TOOL_PATH + " convert " + arguments, output);
    return output;
}

TEST(CliConvert, TextsNumbersAndDayCounts) {
    const CliCase cases[] = {
        {"0x1F --to I1", 0, "type:  VT_I1 (16)\nvalue: 31\ncode:  RC_OK (0)\n"},
        {"0xFF --to VT_I1", 0, "type:  VT_I1 (16)\nvalue: -1\ncode:  RC_OK (0)\n"},
        {"'12,5' --to R4", 0, "type:  VT_R4 (4)\nvalue: 12.5\ncode:  RC_OK (0)\n"},
        {"'0x01, 0xAB' --to UI1_ARRAY", 0, "type:  VT_UI1|VT_ARRAY (8209)\nvalue: 0x01, 0xAB\ncode:  RC_OK (0)\n"},
        {"'' --to BOOL", 0, "type:  VT_BOOL (11)\nvalue: false\ncode:  RC_OK (0)\n"},
        {"12abc --to I4", 1, "type:  VT_BSTR (8)\nvalue: 12abc\ncode:  RC_NOT_CONVERTIBLE (-2)\n"},
        {"2.5 --from R8 --to I4", 0, "type:  VT_I4 (3)\nvalue: 3\ncode:  RC_OK (0)\n"},
        {"300 --from I4 --to UI1", 1, "type:  VT_I4 (3)\nvalue: 300\ncode:  RC_ABOVE_MAX (-3)\n"},
        {"0.1 --from R4 --to BSTR", 0, "type:  VT_BSTR (8)\nvalue: 0.100000001490116\ncode:  RC_OK (0)\n"},
        {"45002.5 --from DATE --to R8", 0, "type:  VT_R8 (5)\nvalue: 45000.5\ncode:  RC_OK (0)\n"},
        {"1.5 --from DURATION --to I8", 0, "type:  VT_I8 (20)\nvalue: 129600000\ncode:  RC_OK (0)\n"},
        {"abc --from I4 --to R8", 2, ""},
        {"1 --from UI1_ARRAY --to R8", 2, ""},
        {"1 --to NOPE", 2, ""},
    };
    for (const CliCase& c : cases) {
        int status = -1;
        const std::string output = RunConvert(c.arguments, status);
        EXPECT_EQ(status, c.status) << c.arguments;
        EXPECT_EQ(output, c.output) << c.arguments;
    }
}

TEST(CliConvert, WritesTheDecimalSeparatorOfTheUsersLocale) {
    int status = -1;
    const std::string env = std::string("LOCPATH=") + VARION_TEST_LOCPATH + " LC_ALL=de_DE.UTF-8";
    EXPECT_EQ(RunConvert("'12.5' --to R8", status, env.c_str()), "type:  VT_R8 (5)\nvalue: 12,5\ncode:  RC_OK (0)\n");
    EXPECT_EQ(status, 0);
}

TEST(CliConvert, DateDayCountGivesTheLibrarysDateText) {
    ScopedEnv all("LC_ALL", "C");
    CVarion date = Raw<double>(VT_DATE, 45002.5);
    ASSERT_EQ(date.SetType(VT_BSTR), RC_OK);
    int status = -1;
    EXPECT_EQ(RunConvert("45002.5 --from DATE --to BSTR", status),
              "type:  VT_BSTR (8)\nvalue: " + StringOf(date) + "\ncode:  RC_OK (0)\n");
    EXPECT_EQ(status, 0);
}

}  // namespace
