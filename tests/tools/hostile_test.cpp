// Hostile arguments for every command: each run ends with a result, the
// library's failure code or a one-line usage error; never with a crash, a
// sanitizer report or broken JSON.
#include "tools/tool_run.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using Argv = std::vector<std::string>;

const std::vector<std::string> kValues = {
    "", " ", "-", "+", "0", "-0", "nan", "-inf", "1e999999", "-1e999999", "1e-999999",
    std::string(5000, '9'), "-" + std::string(400, '9'), "0x" + std::string(300, 'F'),
    "0b" + std::string(200, '1'), "18446744073709551616", "-9223372036854775809", "\xff\xfe",
    "\xc0\x80", "\xed\xa0\x80", "\xf4\x90\x80\x80", "a\nb\tc", "%n%n%s%s%*d", "%9999999999d",
    std::string(100000, 'x'), ",,,", "0x01, 0xZZ", "PT", "-PT.S", ":", "12:99:99",
    "9999-99-99T99:99:99.999", "17.11.2026 20:18:38,99999999999999999999", "00:00:" + std::string(400, '5'),
};

const std::vector<std::string> kTypes = {
    "I1",   "UI1",    "I2",     "UI2", "I4",    "UI4",       "I8",       "UI8",           "R4",      "R8",
    "BOOL", "BSTR",   "EMPTY",  "DATE", "VTX_DURATION", "VTX_DURATION_MSF", "102", "103",  "105",     "106",
    "UI1_ARRAY", "I4_ARRAY", "VARIANT_ARRAY", "UNKNOWN", "NULL", "0x4003", "0xFFFF", "104", "99999", "", "\xff",
    "VT_ARRAY",
};

std::string jsonOutputs;  // every run with --json, read once at the end of each test

void Check(Argv argv, bool json) {
    if (json) argv.push_back("--json");
    std::string shown = "varion";  // printable and short
    for (const std::string& a : argv) {
        shown += " [";
        for (std::size_t k = 0; k < a.size() && k < 40; ++k)
            shown += a[k] >= 0x20 && a[k] < 0x7F ? std::string(1, a[k]) : "\\x" + std::to_string(a[k] & 0xFF);
        shown += a.size() > 40 ? "...]" : "]";
    }
    SCOPED_TRACE(shown);
    const tooltest::ToolRun run = tooltest::VarionArgv(argv);
    ASSERT_TRUE(run.status >= 0 && run.status <= 2) << run.status << "\n" << run.err;
    for (const char* report : {"Sanitizer", "runtime error", "terminate", "Segmentation"})
        EXPECT_EQ(run.err.find(report), std::string::npos) << run.err;
    if (run.status == 2) {
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(run.err.rfind("varion: ", 0), 0u) << run.err;
        EXPECT_EQ(run.err.find('\n'), run.err.size() - 1) << "one line: " << run.err;
    }
    if (json) jsonOutputs += run.out;
}

TEST(ToolHostile, ValuesOfEveryType) {
    jsonOutputs.clear();
    for (std::size_t i = 0; i < kValues.size(); ++i)
        for (std::size_t j = 0; j < kTypes.size(); ++j)
            Check({"convert", kValues[i], "--from", kTypes[j], "--to", kTypes[(i + j) % kTypes.size()]},
                  (i + j) % 2 == 0);
    EXPECT_EQ(tooltest::JsonErrors(jsonOutputs), "");
}

TEST(ToolHostile, EveryCommand) {
    const char* ops[] = {"+", "-", "*", "/", "%", "<<", ">>", "|", "&", "^", "==", "<", "GreaterEqual", "OR", "neg"};
    const char* formats[] = {"", "%", "%%", "%d %d", "%*d", "%n", "%100X", "%999.999f", "%I64I64x",
                             "%lllld", "%b%b", "%s", "%-+ #0e", "%Y-%m-%d %H:%M:%S %%", "%#H:%#M:%#S %D %q"};
    const char* codes[] = {"-1", "0", "99999", "32767", "-32768", "1010", "32", "16416", "", "x"};
    const std::string locales[] = {"C", "xx_YY", "\xff", "de-DE", "../../etc", std::string(300, 'L')};
    jsonOutputs.clear();
    for (std::size_t i = 0; i < kValues.size(); ++i) {
        const std::string& v = kValues[i];
        const std::string& w = kValues[(i * 7 + 3) % kValues.size()];
        const std::string& t = kTypes[i % kTypes.size()];
        const std::string& u = kTypes[(i * 5 + 1) % kTypes.size()];
        const std::string op = ops[i % std::size(ops)];
        const bool json = i % 2 == 0;
        Check({"convert", v, "--to", t}, json);
        Check({"format", v, "--type", t, "--format", formats[i % std::size(formats)], "--dd-type",
               std::to_string(static_cast<int>(i % 25) - 2)}, json);
        Check({"calc", v, op, w, "--type-a", t, "--type-b", u}, json);
        Check({"calc", op, v}, json);
        Check({"compare", v, ops[(i + 10) % std::size(ops)], w, "--type-a", u}, json);
        Check({"unit", v, codes[i % std::size(codes)], codes[(i + 3) % std::size(codes)], "--type", t}, json);
        Check({"units", v}, json);
        Check({"date", v}, json);
        Check({"date", v, "--iso"}, !json);
        Check({"duration", v}, json);
        Check({"duration", v, "--iso"}, !json);
        Check({"record", v, "--type", t}, json);
        Check({"record", "--decode", v}, !json);
        Check({"hex", v, "--type", t}, json);
        Check({"hex", "--decode", v, "--type", u}, !json);
        Check({"ddtype", v, w}, json);
        Check({"ddtype", std::to_string(i * 11), std::to_string(static_cast<int>(i) - 4), "--value", v}, !json);
        Check({v}, json);
        Check({"demo", "--locale", locales[i % std::size(locales)]}, json);
        Check({t, v, "--" + v.substr(0, 100)}, !json);  // the whole shell line stays below 128 KiB
    }
    // Byte records that stop short, run long or name odd types.
    for (const char* record : {"", "00", "06000000", "0600000000", "060000000000", "0e000000050000000000000000",
                               "0e00000005000000000000000000f07f00", "0a000000080041000000", "0c0000000800410042000000",
                               "ffffffff0800", "08000000 0b00 0200", "0600000011200000", "0e000000070000000000f87fff"})
        Check({"record", "--decode", record}, true);
    EXPECT_EQ(tooltest::JsonErrors(jsonOutputs), "");
}

}  // namespace
