// The command-line tool's unit and units commands.
#include "support/test_support.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using varion::test::RunCommand;

int Tool(const std::string& arguments, std::string& output) {
    return RunCommand(std::string("'") + VARION_TOOL_PATH + "' " + arguments, output, true);
}

int CountLines(const std::string& text) {
    int n = 0;
    for (char c : text) n += c == '\n';
    return n;
}

TEST(UnitCli, Converts) {
    struct Case {
        const char* arguments;
        int status;
        const char* expected[3];  // texts the output must contain
    };
    const Case cases[] = {
        {"unit 2.5 1010 1013", 0, {"value: 2500\n", "code:  0 converted", "mm (millimeter)"}},
        {"unit 20 32 33 --type I4", 0, {"type:  VT_I4", "value: 68\n", "°F (degrees Fahrenheit)"}},
        {"unit -40 1001 1002", 0, {"value: -40\n", "code:  0", "°C"}},
        {"unit 1 7 1137", 1, {"code:  1 not convertible", "value: 1\n", "bar (bars)"}},
        {"unit 1 11 9999", 1, {"code:  1 ", "9999 (not in the unit table)", "type:  VT_R8"}},
        {"unit 5 11 0", 1, {"code:  2 no target unit", "value: 5\n", "(no unit)"}},
        {"unit 1 -1 11", 1, {"code:  -2 bad call", "", ""}},
    };
    for (const Case& c : cases) {
        std::string output;
        EXPECT_EQ(Tool(c.arguments, output), c.status) << c.arguments << "\n" << output;
        for (const char* text : c.expected) EXPECT_NE(output.find(text), std::string::npos) << c.arguments << "\n" << output;
    }
}

TEST(UnitCli, RefusesBadArguments) {
    const char* cases[] = {
        "unit",                          // no arguments
        "unit 1 2",                      // TO missing
        "unit x 1010 1013",              // not a number
        "unit 1 1010 99999",             // not a short
        "unit 1 m mm",                   // codes, not symbols
        "unit 300 1010 1013 --type UI1", // VALUE does not fit the type
        "unit 1 1010 1013 --type BSTR",  // not a numeric type
        "unit 1 1010 1013 --type",       // TYPE missing
        "unit 1 1010 1013 --bogus 1",
        "units a b",
        "units --bogus",
    };
    for (const char* arguments : cases) {
        std::string output;
        EXPECT_EQ(Tool(arguments, output), 2) << arguments << "\n" << output;
        EXPECT_NE(output.find("varion: "), std::string::npos) << arguments;
    }
}

TEST(UnitCli, ListsAndFilters) {
    std::string all;
    ASSERT_EQ(Tool("units", all), 0);
    EXPECT_EQ(CountLines(all), 1 + 991);  // a heading and every code

    std::string pascal;
    ASSERT_EQ(Tool("units PASCAL", pascal), 0);
    EXPECT_NE(pascal.find("  1130 Pa "), std::string::npos) << pascal;
    EXPECT_NE(pascal.find("    11 Pa "), std::string::npos) << pascal;
    EXPECT_EQ(pascal.find(" bar "), std::string::npos) << pascal;

    std::string byCode;
    ASSERT_EQ(Tool("units 1013", byCode), 0);
    EXPECT_EQ(CountLines(byCode), 2) << byCode;
    EXPECT_NE(byCode.find("millimeter"), std::string::npos) << byCode;
    EXPECT_NE(byCode.find("1010"), std::string::npos) << byCode;  // its group

    std::string none;
    EXPECT_EQ(Tool("units no-such-unit", none), 1);
    EXPECT_NE(none.find("no unit matches"), std::string::npos) << none;
}

}  // namespace
