// The command-line tool end to end.
#include "support/test_support.h"

#include <gtest/gtest.h>

#include <string>

namespace {

struct ToolRun {
    int status;
    std::string output;
};

ToolRun Varion(const std::string& args) {
    ToolRun r{};
    r.status = varion::test::RunCommand(std::string(VARION_TOOL_PATH) + " " + args, r.output, true);
    return r;
}

}  // namespace

TEST(Cli, ConvertPrintsTypeValueAndCode) {
    struct Case {
        const char* args;
        int status;
        const char* output;
    };
    const Case cases[] = {
        {"convert 2.5 --from R8 --to I4", 0, "type:  VT_I4 (3)\nvalue: 3\ncode:  RC_OK (0)\n"},
        {"convert -2.5 --from VT_R8 --to 3", 0, "type:  VT_I4 (3)\nvalue: -3\ncode:  RC_OK (0)\n"},
        {"convert 300 --from I4 --to UI1", 1, "type:  VT_I4 (3)\nvalue: 300\ncode:  RC_ABOVE_MAX (-3)\n"},
        {"convert 18446744073709551615 --from UI8 --to I8", 1,
         "type:  VT_UI8 (21)\nvalue: 18446744073709551615\ncode:  RC_ABOVE_MAX (-3)\n"},
        {"convert 0.3 --from r8 --to bool", 0, "type:  VT_BOOL (11)\nvalue: true\ncode:  RC_OK (0)\n"},
    };
    for (const Case& c : cases) {
        const ToolRun r = Varion(c.args);
        EXPECT_EQ(r.status, c.status) << c.args;
        EXPECT_EQ(r.output, c.output) << c.args;
    }
}

TEST(Cli, UsageErrorsNameTheBadArgument) {
    struct Case {
        const char* args;
        const char* message;
    };
    const Case cases[] = {
        {"", "usage: varion COMMAND"},
        {"frobnicate", "varion: unknown command 'frobnicate'"},
        {"convert 1", "varion: convert: --to TYPE is required"},
        {"convert 1 --to NOPE", "varion: convert: unknown type 'NOPE'"},
        {"convert 1 --to I4 --bogus x", "varion: convert: unknown option --bogus"},
        {"convert 70000 --from I2 --to I4", "varion: convert: '70000' is not a VT_I2 value"},
    };
    for (const Case& c : cases) {
        const ToolRun r = Varion(c.args);
        EXPECT_EQ(r.status, 2) << c.args;
        EXPECT_NE(r.output.find(c.message), std::string::npos) << c.args << " printed: " << r.output;
    }
}

TEST(Cli, HelpAndDemo) {
    EXPECT_EQ(Varion("--help").status, 0);
    const ToolRun help = Varion("convert --help");
    EXPECT_EQ(help.status, 0);
    EXPECT_NE(help.output.find("example: varion convert"), std::string::npos);
    const ToolRun demo = Varion("demo");
    EXPECT_EQ(demo.status, 0);
    EXPECT_NE(demo.output.find("DDType2VariantType(3, 4) = VT_R4"), std::string::npos);
}

TEST(Cli, CalcAndCompare) {
    struct Case {
        const char* args;
        int status;
        const char* output;
    };
    const Case cases[] = {
        {"calc 100 + 100 --type-a I1 --type-b I1", 0, "type:  VT_I2 (2)\nvalue: 200\ncode:  RC_OK (0)\n"},
        {"calc 2147483647 add 1", 0, "type:  VT_I8 (20)\nvalue: 2147483648\ncode:  RC_OK (0)\n"},
        {"calc 3 - 5 --type-a UI1 --type-b UI1", 1, "type:  VT_UI8 (21)\nvalue: 0\ncode:  RC_NOT_CONVERTIBLE (-2)\n"},
        {"calc 1.5 + 2 --type-a BSTR --type-b BSTR", 0, "type:  VT_BSTR (8)\nvalue: 3.5\ncode:  RC_OK (0)\n"},
        {"calc 1 shl 33", 0, "type:  VT_I4 (3)\nvalue: 2\ncode:  RC_OK (0)\n"},
        {"compare 5 == 5.0000049", 0, "1\n"},
        {"compare 5 Equal 5.0000049", 0, "0\n"},
        {"compare 10 lt 9 --type-a BSTR --type-b BSTR", 0, "1\n"},
        {"compare 10 LittleThen 9 --type-a BSTR --type-b BSTR", 0, "0\n"},
        {"compare 45002.5 == 45002.5 --type-a DATE", 0, "0\n"},
        {"compare 0.4 OR abc", 0, "0\n"},
    };
    for (const Case& c : cases) {
        const ToolRun r = Varion(c.args);
        EXPECT_EQ(r.status, c.status) << c.args;
        EXPECT_EQ(r.output, c.output) << c.args;
    }
    EXPECT_EQ(Varion("calc 1 == 2").status, 2);
    EXPECT_EQ(Varion("compare 1 + 2").status, 2);
    EXPECT_EQ(Varion("calc 1 plus 2").status, 2);
    EXPECT_EQ(Varion("calc x + 1 --type-a I4").status, 2);
}
