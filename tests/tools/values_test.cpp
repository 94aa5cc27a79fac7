// Golden outputs of the commands that read, convert and compute values: how
// the tool reads its arguments into values and prints what the library answers.
#include "tools/tool_run.h"

#include <gtest/gtest.h>

namespace {

using tooltest::ExpectGolden;
using tooltest::Golden;

TEST(ToolValues, Convert) {
    const Golden cases[] = {
        // Without --from the value is a text, read by the target type's rules.
        {"convert 017 --to 3", 0, "type:  VT_I4 (3)\nvalue: 15\ncode:  RC_OK (0)\n"},
        {"convert '0x01, 0xAB' --to UI1_ARRAY", 0,
         "type:  VT_UI1|VT_ARRAY (8209)\nvalue: 0x01, 0xAB\ncode:  RC_OK (0)\n"},
        // With --from the value is one of that type: plain numbers first ...
        {"convert 017 --from I4 --to R8", 0, "type:  VT_R8 (5)\nvalue: 17.0\ncode:  RC_OK (0)\n"},
        {"convert 300 --from I4 --to UI1", 1, "type:  VT_I4 (3)\nvalue: 300\ncode:  RC_ABOVE_MAX (-3)\n"},
        {"convert 18446744073709551615 --from UI8 --to I8", 1,
         "type:  VT_UI8 (21)\nvalue: 18446744073709551615\ncode:  RC_ABOVE_MAX (-3)\n"},
        // ... then the library's text route for the type.
        {"convert 0x10 --from I4 --to R8", 0, "type:  VT_R8 (5)\nvalue: 16.0\ncode:  RC_OK (0)\n"},
        {"convert 1 --from UI1_ARRAY --to R8", 1,
         "type:  VT_UI1|VT_ARRAY (8209)\nvalue: 0x01\ncode:  RC_NOT_CONVERTIBLE (-2)\n"},
    };
    ExpectGolden(cases);
}

TEST(ToolValues, FormatAndDdtype) {
    const Golden cases[] = {
        {"format 3.14159 --type R8 --format %5.2f", 0, " 3.14\n"},
        {"format -1 --type I1 --format %b", 0, "0b11111111\n"},
        {"format 0.5 --type DATE --dd-type 16 --format %H:%M:%S", 0, "12:00:00\n"},
        {"format 5 --type I4 --format %d --json", 0,
         "{\"type\":3,\"type_name\":\"VT_I4\",\"value\":\"5\",\"code\":0,\"code_name\":\"RC_OK\",\"format\":\"%d\","
         "\"dd_type\":0,\"display\":\"5\"}\n"},
        {"ddtype 13 8", 0, "VT_UI4 (19)\n"},
        {"ddtype 12 -7", 0, "VT_UI1|VT_ARRAY (8209)\n"},
        {"ddtype 3 4 --value 12,5", 0, "type:  VT_R4 (4)\nvalue: 12.5\ncode:  RC_OK (0)\n"},
        {"ddtype 1 1 --value 200", 1, "type:  VT_BSTR (8)\nvalue: 200\ncode:  RC_NOT_CONVERTIBLE (-2)\n"},
        {"ddtype 3 4 --json", 0,
         "{\"type\":4,\"type_name\":\"VT_R4\",\"value\":\"\",\"code\":0,\"code_name\":\"RC_OK\",\"dd_type\":3,"
         "\"size\":4}\n"},
    };
    ExpectGolden(cases);
}

// Every spelling of an operation reaches its own operator.
TEST(ToolValues, CalcAndCompare) {
    const Golden cases[] = {
        {"calc 2147483647 add 1", 0, "type:  VT_I8 (20)\nvalue: 2147483648\ncode:  RC_OK (0)\n"},
        {"calc 3 - 5 --type-a UI1 --type-b UI1", 1, "type:  VT_UI8 (21)\nvalue: 0\ncode:  RC_NOT_CONVERTIBLE (-2)\n"},
        {"calc 1 / 0 --json", 1,
         "{\"type\":3,\"type_name\":\"VT_I4\",\"value\":\"0\",\"code\":-2,\"code_name\":\"RC_NOT_CONVERTIBLE\"}\n"},
        {"calc 1 shl 33", 0, "type:  VT_I4 (3)\nvalue: 2\ncode:  RC_OK (0)\n"},
        {"calc 4294967295 '&' 255 --type-a UI4", 0, "type:  VT_UI4 (19)\nvalue: 0\ncode:  RC_OK (0)\n"},
        {"calc neg 1 --type-a UI1", 0, "type:  VT_UI1 (17)\nvalue: 255\ncode:  RC_OK (0)\n"},
        {"calc '~' 0 --type-a I2", 0, "type:  VT_I2 (2)\nvalue: -1\ncode:  RC_OK (0)\n"},
        {"calc inc 255 --type-a UI1", 0, "type:  VT_UI1 (17)\nvalue: 0\ncode:  RC_OK (0)\n"},
        {"compare 5 == 5.0000049", 0, "1\n"},
        {"compare 5 Equal 5.0000049", 0, "0\n"},
        {"compare 10 lt 9 --type-a BSTR --type-b BSTR", 0, "1\n"},
        {"compare 10 LittleThen 9 --type-a BSTR --type-b BSTR", 0, "0\n"},
        {"compare 0.4 OR abc", 0, "0\n"},
        {"compare 1 '<=' 2 --json", 0,
         "{\"type\":3,\"type_name\":\"VT_I4\",\"value\":\"1\",\"code\":0,\"code_name\":\"RC_OK\","
         "\"a_type\":\"VT_I4\",\"b_type\":\"VT_I4\"}\n"},
    };
    ExpectGolden(cases);
}

TEST(ToolValues, RecordAndHex) {
    const Golden cases[] = {
        {"record 258 --type I4", 0, "0a 00 00 00 03 00 02 01 00 00\n"},
        {"record 2 --type VTX_ISO_DATETIME", 0, "0e 00 00 00 6a 00 00 00 00 00 00 00 00 40\n"},
        {"record --decode '0a 00 00 00 03 00 02 01 00 00'", 0,
         "type:   VT_I4 (3)\nvalue:  258\ncode:   RC_OK (0)\nlength: 10\n"},
        {"record --decode '0a 00 00 00 03 00 02 01 00'", 1,
         "type:   VT_EMPTY (0)\nvalue:\ncode:   RC_NOT_CONVERTIBLE (-2)\nlength: -2\n"},
        {"record 258 --type I4 --json", 0,
         "{\"type\":3,\"type_name\":\"VT_I4\",\"value\":\"258\",\"code\":0,\"code_name\":\"RC_OK\","
         "\"record\":\"0a 00 00 00 03 00 02 01 00 00\"}\n"},
        {"record 1 --type UI1_ARRAY --json", 1,
         "{\"type\":8209,\"type_name\":\"VT_UI1|VT_ARRAY\",\"value\":\"0x01\",\"code\":-1,\"code_name\":"
         "\"RC_NOT_APPLICABLE\",\"record\":\"\"}\n"},
        {"hex -2 --type I8", 0, "fffffffffffffffe\n"},
        {"hex 1.0 --type R4 --json", 0,
         "{\"type\":4,\"type_name\":\"VT_R4\",\"value\":\"1.0\",\"code\":0,\"code_name\":\"RC_OK\",\"hex\":\"3f800000\"}\n"},
        {"hex --decode C0490FDB --type R4", 0, "type:  VT_R4 (4)\nvalue: -3.141592741012573\ncode:  RC_OK (0)\n"},
        {"hex true --type BOOL", 1, ""},
        {"hex --decode 3f80000 --type R4", 1, "type:  VT_EMPTY (0)\nvalue:\ncode:  RC_NOT_CONVERTIBLE (-2)\n"},
        {"hex --decode 3f800000 --type R8", 1, "type:  VT_R8 (5)\nvalue: 0.0\ncode:  RC_NOT_CONVERTIBLE (-2)\n"},
    };
    ExpectGolden(cases);
}

}  // namespace
