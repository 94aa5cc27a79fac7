// Locale texts of dates: rendering per locale, the parser's accepted and
// rejected texts, and round trips.
#include <varion/platform/automation.h>

#include "support/test_support.h"

#if !defined(_WIN32)
#include "platform/locales.h"
#endif

#include <gtest/gtest.h>

#include <limits>
#include <string>

using varion::test::LocaleText;
using varion::test::Utf8;

namespace {

// The date of the fields; NaN (equal to nothing) when they are refused.
double DateOf(WORD y, WORD mo, WORD d, WORD h = 0, WORD mi = 0, WORD s = 0) {
    SYSTEMTIME st{y, mo, 0, d, h, mi, s, 0};
    double value = 0;
    return SystemTimeToVariantTime(&st, &value) ? value : std::numeric_limits<double>::quiet_NaN();
}

std::string Render(double value, LCID lcid, ULONG flags = 0) {
    BSTR text = nullptr;
    const HRESULT hr = VarBstrFromDate(value, lcid, flags, &text);
    std::string result = SUCCEEDED(hr) ? Utf8(text) : "<error>";
    SysFreeString(text);
    return result;
}

const double kEvening = DateOf(2026, 11, 17, 20, 18, 38);
const double kMorning = DateOf(2026, 3, 5, 8, 5, 3);
constexpr LCID kDe = 0x0407, kUs = 0x0409, kGb = 0x0809, kNl = 0x0413, kEs = 0x0C0A, kAt = 0x0C07;

TEST(DateText, EachLocaleRendersItsPlatformPatterns) {
    const struct { LCID lcid; const char* evening; const char* morning; } rows[] = {
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
    for (const auto& r : rows) {
        EXPECT_EQ(Render(kEvening, r.lcid), LocaleText(r.evening, kEvening, r.lcid)) << std::hex << r.lcid;
        EXPECT_EQ(Render(kMorning, r.lcid), LocaleText(r.morning, kMorning, r.lcid)) << std::hex << r.lcid;
    }
}

TEST(DateText, DayZeroMidnightAndTheValueOnlyFlags) {
    const double midnight = DateOf(2026, 11, 17);
    const struct { double value; LCID lcid; ULONG flags; const char* text; } rows[] = {
        {0.0, kUs, 0, "12:00:00 AM"},  {0.5, kUs, 0, "12:00:00 PM"},  // day zero: the time alone, even at midnight
        {0.5, kDe, VAR_DATEVALUEONLY, ""}, {midnight, kDe, VAR_TIMEVALUEONLY, ""},  // day zero has no date, midnight no time
        {kEvening, kDe, VAR_TIMEVALUEONLY | VAR_DATEVALUEONLY, ""},
        {kEvening, kDe, LOCALE_NOUSEROVERRIDE, "17.11.2026 20:18:38"},
        {std::numeric_limits<double>::quiet_NaN(), kDe, 0, "30.12.1899 00:00:00"},  // NaN passes as day zero
        {2958466.0, kDe, 0, "<error>"},
    };
    for (const auto& r : rows) EXPECT_EQ(Render(r.value, r.lcid, r.flags), r.text) << r.value << " " << r.flags;
    EXPECT_EQ(Render(midnight, kDe), LocaleText("17.11.2026", midnight, kDe, 1));  // midnight: the date alone
    // Locale data the system has and the stand-ins' table does not: years
    // before 1000 (Wine writes "1.1.100"), locales beyond the table.
    VARION_STANDIN_ONLY(EXPECT_EQ(Render(DateOf(100, 1, 1), kDe), "01.01.0100"));
    VARION_STANDIN_ONLY(EXPECT_EQ(Render(kEvening, 0x0419), "<error>"));
    VARION_STANDIN_ONLY(EXPECT_EQ(VarBstrFromDate(0.0, kDe, 0, nullptr), E_INVALIDARG));
}

// Rows marked as the stand-ins' describe where their parser is stricter or
// more lenient than the system's (as Wine provides it).
constexpr bool kStandIns = true;

// The parser's answer for texts the renderer does not write (the round trip
// below reads back every one it does): a date, or kNo for a refused text.
TEST(DateText, ParserAcceptsTheseFormsAndRejectsWhatItCannotJustify) {
    const double kNo = std::numeric_limits<double>::quiet_NaN();
    const double nov17 = DateOf(2026, 11, 17), evening = kEvening, eight = DateOf(2026, 11, 17, 20, 18);
    const auto time = [](WORD h, WORD mi, WORD s) { return DateOf(1899, 12, 30, h, mi, s); };
    const struct { const char* text; LCID lcid; double value; ULONG flags = 0; bool standInsOnly = false; } rows[] = {
        {"17.11.2026 20:18", kDe, eight},              {"  17.11.2026\t20:18:38  ", kDe, evening},
        {"2026/11/17 20:18:38", kGb, evening},         {"11-17-2026 8:18:38pm", kUs, evening},
        {"12:30 PM", kUs, time(12, 30, 0)},            {"17 November 2026", kUs, nov17},
        {"November 17, 2026 8:00 PM", kUs, DateOf(2026, 11, 17, 20)}, {"Tuesday, November 17, 2026", kUs, nov17},
        {"1. J\xC3\xA4nner 2026", kAt, DateOf(2026, 1, 1)},  {"29.02.2000", kDe, DateOf(2000, 2, 29)},
        {"mar 17 2026", kEs, DateOf(2026, 3, 17)},  // "mar" is also Tuesday's abbreviation
        // The value-only flags keep one part; the time of a day before day 0 is still its magnitude.
        {"17.11.2026 20:18:38", kDe, nov17, VAR_DATEVALUEONLY}, {"17.11.2026 20:18:38", kDe, time(20, 18, 38), VAR_TIMEVALUEONLY},
        {"17.11.2026 20:18:38", kDe, nov17, LOCALE_NOUSEROVERRIDE | VAR_DATEVALUEONLY},
        {"29.12.1899 06:00:00", kDe, 0.25, VAR_TIMEVALUEONLY},
        // Where the stand-ins are more lenient than the system: dots are day first everywhere.
        {"17.11.2026 20:18:38", kUs, evening, 0, kStandIns},  {"2026-11-17T20:18:38", kNl, evening, 0, kStandIns},
        {"11/17/2026 PM 8:18", kUs, eight, 0, kStandIns},     {"1. M\xC3\x84RZ 2026", kDe, DateOf(2026, 3, 1), 0, kStandIns},
        {"8:05:03 a. m.", kEs, time(8, 5, 3), 0, kStandIns},  {"8:05:03 p. m.", kEs, time(20, 5, 3), 0, kStandIns},
        // Dates and times that do not exist, at their first invalid value.
        {"31.02.2026", kDe, kNo}, {"29.02.2100", kDe, kNo}, {"12:60", kDe, kNo}, {"12:00:60", kDe, kNo},
        {"31.12.9999 24:00", kDe, kNo},
        // Missing, extra or run-together parts.
        {"", kDe, kNo}, {"abc", kDe, kNo}, {"17.11.", kDe, kNo}, {"17.11.20261", kDe, kNo}, {"17.11.2026 20", kDe, kNo},
        {"AM 8:00 PM", kUs, kNo}, {"20:18:38.5", kDe, kNo}, {"2026-11-17T", kDe, kNo}, {"17.11.2026T20:18", kDe, kNo},
        // Names: the wrong weekday, another language's month, a longer word.
        {"Monday, 17.11.2026", kDe, kNo}, {"17 Novembre 2026", kUs, kNo}, {"Novemberr 17, 2026", kUs, kNo},
        // Where the stand-ins are stricter than the system.
        {"17.11.26", kDe, kNo, 0, kStandIns},   {"17/11/2026", kUs, kNo, 0, kStandIns}, {"2026-13-01", kDe, kNo, 0, kStandIns},
        {"17.11-2026", kDe, kNo, 0, kStandIns}, {"0:30 AM", kUs, kNo, 0, kStandIns},    {"13:00 PM", kUs, kNo, 0, kStandIns},
        {"Dienstag 20:18", kDe, kNo, 0, kStandIns}, {"01.01.0099", kDe, kNo, 0, kStandIns},
    };
    for (const auto& r : rows) {
        if (r.standInsOnly && !varion::test::kStandInServices) continue;
        DATE value = -1;
        const HRESULT hr = VarDateFromStr(CString(r.text), r.lcid, r.flags, &value);
        EXPECT_EQ(hr, r.value == r.value ? S_OK : DISP_E_TYPEMISMATCH) << r.text;
        EXPECT_TRUE(FAILED(hr) || value == r.value) << r.text << " flags " << r.flags << " gave " << value;
    }
    DATE value = 0;
    VARION_STANDIN_ONLY(EXPECT_EQ(VarDateFromStr(nullptr, kDe, 0, &value), E_INVALIDARG));
    VARION_STANDIN_ONLY(EXPECT_EQ(VarDateFromStr(OLESTR("17.11.2026"), kDe, 0, nullptr), E_INVALIDARG));
    VARION_STANDIN_ONLY(EXPECT_EQ(VarDateFromStr(OLESTR("17.11.2026"), 0x0419, 0, &value), E_INVALIDARG));  // no table row
    EXPECT_EQ(VarDateFromStr(OLESTR("17.11.2026"), kDe, VAR_TIMEVALUEONLY | VAR_DATEVALUEONLY, &value),
              E_INVALIDARG);
}

// Every text a locale renders reads back as the same instant, in that locale.
TEST(DateText, EveryRenderedTextParsesBackInItsLocale) {
    // Both halves of the 12-hour clock and its edges, the first and last
    // days, before day 0, and day 0 itself (its time alone).
    const double instants[] = {kEvening, kMorning, DateOf(2026, 3, 5, 12, 59, 59), DateOf(2026, 3, 5, 0, 0, 1),
                               DateOf(100, 1, 1), DateOf(9999, 12, 31, 23, 59, 59), DateOf(1899, 12, 29, 6, 0, 0), 0.75};
    for (const varion::test::TestLocale& locale : varion::test::kTestLocales)
        for (double instant : instants)
            for (ULONG flags : {ULONG(0), VAR_DATEVALUEONLY, VAR_TIMEVALUEONLY}) {
                BSTR text = nullptr;
                ASSERT_EQ(VarBstrFromDate(instant, locale.lcid, flags, &text), S_OK);
                const std::string shown = Utf8(text);
                DATE back = -1;
                const HRESULT hr = shown.empty() ? S_OK : VarDateFromStr(text, locale.lcid, 0, &back);
                SysFreeString(text);
                if (shown.empty()) continue;  // the flag left out the only part there was
                EXPECT_EQ(hr, S_OK) << shown << " in " << locale.name;
                SYSTEMTIME st{};
                VariantTimeToSystemTime(instant, &st);
                const double expected = flags == VAR_DATEVALUEONLY ? DateOf(st.wYear, st.wMonth, st.wDay)
                                        : flags == VAR_TIMEVALUEONLY ? DateOf(1899, 12, 30, st.wHour, st.wMinute, st.wSecond)
                                                                     : instant;
                EXPECT_EQ(back, expected) << shown << " in " << locale.name;
            }
}

}  // namespace
