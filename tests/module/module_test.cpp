// Start-up: the numeric locale and the diagnostic line, in process and as a
// loaded library.
#include "module/module.h"
#include "support/test_support.h"

#include <gtest/gtest.h>

#include <clocale>
#include <string>
#include <vector>

namespace {

std::vector<std::string> g_lines;
void CaptureLine(const OLECHAR* line) { g_lines.push_back(CString(line).ToUtf8()); }

// Runs start-up with the given environment and answers the line it wrote.
std::string StartUpWith(const char* lcAll) {
    varion::test::ScopedEnv locpath("LOCPATH", VARION_TEST_LOCPATH);
    varion::test::ScopedEnv all("LC_ALL", lcAll);
    varion::test::ScopedEnv numeric("LC_NUMERIC", nullptr);
    g_lines.clear();
    const VARION_DIAGNOSTIC_SINK previous = VarionSetDiagnosticSink(CaptureLine);
    EXPECT_TRUE(varion::detail::CVarionApp().InitInstance());
    VarionSetDiagnosticSink(previous);
    EXPECT_EQ(g_lines.size(), 1u);
    return g_lines.empty() ? std::string() : g_lines.front();
}

const std::string kPrefix = "L\xC3\xA4ndereinstellung f\xC3\xBCr Numerik:  ";

}  // namespace

TEST(StartUp, SetsTheUsersNumericLocaleAndReportsIt) {
    EXPECT_EQ(StartUpWith("de_DE.UTF-8"), kPrefix + "de_DE.UTF-8\r\n");
    EXPECT_STREQ(std::localeconv()->decimal_point, ",");
    EXPECT_EQ(StartUpWith("C"), kPrefix + "C\r\n");
    EXPECT_STREQ(std::localeconv()->decimal_point, ".");
}

TEST(StartUp, ALocaleThatCannotBeSetLeavesTheOldOneAndAnEmptyName) {
    std::setlocale(LC_NUMERIC, "C");
    EXPECT_EQ(StartUpWith("xx_NOWHERE.UTF-8"), kPrefix + "\r\n");
    EXPECT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "C");
}

TEST(StartUp, OnlyTheNumericCategoryChanges) {
    std::setlocale(LC_ALL, "C");
    StartUpWith("de_DE.UTF-8");
    EXPECT_STREQ(std::setlocale(LC_TIME, nullptr), "C");
    EXPECT_STREQ(std::setlocale(LC_CTYPE, nullptr), "C");
    std::setlocale(LC_NUMERIC, "C");
}

// Loading the library runs start-up; the default sink writes to standard
// error only when VARION_DEBUG is set.
TEST(StartUp, TheLoadedLibraryWritesTheLineWhenAskedTo) {
    const std::string tool = VARION_TOOL_PATH;
    ASSERT_FALSE(tool.empty());
    const std::string env = std::string("LOCPATH=") + VARION_TEST_LOCPATH + " LC_ALL=de_DE.UTF-8 ";
    std::string out;
    EXPECT_EQ(varion::test::RunCommand(env + "VARION_DEBUG=1 " + tool + " --help 2>&1 >/dev/null", out), 0);
    EXPECT_EQ(out, kPrefix + "de_DE.UTF-8\r\n");
    EXPECT_EQ(varion::test::RunCommand("env -u VARION_DEBUG " + env + tool + " --help 2>&1 >/dev/null", out), 0);
    EXPECT_EQ(out, "");
}
