// What every command of the tool shares: help with working examples, usage
// errors, option spellings, --json, --locale and the exit statuses.
#include "tools/tool_run.h"

#include <gtest/gtest.h>

namespace {

using tooltest::Lines;
using tooltest::Varion;

TEST(Tool, EveryCommandHasHelpWhoseExamplesRun) {
    std::vector<std::string> commands;  // as the tool's own help lists them
    bool inList = false;
    for (const std::string& line : Lines(Varion("--help").out)) {
        if (inList && line.rfind("  ", 0) != 0) break;
        if (inList) commands.push_back(line.substr(2, line.find(' ', 2) - 2));
        inList = inList || line == "commands:";
    }
    ASSERT_EQ(commands.size(), 12u);
    for (const std::string& name : commands) {
        SCOPED_TRACE(name);
        const auto help = Varion(name + " --help");
        EXPECT_EQ(help.status, 0);
        EXPECT_EQ(help.out.rfind("usage: varion " + name, 0), 0u) << help.out;
        EXPECT_NE(help.out.find("  --locale NAME"), std::string::npos);
        EXPECT_EQ(Varion("help " + name).out, help.out);
        EXPECT_EQ(Varion(name + " -h").out, help.out);
        int examples = 0;
        const std::string prefix = "example: varion ";
        for (const std::string& line : Lines(help.out)) {
            if (line.rfind(prefix, 0) != 0) continue;
            ++examples;
            EXPECT_TRUE(line.rfind(prefix + name + " ", 0) == 0 || line == prefix + name) << line;
            const auto run = Varion(line.substr(prefix.size()));
            EXPECT_EQ(run.status, 0) << line << "\n" << run.err;
            EXPECT_EQ(run.err, "") << line;
            EXPECT_FALSE(run.out.empty()) << line;
        }
        EXPECT_GE(examples, 1);
    }
}

TEST(Tool, UsageErrorsAreOneLineNamingTheArgument) {
    const std::pair<const char*, const char*> cases[] = {
        {"", "missing COMMAND (see 'varion --help')"},
        {"frobnicate", "unknown command 'frobnicate' (see 'varion --help')"},
        {"help frobnicate", "help: unknown command 'frobnicate'"},
        {"convert 1", "convert: --to TYPE is required"},
        {"convert 1 2 --to I4", "convert: unexpected argument '2'"},
        {"convert 1 --to I4 --from ''", "convert: unknown type '' for --from"},
        {"convert 1 --to", "convert: --to needs a value"},
        {"convert 1 --to I4 --bogus x", "convert: unknown option --bogus"},
        {"duration 1:00 --iso=1", "duration: --iso takes no value"},
        {"convert 70000 --from I2 --to I4", "convert: '70000' is not a VT_I2 value"},
        {"format 1 --type I4 --dd-type 40000", "format: --dd-type '40000' is not a whole number from -32768 to 32767"},
        {"calc 1 plus 2", "calc: unknown operation 'plus'"},
        {"calc 1 == 2", "calc: '==' is a comparison (see 'varion compare')"},
        {"compare 1 + 2", "compare: '+' is not a comparison (see 'varion calc')"},
        {"unit 1 1010 1013 --type BSTR", "unit: --type takes a numeric type, not VT_BSTR"},
        {"record --decode 06000000090", "record: --decode '06000000090' is not a sequence of hex bytes"},
        {"ddtype -1 4", "ddtype: DDTYPE '-1' is not a whole number from 0 to 65535"},
    };
    for (const auto& [arguments, message] : cases) {
        SCOPED_TRACE(arguments);
        const auto run = Varion(arguments);
        EXPECT_TRUE(run.status == 2 && run.out.empty()) << run.status;
        EXPECT_EQ(run.err, std::string("varion: ") + message + "\n");
    }
    // A control character in the argument stays out of the line; a long one is shortened.
    const auto run = tooltest::VarionArgv({"convert", "a\nb\x7f", "--from", "I4", "--to", "R8"});
    EXPECT_EQ(run.err, "varion: convert: 'a\\x0ab\\x7f' is not a VT_I4 value\n");
    const auto longRun = tooltest::VarionArgv({"convert", std::string(5000, '7'), "--from", "I1", "--to", "R8"});
    EXPECT_EQ(longRun.err, "varion: convert: '" + std::string(60, '7') + "...' is not a VT_I1 value\n");
}

TEST(Tool, OptionSpellings) {
    const std::pair<const char*, const char*> cases[] = {
        {"convert --to=I4 -5", "type:  VT_I4 (3)\nvalue: -5\ncode:  RC_OK (0)\n"},
        {"convert --to I4 -- -5", "type:  VT_I4 (3)\nvalue: -5\ncode:  RC_OK (0)\n"},
        {"convert --to BSTR -- --json", "type:  VT_BSTR (8)\nvalue: --json\ncode:  RC_OK (0)\n"},
        {"convert 0xAB --to ui1_array", "type:  VT_UI1|VT_ARRAY (8209)\nvalue: 0xAB\ncode:  RC_OK (0)\n"},
        {"convert 0xAB --to 0x2011", "type:  VT_UI1|VT_ARRAY (8209)\nvalue: 0xAB\ncode:  RC_OK (0)\n"},
    };
    for (const auto& [arguments, out] : cases) EXPECT_EQ(Varion(arguments).out, out) << arguments;
    const auto version = Varion("--version");
    EXPECT_TRUE(version.status == 0 && version.out.rfind("varion ", 0) == 0 && Lines(version.out).size() == 1u)
        << version.out;
}

TEST(Tool, JsonEscapesTextsAndRepairsBrokenUtf8) {
    const auto escaped = tooltest::VarionArgv({"convert", "tab\t\"q\" back\\slash \x01", "--to", "BSTR", "--json"});
    EXPECT_EQ(escaped.out,
              "{\"type\":8,\"type_name\":\"VT_BSTR\",\"value\":\"tab\\t\\\"q\\\" back\\\\slash \\u0001\",\"code\":0,"
              "\"code_name\":\"RC_OK\"}\n");
    // The format argument is echoed as it came; a byte that starts no UTF-8
    // sequence becomes U+FFFD (the library's text of the value does too).
    const auto broken = tooltest::VarionArgv({"format", "\xff", "--type", "BSTR", "--format", "%d\xc3", "--json"});
    EXPECT_EQ(broken.status, 0);
    EXPECT_EQ(broken.out,
              "{\"type\":8,\"type_name\":\"VT_BSTR\",\"value\":\"\xEF\xBF\xBD\",\"code\":0,\"code_name\":\"RC_OK\","
              "\"format\":\"%d\xEF\xBF\xBD\",\"dd_type\":0,\"display\":\"\xEF\xBF\xBD\"}\n");
}

TEST(Tool, LocaleOptionSetsNumbersAndDates) {
    // --locale and the environment give the same run.
    const auto option = Varion("convert 45002.75 --from DATE --to BSTR --locale de-DE");
    EXPECT_EQ(option.out, "type:  VT_BSTR (8)\nvalue: 17.03.2023 18:00:00\ncode:  RC_OK (0)\n");
    EXPECT_EQ(option.out, Varion("convert 45002.75 --from DATE --to BSTR", "LC_ALL=de_DE.UTF-8").out);
    EXPECT_EQ(option.err, "");
    // A locale the C library lacks: dates from the library's own table,
    // numbers with '.', and a warning.
    const auto missing = Varion("calc 1.5 + 1 --type-a BSTR --type-b BSTR --locale de_AT.ISO-8859-15");
    EXPECT_EQ(missing.status, 0);
    EXPECT_EQ(missing.out, "type:  VT_BSTR (8)\nvalue: 2.5\ncode:  RC_OK (0)\n");
    EXPECT_EQ(missing.err,
              "varion: warning: the C library has no locale 'de_AT.ISO-8859-15'; numbers are written with '.'\n");
    EXPECT_EQ(Varion("date 17.11.2026 --locale de_AT.ISO-8859-15").status, 0);
}

}  // namespace
