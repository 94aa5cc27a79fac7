#include "support/test_support.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string_view>

#if !defined(_WIN32)
#include <sys/wait.h>
#endif

#include "support/counting_new.h"

namespace varion::test {
namespace {

void SetVariable(const char* name, const char* value) {
#if defined(_WIN32)
    _putenv_s(name, value != nullptr ? value : "");  // an empty value removes the variable
#else
    if (value != nullptr)
        setenv(name, value, 1);
    else
        unsetenv(name);
#endif
}

// The C runtime's name of a test locale: the localedef names elsewhere,
// the language_country.codepage names of the Windows runtime there.
std::string RuntimeLocaleName(const char* name) {
#if defined(_WIN32)
    const std::string_view n(name);
    if (n == "de_DE.UTF-8") return "German_Germany.1252";
    if (n == "en_US.UTF-8") return "English_United States.1252";
#endif
    return name;
}

}  // namespace

std::array<unsigned char, 16> Bytes(const CVarion& v) {
    std::array<unsigned char, 16> b{};
    std::memcpy(b.data(), &v, b.size());  // a 64-bit Windows VARIANT has 8 more bytes
    return b;
}

std::string Utf8(const CString& s) { return s.ToUtf8(); }
std::string Utf8(BSTR s) { return CString(OleStringView(s == nullptr ? OLESTR("") : s, SysStringLen(s))).ToUtf8(); }

long AllocationCount() { return AllocationsSoFar(); }

ScopedCLocale::ScopedCLocale(const char* name, int category) : m_category(category < 0 ? LC_NUMERIC : category) {
    if (const char* prev = std::setlocale(m_category, nullptr)) m_previous = prev;
#if !defined(_WIN32)
    setenv("LOCPATH", VARION_TEST_LOCPATH, 1);
#endif
    m_ok = std::setlocale(m_category, RuntimeLocaleName(name).c_str()) != nullptr;
    EXPECT_TRUE(m_ok) << "test locale " << name << " is missing from " << VARION_TEST_LOCPATH;
}

ScopedCLocale::~ScopedCLocale() { std::setlocale(m_category, m_previous.empty() ? "C" : m_previous.c_str()); }

ScopedEnv::ScopedEnv(const char* name, const char* value) : m_name(name) {
    if (const char* prev = std::getenv(name)) {
        m_had = true;
        m_previous = prev;
    }
    SetVariable(name, value);
}

ScopedEnv::~ScopedEnv() { SetVariable(m_name.c_str(), m_had ? m_previous.c_str() : nullptr); }

const TestLocale kTestLocales[10] = {
    {0x007F, ""},      {0x0409, "en-US"}, {0x0809, "en-GB"}, {0x0407, "de-DE"}, {0x0C07, "de-AT"},
    {0x0807, "de-CH"}, {0x040C, "fr-FR"}, {0x0410, "it-IT"}, {0x0C0A, "es-ES"}, {0x0413, "nl-NL"},
};

namespace {

// The identifier of an environment locale name ("de_DE.UTF-8", "de-DE"); 0
// for the invariant locale and names outside the table.
LCID LcidOfName(std::string_view name) {
    name = name.substr(0, name.find_first_of(".@"));
    for (const TestLocale& l : kTestLocales) {
        const std::string_view row(l.name);
        if (row.empty() || row.size() != name.size()) continue;
        bool same = true;
        for (std::size_t i = 0; i < row.size() && same; ++i)
            same = (name[i] == '_' ? '-' : name[i]) == row[i];
        if (same) return l.lcid;
    }
    return 0;
}

}  // namespace

ScopedUserLocale::ScopedUserLocale(const char* name) {
#if defined(_WIN32)
    const LCID wanted = name != nullptr ? LcidOfName(name) : 0;
    m_active = wanted != 0 && wanted == GetUserDefaultLCID();
#else
    if (const char* prev = std::getenv("LC_ALL")) {
        m_had = true;
        m_previous = prev;
    }
    SetVariable("LC_ALL", name);
    m_active = true;
#endif
}

ScopedUserLocale::~ScopedUserLocale() {
#if !defined(_WIN32)
    SetVariable("LC_ALL", m_had ? m_previous.c_str() : nullptr);
#endif
}

std::vector<const char*> ChoosableUserLocales() {
#if defined(_WIN32)
    return {nullptr};
#else
    std::vector<const char*> names;
    for (const TestLocale& l : kTestLocales) names.push_back(l.name[0] != 0 ? l.name : "C");
    return names;
#endif
}

std::string LocaleText(const char* standIn, double value, LCID lcid, int parts) {
#if defined(_WIN32)
    SYSTEMTIME st{};
    if (!VariantTimeToSystemTime(value, &st)) return "<no date>";
    wchar_t date[128] = {0};
    wchar_t time[128] = {0};
    if ((parts & 1) && GetDateFormatW(lcid, DATE_SHORTDATE, &st, nullptr, date, 128) == 0) return "<no date>";
    if ((parts & 2) && GetTimeFormatW(lcid, 0, &st, nullptr, time, 128) == 0) return "<no time>";
    CString text(date);
    if ((parts & 1) && (parts & 2)) text += OLESTR(" ");
    text += time;
    return text.ToUtf8();
#else
    (void)value;
    (void)lcid;
    (void)parts;
    return standIn;
#endif
}

#if !defined(_WIN32)

int RunCommand(const std::string& command, std::string& output, bool withStderr) {
    output.clear();
    const std::string line = command + (withStderr ? " 2>&1" : "");
    FILE* pipe = popen(line.c_str(), "r");
    if (pipe == nullptr) return -1;
    char buffer[4096];
    std::size_t n = 0;
    while ((n = std::fread(buffer, 1, sizeof(buffer), pipe)) > 0) output.append(buffer, n);
    const int status = pclose(pipe);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

#endif

}  // namespace varion::test
