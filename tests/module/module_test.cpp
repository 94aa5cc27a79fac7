// Start-up: the numeric locale and the diagnostic line, in process and as a
// loaded library.
#include "module/module.h"
#include "support/test_support.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdio>
#include <string>
#include <utility>

#if defined(_WIN32)
#include <fcntl.h>
#include <io.h>
#endif

namespace {

std::string g_lines;  // everything start-up sent to the sink
void CaptureLine(const OLECHAR* line) { g_lines += CString(line).ToUtf8(); }

// Runs start-up with the given environment and answers what it wrote.
// (Windows takes the user's locale from the system, not the environment.)
std::string StartUpWith(const char* lcAll) {
    varion::test::ScopedEnv locpath("LOCPATH", VARION_TEST_LOCPATH);
    varion::test::ScopedEnv all("LC_ALL", lcAll);
    varion::test::ScopedEnv numeric("LC_NUMERIC", nullptr);
    g_lines.clear();
    const VARION_DIAGNOSTIC_SINK previous = VarionSetDiagnosticSink(CaptureLine);
    EXPECT_TRUE(varion::detail::CVarionApp().InitInstance());
    VarionSetDiagnosticSink(previous);
    return g_lines;
}

const std::string kPrefix = "L\xC3\xA4ndereinstellung f\xC3\xBCr Numerik:  ";

// The name the C runtime gives the user's default numeric locale.
std::string UsersNumericLocale() {
    const char* before = std::setlocale(LC_NUMERIC, nullptr);
    const std::string restore = before != nullptr ? before : "C";
    const char* name = std::setlocale(LC_NUMERIC, "");
    const std::string result = name != nullptr ? name : "";
    std::setlocale(LC_NUMERIC, restore.c_str());
    return result;
}

}  // namespace

// Only the numeric category changes; a locale that cannot be set leaves the
// old one and an empty name.
TEST(StartUp, SetsTheUsersNumericLocaleAndReportsIt) {
    const struct { const char* lcAll; const char* name; const char* point; } rows[] = {
#if defined(_WIN32)
        {nullptr, nullptr, nullptr},  // the system's user locale
#else
        {"de_DE.UTF-8", "de_DE.UTF-8", ","}, {"C", "C", "."}, {"xx_NOWHERE.UTF-8", "", "."},
#endif
    };
    for (const auto& r : rows) {
        std::setlocale(LC_ALL, "C");
        const std::string name = r.name != nullptr ? r.name : UsersNumericLocale();
        EXPECT_EQ(StartUpWith(r.lcAll), kPrefix + name + "\r\n");
        EXPECT_EQ(std::string(std::setlocale(LC_NUMERIC, nullptr)), name.empty() ? "C" : name);
        if (r.point != nullptr) {
            EXPECT_STREQ(std::localeconv()->decimal_point, r.point) << name;
        }
        EXPECT_STREQ(std::setlocale(LC_TIME, nullptr), "C");
        EXPECT_STREQ(std::setlocale(LC_CTYPE, nullptr), "C");
    }
    std::setlocale(LC_ALL, "C");
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
        for (std::size_t n; (n = std::fread(buffer, 1, sizeof(buffer), in)) > 0;) text.append(buffer, n);
        std::fclose(in);
    }
    std::remove(path.c_str());
    return text;
}

}  // namespace

TEST(StartUp, TheLoadedLibraryWritesTheLineWhenAskedTo) {
    std::setlocale(LC_NUMERIC, "C");
    EXPECT_EQ(StderrWhileLoading("1"), kPrefix + UsersNumericLocale() + "\r\n");
    EXPECT_EQ(StderrWhileLoading(nullptr), "");
    std::setlocale(LC_NUMERIC, "C");
}
#else
TEST(StartUp, TheLoadedLibraryWritesTheLineWhenAskedTo) {
    const std::string tool = VARION_TOOL_PATH;
    ASSERT_FALSE(tool.empty());
    const std::string env = std::string("LOCPATH=") + VARION_TEST_LOCPATH + " LC_ALL=de_DE.UTF-8 ";
    for (const auto& [debug, line] : {std::pair<const char*, std::string>{"VARION_DEBUG=1 ", kPrefix + "de_DE.UTF-8\r\n"},
                                      {"", ""}}) {
        std::string out;
        EXPECT_EQ(varion::test::RunCommand("env -u VARION_DEBUG " + env + debug + tool + " --help 2>&1 >/dev/null", out), 0);
        EXPECT_EQ(out, line) << debug;
    }
}
#endif
