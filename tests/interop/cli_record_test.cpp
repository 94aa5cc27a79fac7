#include "support/test_support.h"

#include <gtest/gtest.h>

#include <string>

using varion::test::RunCommand;

namespace {

struct ToolRun {
    int status;
    std::string out;
};

ToolRun Tool(const std::string& args) {
    ToolRun r{};
    r.status = RunCommand(std::string(VARION_TOOL_PATH) + " " + args, r.out);
    return r;
}

}  // namespace

TEST(RecordCommand, WritesAndReadsRecords) {
    struct Case {
        const char* args;
        int status;
        const char* out;
    };
    const Case cases[] = {
        {"record 258 --type I4", 0, "0a 00 00 00 03 00 02 01 00 00\n"},
        {"record AB --type BSTR", 0, "0c 00 00 00 08 00 41 00 42 00 00 00\n"},
        {"record --type EMPTY", 0, "06 00 00 00 00 00\n"},
        {"record true --type BOOL", 0, "08 00 00 00 0b 00 01 00\n"},
        {"record 2 --type VTX_ISO_DATETIME", 0, "0e 00 00 00 6a 00 00 00 00 00 00 00 00 40\n"},
        {"record --decode '0a 00 00 00 03 00 02 01 00 00'", 0, "type:   VT_I4 (3)\nvalue:  258\nlength: 10\n"},
        {"record --decode 0c0000000800410042000000", 0, "type:   VT_BSTR (8)\nvalue:  AB\nlength: 12\n"},
        // Refusals.
        {"record 300 --type UI1", 2, ""},
        {"record 1 --type UI1_ARRAY", 2, ""},
        {"record 1 --type UNKNOWN", 2, ""},
        {"record --decode '0a 00 00 00 03 00 02 01 00'", 1, ""},
        {"record --decode 06000000090", 2, ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.args);
        const ToolRun r = Tool(c.args);
        EXPECT_EQ(r.status, c.status);
        EXPECT_EQ(r.out, c.out);
    }
}

TEST(HexCommand, WritesAndReadsDigits) {
    struct Case {
        const char* args;
        int status;
        const char* out;
    };
    const Case cases[] = {
        {"hex 1.0 --type R4", 0, "3f800000\n"},
        {"hex -2 --type I8", 0, "fffffffffffffffe\n"},
        {"hex 4660 --type I2", 0, "1234\n"},
        {"hex --decode 3ff0000000000000 --type R8", 0, "type:  VT_R8 (5)\nvalue: 1.0\n"},
        {"hex --decode C0490FDB --type R4", 0, "type:  VT_R4 (4)\nvalue: -3.141592741012573\n"},
        {"hex true --type BOOL", 1, ""},
        {"hex --decode 3f80000 --type R4", 1, ""},
        {"hex --decode 3f800000 --type R8", 1, ""},
        {"hex 1.0", 2, ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.args);
        const ToolRun r = Tool(c.args);
        EXPECT_EQ(r.status, c.status);
        EXPECT_EQ(r.out, c.out);
    }
}
