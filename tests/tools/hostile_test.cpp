// Hostile arguments for every command: each run ends with a result, the
// library's failure code or a one-line usage error; never with a crash, a
// sanitizer report or broken JSON.
#include "tools/tool_run.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using Argv = std::vector<std::string>;

const std::vector<std::string>& Values() {
    static const std::vector<std::string> values = {
        "", " ", "-", "+", "0", "-0", "nan", "-inf", "1e999999", "-1e999999", "1e-999999",
        std::string(5000, '9'), "-" + std::string(400, '9'), "0x" + std::string(300, 'F'),
        "0b" + std::string(200, '1'), "18446744073709551616", "-9223372036854775809", "\xff\xfe",
        "\xc0\x80", "\xed\xa0\x80", "\xf4\x90\x80\x80", "a\nb\tc", "%n%n%s%s%*d", "%9999999999d",
        std::string(100000, 'x'), ",,,", "0x01, 0xZZ", "PT", "-PT.S", ":", "12:99:99",
        "9999-99-99T99:99:99.999", "17.11.2026 20:18:38,99999999999999999999", "00:00:" + std::string(400, '5'),
    };
    return values;
}

const std::vector<std::string>& Types() {
    static const std::vector<std::string> types = {
        "I1",   "UI1",        "I2",     "UI2",    "I4",         "UI4",        "I8",           "UI8",
        "R4",   "R8",         "BOOL",   "BSTR",   "EMPTY",      "DATE",       "VTX_DURATION", "VTX_DURATION_MSF",
        "102",  "103",        "105",    "106",    "UI1_ARRAY",  "I4_ARRAY",   "VARIANT_ARRAY", "UNKNOWN",
        "NULL", "0x4003",     "0xFFFF", "104",    "99999",      "",           "\xff",          "VT_ARRAY",
    };
    return types;
}

std::string Printable(const Argv& argv) {
    std::string out = "varion";
    for (const std::string& a : argv) {
        out += " [";
        for (std::size_t k = 0; k < a.size() && k < 40; ++k) {
            const auto c = static_cast<unsigned char>(a[k]);
            out += c >= 0x20 && c < 0x7F ? std::string(1, static_cast<char>(c)) : "\\x" + std::to_string(c);
        }
        out += a.size() > 40 ? "...]" : "]";
    }
    return out;
}

void Check(Argv argv, bool json) {
    if (json) argv.push_back("--json");
    SCOPED_TRACE(Printable(argv));
    const tooltest::ToolRun run = tooltest::VarionArgv(argv);
    ASSERT_TRUE(run.status == 0 || run.status == 1 || run.status == 2) << run.status << "\n" << run.err;
    for (const char* report : {"Sanitizer", "runtime error", "terminate", "Segmentation"})
        EXPECT_EQ(run.err.find(report), std::string::npos) << run.err;
    if (run.status == 2) {
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(run.err.rfind("varion: ", 0), 0u) << run.err;
        EXPECT_EQ(run.err.find('\n'), run.err.size() - 1) << "one line: " << run.err;
    }
    if (!json) return;
    for (const std::string& line : tooltest::Lines(run.out)) EXPECT_EQ(tooltest::JsonObjectError(line), "");
}

TEST(ToolHostile, ValuesOfEveryType) {
    const auto& values = Values();
    const auto& types = Types();
    for (std::size_t i = 0; i < values.size(); ++i)
        for (std::size_t j = 0; j < types.size(); ++j)
            Check({"convert", values[i], "--from", types[j], "--to", types[(i + j) % types.size()]}, (i + j) % 2 == 0);
}

TEST(ToolHostile, EveryCommand) {
    const auto& values = Values();
    const auto& types = Types();
    const char* ops[] = {"+", "-", "*", "/", "%", "<<", ">>", "|", "&", "^", "==", "<", "GreaterEqual", "OR", "neg"};
    const char* formats[] = {"", "%", "%%", "%d %d", "%*d", "%n", "%100X", "%999.999f", "%I64I64x",
                             "%lllld", "%b%b", "%s", "%-+ #0e", "%Y-%m-%d %H:%M:%S %%", "%#H:%#M:%#S %D %q"};
    const char* codes[] = {"-1", "0", "99999", "32767", "-32768", "1010", "32", "16416", "", "x"};
    const std::string locales[] = {"C", "xx_YY", "\xff", "de-DE", "../../etc", std::string(300, 'L')};
    for (std::size_t i = 0; i < values.size(); ++i) {
        const std::string& v = values[i];
        const std::string& w = values[(i * 7 + 3) % values.size()];
        const std::string& t = types[i % types.size()];
        const std::string& u = types[(i * 5 + 1) % types.size()];
        const bool json = i % 2 == 0;
        Check({"convert", v, "--to", t}, json);
        Check({"format", v, "--type", t, "--format", formats[i % std::size(formats)], "--dd-type",
               std::to_string(static_cast<int>(i % 25) - 2)},
              json);
        Check({"calc", v, ops[i % std::size(ops)], w, "--type-a", t, "--type-b", u}, json);
        Check({"calc", v, ops[i % std::size(ops)], w}, !json);
        Check({"calc", ops[i % std::size(ops)], v}, json);
        Check({"compare", v, ops[(i + 10) % std::size(ops)], w, "--type-a", u}, json);
        Check({"unit", v, codes[i % std::size(codes)], codes[(i + 3) % std::size(codes)], "--type", t}, json);
        Check({"unit", v, "1010", "1013"}, !json);
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
}

TEST(ToolHostile, RecordsOfEveryLength) {
    // Byte records that stop short, run long or name odd types.
    const char* records[] = {"", "00", "06000000", "0600000000", "060000000000", "0e000000050000000000000000",
                             "0e00000005000000000000000000f07f00", "0a000000080041000000", "0c0000000800410042000000",
                             "ffffffff0800", "08000000 0b00 0200", "0600000011200000", "0e000000070000000000f87fff"};
    for (const char* record : records) Check({"record", "--decode", record}, true);
}

}  // namespace
