// varion format and the demo's display step, end to end.
#include "support/test_support.h"

#include <gtest/gtest.h>

#include <regex>
#include <string>

namespace {

struct ToolRun {
    int status;
    std::string output;
};

ToolRun Varion(const std::string& args) {
    ToolRun r{};
    r.status = varion::test::RunCommand("LC_ALL=C " + std::string(VARION_TOOL_PATH) + " " + args, r.output, true);
    return r;
}

TEST(CliFormat, PrintsTheDisplayText) {
    struct Case {
        const char* args;
        const char* output;
    };
    const Case cases[] = {
        {"format 3.14159 --type R8 --format %5.2f", " 3.14\n"},
        {"format 31 --type I4 --format %X", "0x1F\n"},
        {"format -1 --type I1 --format %b", "0b11111111\n"},
        {"format 8 --type UI2 --format %o", "010\n"},
        {"format 2.5 --type R8", "2.5\n"},
        {"format nan --type R8 --format %f", "< Not a Number (NaN) >\n"},
        {"format true --type BOOL --format ''", "true\n"},
        {"format '0x01, 0xAB' --type UI1_ARRAY --format %02X", "0x01, 0xAB\n"},
        {"format 0.5 --type DATE --dd-type 16 --format %H:%M:%S", "12:00:00\n"},
        {"format 46343.5 --type VTX_ISO_DATETIME --format %d.%m.%Y", "17.11.2026\n"},
        {"format 2026-11-17T20:18:38 --type VTX_ISO_DATETIME", "2026-11-17T20:18:38\n"},
        {"format 'Speed' --type BSTR --format %d", "Speed\n"},
        {"format 5 --type I4 --format '%d %d'", "\n"},
    };
    for (const Case& c : cases) {
        const ToolRun r = Varion(c.args);
        EXPECT_EQ(r.status, 0) << c.args;
        EXPECT_EQ(r.output, c.output) << c.args;
    }
}

TEST(CliFormat, UsageErrors) {
    struct Case {
        const char* args;
        const char* message;
    };
    const Case cases[] = {
        {"format 1", "varion: format: --type TYPE is required"},
        {"format --type I4", "varion: format: expected one VALUE"},
        {"format 1 --type NOPE", "varion: format: unknown type 'NOPE'"},
        {"format 1 --type I4 --width 3", "varion: format: unknown option --width"},
        {"format 1 --type I4 --dd-type 40000", "varion: format: --dd-type takes a number"},
        {"format 1 --type I4 --dd-type x", "varion: format: --dd-type takes a number"},
        {"format abc --type I4", "varion: format: 'abc' is not a VT_I4 value"},
        {"format abc --type DATE", "varion: format: 'abc' is not a VT_DATE value"},
    };
    for (const Case& c : cases) {
        const ToolRun r = Varion(c.args);
        EXPECT_EQ(r.status, 2) << c.args;
        EXPECT_NE(r.output.find(c.message), std::string::npos) << c.args << " printed: " << r.output;
    }
    const ToolRun help = Varion("format --help");
    EXPECT_EQ(help.status, 0);
    EXPECT_NE(help.output.find("usage: varion format VALUE --type TYPE"), std::string::npos);
}

TEST(CliFormat, DemoRendersItsValue) {
    const ToolRun demo = Varion("demo");
    EXPECT_EQ(demo.status, 0);
    // The converted pressure with two decimals.
    EXPECT_TRUE(std::regex_search(demo.output, std::regex("GetStringWithDisplayFormat\\(\"%\\.2f\"\\) = [0-9]+\\.[0-9]{2}\n")))
        << demo.output;
}

}  // namespace
