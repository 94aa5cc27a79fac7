// Locale texts of dates: rendering per locale, the user's locale from the
// environment, the parser's accepted and rejected texts, and round trips.
#include <varion/platform/automation.h>

#include "support/test_support.h"

#if !defined(_WIN32)
#include "platform/locales.h"
#endif

#include <gtest/gtest.h>

#include <limits>
#include <string>

using varion::test::LocaleText;
using varion::test::ScopedEnv;
using varion::test::Utf8;

namespace {

double DateOf(WORD y, WORD mo, WORD d, WORD h = 0, WORD mi = 0, WORD s = 0) {
    SYSTEMTIME st{y, mo, 0, d, h, mi, s, 0};
    double value = 0;
    EXPECT_TRUE(SystemTimeToVariantTime(&st, &value));
    return value;
}

std::string Render(double value, LCID lcid, ULONG flags = 0) {
    BSTR text = nullptr;
    const HRESULT hr = VarBstrFromDate(value, lcid, flags, &text);
    std::string result = SUCCEEDED(hr) ? Utf8(text) : "<error>";
    SysFreeString(text);
    return result;
}

// Clears every variable that names the user's locale, then sets one.
class UserLocale {
public:
    explicit UserLocale(const char* name, const char* variable = "LC_ALL")
        : m_all("LC_ALL", nullptr), m_time("LC_TIME", nullptr), m_lang("LANG", nullptr), m_set(variable, name) {}

private:
    ScopedEnv m_all, m_time, m_lang, m_set;
};

TEST(DateText, EachLocaleRendersItsPlatformPatterns) {
    struct Row {
        LCID lcid;
        const char* evening;  // 2026-11-17 20:18:38
        const char* morning;  // 2026-03-05 08:05:03
    };
    const Row rows[] = {
        {0x007F, "11/17/2026 20:18:38", "03/05/2026 08:05:03"},
        {0x0409, "11/17/2026 8:18:38 PM", "3/5/2026 8:05:03 AM"},
        {0x0809, "17/11/2026 20:18:38", "05/03/2026 08:05:03"},
        {0x0407, "17.11.2026 20:18:38", "05.03.2026 08:05:03"},
        {0x0C07, "17.11.2026 20:18:38", "05.03.2026 08:05:03"},
        {0x0807, "17.11.2026 20:18:38", "05.03.2026 08:05:03"},
        {0x040C, "17/11/2026 20:18:38", "05/03/2026 08:05:03"},
        {0x0410, "17/11/2026 20:18:38", "05/03/2026 08:05:03"},
        {0x0C0A, "17/11/2026 20:18:38", "05/03/2026 8:05:03"},
        {0x0413, "17-11-2026 20:18:38", "5-3-2026 08:05:03"},
    };
#if !defined(_WIN32)
    ASSERT_EQ(std::size(rows), varion::detail::AllLocales().size());  // every row of the stand-ins' table
#endif
    for (const Row& r : rows) {
        const double evening = DateOf(2026, 11, 17, 20, 18, 38);
        const double morning = DateOf(2026, 3, 5, 8, 5, 3);
        EXPECT_EQ(Render(evening, r.lcid), LocaleText(r.evening, evening, r.lcid)) << std::hex << r.lcid;
        EXPECT_EQ(Render(morning, r.lcid), LocaleText(r.morning, morning, r.lcid)) << std::hex << r.lcid;
    }
}

TEST(DateText, DayZeroMidnightAndTheValueOnlyFlags) {
    struct Row {
        double value;
        LCID lcid;
        ULONG flags;
        const char* text;
    };
    const double evening = DateOf(2026, 11, 17, 20, 18, 38);
    const double midnight = DateOf(2026, 11, 17);
    const Row rows[] = {
        {0.0, 0x0409, 0, "12:00:00 AM"},  // day zero: the time alone, even at midnight
        {0.5, 0x0409, 0, "12:00:00 PM"},
        {-0.75, 0x0407, 0, "18:00:00"},
        {-1.25, 0x0407, 0, "29.12.1899 06:00:00"},
        {evening, 0x0407, VAR_TIMEVALUEONLY, "20:18:38"},
        {evening, 0x0407, VAR_DATEVALUEONLY, "17.11.2026"},
        {0.5, 0x0407, VAR_DATEVALUEONLY, ""},  // day zero has no date
        {midnight, 0x0407, VAR_TIMEVALUEONLY, ""},  // nor midnight a time
        {evening, 0x0407, VAR_TIMEVALUEONLY | VAR_DATEVALUEONLY, ""},
        {evening + 0.6 / 86400, 0x0407, 0, "17.11.2026 20:18:39"},  // whole seconds, rounded
        {evening, 0x0407, LOCALE_NOUSEROVERRIDE, "17.11.2026 20:18:38"},
        {std::numeric_limits<double>::quiet_NaN(), 0x0407, 0, "30.12.1899 00:00:00"},  // NaN passes as day zero
        {2958466.0, 0x0407, 0, "<error>"},
    };
    for (const Row& r : rows) EXPECT_EQ(Render(r.value, r.lcid, r.flags), r.text) << r.value << " " << r.flags;
    EXPECT_EQ(Render(midnight, 0x0407), LocaleText("17.11.2026", midnight, 0x0407, 1));  // midnight: the date alone
    // Locale data the system has and the stand-ins' table does not: years
    // before 1000 (Wine writes "1.1.100"), locales beyond the table.
    VARION_STANDIN_ONLY(EXPECT_EQ(Render(DateOf(100, 1, 1), 0x0407), "01.01.0100"));
    VARION_STANDIN_ONLY(EXPECT_EQ(Render(evening, 0x0419), "<error>"));
    VARION_STANDIN_ONLY(EXPECT_EQ(VarBstrFromDate(0.0, 0x0407, 0, nullptr), E_INVALIDARG));
}

#if !defined(_WIN32)  // Windows takes the user's locale from the system
TEST(DateText, UserDefaultFollowsTheEnvironment) {
    struct Row {
        const char* variable;
        const char* name;
        const char* text;
    };
    const double evening = DateOf(2026, 11, 17, 20, 18, 38);
    const Row rows[] = {
        {"LC_ALL", "de_DE.UTF-8", "17.11.2026 20:18:38"},
        {"LC_ALL", "de_DE@euro", "17.11.2026 20:18:38"},
        {"LC_TIME", "de-DE", "17.11.2026 20:18:38"},
        {"LANG", "en_US.UTF-8", "11/17/2026 8:18:38 PM"},
        {"LANG", "en_GB", "17/11/2026 20:18:38"},
        {"LANG", "nl_NL.UTF-8", "17-11-2026 20:18:38"},
        {"LANG", "de_LU.UTF-8", "17.11.2026 20:18:38"},  // unknown country: its language
        {"LANG", "en_AU.UTF-8", "11/17/2026 8:18:38 PM"},
        {"LANG", "C", "11/17/2026 20:18:38"},
        {"LANG", "POSIX", "11/17/2026 20:18:38"},
        {"LANG", "C.UTF-8", "11/17/2026 20:18:38"},
        {"LANG", "ja_JP.UTF-8", "11/17/2026 20:18:38"},  // unknown language: invariant
        {"LANG", "", "11/17/2026 20:18:38"},
    };
    for (const Row& r : rows) {
        UserLocale locale(r.name, r.variable);
        for (LCID lcid : {LCID(0), LOCALE_USER_DEFAULT, LOCALE_SYSTEM_DEFAULT})
            EXPECT_EQ(Render(evening, lcid), r.text) << r.variable << "=" << r.name << " lcid " << lcid;
        EXPECT_EQ(Render(evening, 0x0407), "17.11.2026 20:18:38") << "0x407 is German whatever the user's locale";
    }
    // LC_ALL wins over LC_TIME, which wins over LANG; empty values are skipped.
    UserLocale base("en_US.UTF-8", "LANG");
    {
        ScopedEnv time("LC_TIME", "fr_FR.UTF-8");
        EXPECT_EQ(Render(evening, LOCALE_USER_DEFAULT), "17/11/2026 20:18:38");
        ScopedEnv all("LC_ALL", "de_DE.UTF-8");
        EXPECT_EQ(Render(evening, LOCALE_USER_DEFAULT), "17.11.2026 20:18:38");
        ScopedEnv emptyAll("LC_ALL", "");
        EXPECT_EQ(Render(evening, LOCALE_USER_DEFAULT), "17/11/2026 20:18:38");
    }
}
#endif

// Rows marked as the stand-ins' describe where their parser is stricter or
// more lenient than the system's (as Wine provides it).
constexpr bool kStandIns = true;

struct Accepted {
    const char* text;
    LCID lcid;
    WORD year, month, day, hour, minute, second;
    bool standInsOnly = false;
};

TEST(DateText, ParserAcceptsTheseForms) {
    const Accepted rows[] = {
        {"17.11.2026", 0x0407, 2026, 11, 17, 0, 0, 0},
        {"17.11.2026 20:18:38", 0x0407, 2026, 11, 17, 20, 18, 38},
        {"17.11.2026 20:18", 0x0407, 2026, 11, 17, 20, 18, 0},
        {"  17.11.2026\t20:18:38  ", 0x0407, 2026, 11, 17, 20, 18, 38},
        {"17.11.2026 20:18:38", 0x0409, 2026, 11, 17, 20, 18, 38, kStandIns},  // dots are day first everywhere
        {"2026-11-17", 0x0409, 2026, 11, 17, 0, 0, 0},
        {"2026-11-17 20:18:38", 0x0407, 2026, 11, 17, 20, 18, 38},
        {"2026-11-17T20:18:38", 0x0413, 2026, 11, 17, 20, 18, 38, kStandIns},
        {"2026/11/17", 0x0809, 2026, 11, 17, 0, 0, 0},
        {"11/17/2026 8:18:38 PM", 0x0409, 2026, 11, 17, 20, 18, 38},
        {"11/17/2026 8:18:38pm", 0x0409, 2026, 11, 17, 20, 18, 38},
        {"11/17/2026 PM 8:18", 0x0409, 2026, 11, 17, 20, 18, 0, kStandIns},
        {"11-17-2026", 0x0409, 2026, 11, 17, 0, 0, 0},
        {"17/11/2026 20:18:38", 0x0809, 2026, 11, 17, 20, 18, 38},
        {"17-11-2026 20:18:38", 0x0413, 2026, 11, 17, 20, 18, 38},
        {"5-3-2026", 0x0413, 2026, 3, 5, 0, 0, 0},
        {"12:00:00 AM", 0x0409, 1899, 12, 30, 0, 0, 0},
        {"12:30 PM", 0x0409, 1899, 12, 30, 12, 30, 0},
        {"8:05:03 a. m.", 0x0C0A, 1899, 12, 30, 8, 5, 3, kStandIns},
        {"8:05:03 p. m.", 0x0C0A, 1899, 12, 30, 20, 5, 3, kStandIns},
        {"20:18:38", 0x0407, 1899, 12, 30, 20, 18, 38},
        {"0:00", 0x0407, 1899, 12, 30, 0, 0, 0},
        {"17 November 2026", 0x0409, 2026, 11, 17, 0, 0, 0},
        {"November 17, 2026 8:00 PM", 0x0409, 2026, 11, 17, 20, 0, 0},
        {"Tuesday, November 17, 2026", 0x0409, 2026, 11, 17, 0, 0, 0},
        {"Dienstag, 17. November 2026", 0x0407, 2026, 11, 17, 0, 0, 0},
        {"1. MÄRZ 2026", 0x0407, 2026, 3, 1, 0, 0, 0, kStandIns},
        {"1. Jänner 2026", 0x0C07, 2026, 1, 1, 0, 0, 0},
        {"17-nov-2026", 0x0413, 2026, 11, 17, 0, 0, 0},
        {"17 févr. 2026", 0x040C, 2026, 2, 17, 0, 0, 0},
        {"mar 17 2026", 0x0C0A, 2026, 3, 17, 0, 0, 0},  // "mar" is also Tuesday's abbreviation
        {"29.02.2000", 0x0407, 2000, 2, 29, 0, 0, 0},
        {"01.01.0100 00:00:00", 0x0407, 100, 1, 1, 0, 0, 0},
        {"31.12.9999 23:59:59", 0x0407, 9999, 12, 31, 23, 59, 59},
        {"29.12.1899 06:00:00", 0x0407, 1899, 12, 29, 6, 0, 0},
    };
    for (const Accepted& r : rows) {
        if (r.standInsOnly && !varion::test::kStandInServices) continue;
        DATE value = -1;
        const HRESULT hr = VarDateFromStr(CString(r.text), r.lcid, 0, &value);
        EXPECT_EQ(hr, S_OK) << r.text;
        SYSTEMTIME st{};
        if (FAILED(hr) || !VariantTimeToSystemTime(value, &st)) continue;
        EXPECT_EQ(st.wYear, r.year) << r.text;
        EXPECT_EQ(st.wMonth, r.month) << r.text;
        EXPECT_EQ(st.wDay, r.day) << r.text;
        EXPECT_EQ(st.wHour, r.hour) << r.text;
        EXPECT_EQ(st.wMinute, r.minute) << r.text;
        EXPECT_EQ(st.wSecond, r.second) << r.text;
        EXPECT_EQ(value, DateOf(r.year, r.month, r.day, r.hour, r.minute, r.second)) << r.text;
    }
}

TEST(DateText, ParserRejectsWhatItCannotJustify) {
    struct Row {
        const char* text;
        LCID lcid;
        bool standInsOnly = false;
    };
    const Row rows[] = {
        {"31.02.2026", 0x0407},  {"29.02.2100", 0x0407}, {"25:00", 0x0407},          {"12:60", 0x0407},
        {"12:00:60", 0x0407},    {"abc", 0x0407},        {"", 0x0407},               {"   ", 0x0407},
        {"17.11.", 0x0407},      {"17.11", 0x0407, kStandIns},      {"17.11.26", 0x0407, kStandIns},       {"17.11.20261", 0x0407},
        {"11/17/2026", 0x0407, kStandIns},  {"17/11/2026", 0x0409, kStandIns}, {"2026-13-01", 0x0407, kStandIns},     {"2026-11-17-", 0x0407},
        {"17.11-2026", 0x0407, kStandIns},  {"17.11.2026 x", 0x0407}, {"17.11.2026 20", 0x0407}, {"17.11.202620:18", 0x0407},
        {"0:30 AM", 0x0409, kStandIns},     {"13:00 PM", 0x0409, kStandIns},   {"AM 8:00 PM", 0x0409},     {"20:18:38.5", 0x0407},
        {"Monday, 17.11.2026", 0x0407}, {"Dienstag 20:18", 0x0407, kStandIns}, {"17 Novembre 2026", 0x0409},
        {"17 Nov", 0x0409, kStandIns},      {"Novemberr 17, 2026", 0x0409}, {"31.12.9999 24:00", 0x0407},
        {"31.12.99999", 0x0407}, {"01.01.0099", 0x0407, kStandIns}, {"5", 0x0407},              {"2026-11-17T", 0x0407},
        {"17.11.2026T20:18", 0x0407},
    };
    for (const Row& r : rows) {
        if (r.standInsOnly && !varion::test::kStandInServices) continue;
        DATE value = -1;
        EXPECT_EQ(VarDateFromStr(CString(r.text), r.lcid, 0, &value), DISP_E_TYPEMISMATCH) << r.text;
    }
    DATE value = 0;
    VARION_STANDIN_ONLY(EXPECT_EQ(VarDateFromStr(nullptr, 0x0407, 0, &value), E_INVALIDARG));
    VARION_STANDIN_ONLY(EXPECT_EQ(VarDateFromStr(OLESTR("17.11.2026"), 0x0407, 0, nullptr), E_INVALIDARG));
    VARION_STANDIN_ONLY(EXPECT_EQ(VarDateFromStr(OLESTR("17.11.2026"), 0x0419, 0, &value), E_INVALIDARG));  // no table row
    EXPECT_EQ(VarDateFromStr(OLESTR("17.11.2026"), 0x0407, VAR_TIMEVALUEONLY | VAR_DATEVALUEONLY, &value),
              E_INVALIDARG);
}

TEST(DateText, ParserValueOnlyFlags) {
    struct Row {
        const char* text;
        ULONG flags;
        double expected;
    };
    const double date = DateOf(2026, 11, 17);
    const double time = DateOf(1899, 12, 30, 20, 18, 38);
    const Row rows[] = {
        {"17.11.2026 20:18:38", VAR_DATEVALUEONLY, date},
        {"17.11.2026 20:18:38", VAR_TIMEVALUEONLY, time},
        {"17.11.2026 20:18:38", LOCALE_NOUSEROVERRIDE | VAR_DATEVALUEONLY, date},
        {"20:18:38", VAR_DATEVALUEONLY, 0.0},
        {"17.11.2026", VAR_TIMEVALUEONLY, 0.0},
        {"29.12.1899 06:00:00", VAR_TIMEVALUEONLY, 0.25},
    };
    for (const Row& r : rows) {
        DATE value = -1;
        ASSERT_EQ(VarDateFromStr(CString(r.text), 0x0407, r.flags, &value), S_OK) << r.text;
        EXPECT_EQ(value, r.expected) << r.text << " flags " << r.flags;
    }
}

// Every text a locale renders reads back as the same instant, in that locale.
TEST(DateText, EveryRenderedTextParsesBackInItsLocale) {
    const double instants[] = {
        DateOf(2026, 11, 17, 20, 18, 38), DateOf(2026, 11, 17), DateOf(2026, 3, 5, 8, 5, 3),
        DateOf(2026, 3, 5, 12, 0, 0),     DateOf(2026, 3, 5, 0, 0, 1), DateOf(2026, 3, 5, 12, 59, 59),
        DateOf(100, 1, 1),                DateOf(100, 1, 1, 23, 59, 59), DateOf(9999, 12, 31, 23, 59, 59),
        DateOf(1899, 12, 29, 6, 0, 0),    DateOf(1582, 10, 15, 13, 1, 2), DateOf(1899, 12, 31),
        0.0,                              0.5, 0.75, DateOf(1899, 12, 30, 23, 59, 59),
    };
    for (const varion::test::TestLocale& locale : varion::test::kTestLocales) {
        for (double instant : instants) {
            for (ULONG flags : {ULONG(0), VAR_DATEVALUEONLY, VAR_TIMEVALUEONLY}) {
                BSTR text = nullptr;
                ASSERT_EQ(VarBstrFromDate(instant, locale.lcid, flags, &text), S_OK);
                const std::string shown = Utf8(text);
                if (shown.empty()) {  // the flag left out the only part there was
                    SysFreeString(text);
                    continue;
                }
                DATE back = -1;
                const HRESULT hr = VarDateFromStr(text, locale.lcid, 0, &back);
                SysFreeString(text);
                EXPECT_EQ(hr, S_OK) << shown << " in " << locale.name;
                if (FAILED(hr)) continue;
                double expected = instant;
                SYSTEMTIME st{};
                VariantTimeToSystemTime(instant, &st);
                if (flags == VAR_DATEVALUEONLY) expected = DateOf(st.wYear, st.wMonth, st.wDay);
                if (flags == VAR_TIMEVALUEONLY) expected = DateOf(1899, 12, 30, st.wHour, st.wMinute, st.wSecond);
                EXPECT_EQ(back, expected) << shown << " in " << locale.name;
            }
        }
    }
}

}  // namespace
