// Start-up: the numeric locale and the diagnostic line, in process and as a
// loaded library.
#include "module/module.h"
#include "support/test_support.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdio>
#include <string>
#include <vector>

#if defined(_WIN32)
#include <fcntl.h>
#include <io.h>
#endif

namespace {

std::vector<std::string> g_lines;
void CaptureLine(const OLECHAR* line) { g_lines.push_back(CString(line).ToUtf8()); }

// Runs start-up with the given environment and answers the line it wrote.
// (Windows takes the user's locale from the system, not the environment.)
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

#if defined(_WIN32)
// The name the C runtime gives the user's default numeric locale.
std::string UsersNumericLocale() {
    const char* before = std::setlocale(LC_NUMERIC, nullptr);
    const std::string restore = before != nullptr ? before : "C";
    const char* name = std::setlocale(LC_NUMERIC, "");
    const std::string result = name != nullptr ? name : "";
    std::setlocale(LC_NUMERIC, restore.c_str());
    return result;
}
#endif

}  // namespace

TEST(StartUp, SetsTheUsersNumericLocaleAndReportsIt) {
    std::setlocale(LC_NUMERIC, "C");
#if defined(_WIN32)
    const std::string user = UsersNumericLocale();
    EXPECT_EQ(StartUpWith(nullptr), kPrefix + user + "\r\n");
    EXPECT_EQ(std::string(std::setlocale(LC_NUMERIC, nullptr)), user);
#else
    EXPECT_EQ(StartUpWith("de_DE.UTF-8"), kPrefix + "de_DE.UTF-8\r\n");
    EXPECT_STREQ(std::localeconv()->decimal_point, ",");
    EXPECT_EQ(StartUpWith("C"), kPrefix + "C\r\n");
    EXPECT_STREQ(std::localeconv()->decimal_point, ".");
#endif
    std::setlocale(LC_NUMERIC, "C");
}

#if !defined(_WIN32)
TEST(StartUp, ALocaleThatCannotBeSetLeavesTheOldOneAndAnEmptyName) {
    std::setlocale(LC_NUMERIC, "C");
    EXPECT_EQ(StartUpWith("xx_NOWHERE.UTF-8"), kPrefix + "\r\n");
    EXPECT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "C");
}
#endif

TEST(StartUp, OnlyTheNumericCategoryChanges) {
    std::setlocale(LC_ALL, "C");
    StartUpWith("de_DE.UTF-8");
    EXPECT_STREQ(std::setlocale(LC_TIME, nullptr), "C");
    EXPECT_STREQ(std::setlocale(LC_CTYPE, nullptr), "C");
    std::setlocale(LC_NUMERIC, "C");
}

// Loading the library runs start-up; the default sink writes to standard
// error only when VARION_DEBUG is set.
#if defined(_WIN32)
namespace {

// Loads and unloads the DLL with standard error sent to a file; answers what
// was written there.
std::string StderrWhileLoading(const char* debug) {
    varion::test::ScopedEnv env("VARION_DEBUG", debug);
    const std::string path = std::string(VARION_TEST_LOCPATH) + "/stderr.txt";
    std::fflush(stderr);
    const int saved = _dup(_fileno(stderr));
    const int file = _open(path.c_str(), _O_WRONLY | _O_CREAT | _O_TRUNC, _S_IREAD | _S_IWRITE);
    EXPECT_GE(file, 0) << path;
    _dup2(file, _fileno(stderr));
    const HMODULE dll = LoadLibraryA(VARION_DLL_PATH);
    std::fflush(stderr);
    _dup2(saved, _fileno(stderr));
    _close(saved);
    _close(file);
    EXPECT_NE(dll, nullptr) << VARION_DLL_PATH;
    if (dll != nullptr) FreeLibrary(dll);
    std::string text;
    if (FILE* in = std::fopen(path.c_str(), "r")) {  // text mode, as the line was written
        char buffer[512];
        std::size_t n = 0;
        while ((n = std::fread(buffer, 1, sizeof(buffer), in)) > 0) text.append(buffer, n);
        std::fclose(in);
    }
    std::remove(path.c_str());
    return text;
}

}  // namespace

TEST(StartUp, TheLoadedLibraryWritesTheLineWhenAskedTo) {
    std::setlocale(LC_NUMERIC, "C");
    const std::string user = UsersNumericLocale();
    EXPECT_EQ(StderrWhileLoading("1"), kPrefix + user + "\r\n");
    EXPECT_EQ(StderrWhileLoading(nullptr), "");
    std::setlocale(LC_NUMERIC, "C");
}
#else
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
#endif
