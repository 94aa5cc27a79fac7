// The Automation date services against an independent calendar: a plain
// day-by-day walk with its own leap-year rule.
#include "support/test_support.h"

#include <varion/platform/automation.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <limits>
#include <string>

namespace {

int MonthLength(int year, int month) {
    static const int kLengths[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool leap = year % 400 == 0 || (year % 4 == 0 && year % 100 != 0);
    return month == 2 && leap ? 29 : kLengths[month - 1];
}

// Walks every day from 0100-01-01 (day -657434) to 9999-12-31 (day 2958465)
// and checks it both ways: fields to day count and day count to fields. Day 0
// is Saturday 1899-12-30, so the weekday is the day count's remainder from it.
TEST(Calendar, EveryDayFromYear100To9999MatchesAPlainWalk) {
    long day = -657434;
    for (int year = 100; year <= 9999; ++year)
        for (int month = 1, dayOfYear = 1; month <= 12; ++month)
            for (int mday = 1; mday <= MonthLength(year, month); ++mday, ++day, ++dayOfYear) {
                SYSTEMTIME st{static_cast<WORD>(year), static_cast<WORD>(month), 0, static_cast<WORD>(mday), 0, 0, 0, 0};
                double value = -1e9;
                ASSERT_TRUE(SystemTimeToVariantTime(&st, &value)) << year << "-" << month << "-" << mday;
                ASSERT_EQ(value, static_cast<double>(day)) << year << "-" << month << "-" << mday;
                UDATE u{};
                ASSERT_EQ(VarUdateFromDate(static_cast<double>(day), 0, &u), S_OK) << day;
                ASSERT_EQ(u.st.wYear * 10000 + u.st.wMonth * 100 + u.st.wDay, year * 10000 + month * 100 + mday) << day;
                ASSERT_EQ(u.st.wDayOfWeek, ((day % 7) + 13) % 7) << day;
                ASSERT_EQ(u.wDayOfYear, dayOfYear) << day;
            }
    EXPECT_EQ(day - 1, 2958465);
}

// The fields of a SYSTEMTIME as "Y-M-D h:m:s wWeekday", or "refused".
std::string Fields(double value) {
    SYSTEMTIME st{};
    if (!VariantTimeToSystemTime(value, &st)) return "refused";
    char text[64];
    std::snprintf(text, sizeof text, "%d-%d-%d %d:%d:%d w%d", st.wYear, st.wMonth, st.wDay, st.wHour, st.wMinute,
                  st.wSecond, st.wDayOfWeek);
    return text + std::string(st.wMilliseconds != 0 ? " ms" : "");
}

// Where the time rounds into another day, and for NaN, the system's service
// answers a weekday other than the date's; the stand-ins answer the date's own.
std::string WithoutWeekdayOffStandIns(const std::string& fields) {
    return varion::test::kStandInServices ? fields : fields.substr(0, fields.find(" w"));
}

TEST(Calendar, TimeOfDayIsTheMagnitudeOfTheFractionAndRoundsToTheSecond) {
    const double s = 1.0 / 86400.0;
    const struct { double value; const char* fields; } rows[] = {
        {0.5, "1899-12-30 12:0:0 w6"},  {-0.5, "1899-12-30 12:0:0 w6"},  {-1.25, "1899-12-29 6:0:0 w5"},
        {2.0 + 0.5 * s, "1900-1-1 0:0:1 w1"},  {-1.0 - 0.4999 * s, "1899-12-29 0:0:0 w5"},  // half a second rounds up
        {3.0 - 0.4 * s, "1900-1-2 0:0:0 w2"},  {-2.0 - 86399.6 * s, "1899-12-29 0:0:0 w5"},  // 23:59:59.6 is the next day
        {2958465.0 + 86399.0 * s, "9999-12-31 23:59:59 w5"}, {2958466.0, "refused"},
        {-657434.0 - 86399.0 * s, "100-1-1 23:59:59 w5"},  {-657435.0, "refused"},
        {std::numeric_limits<double>::infinity(), "refused"},
        {std::numeric_limits<double>::quiet_NaN(), "1899-12-30 0:0:0 w6"},  // passes the range checks as day 0
    };
    for (const auto& r : rows)
        EXPECT_EQ(WithoutWeekdayOffStandIns(Fields(r.value)), WithoutWeekdayOffStandIns(r.fields)) << r.value;
    // The last second rounding up leaves the range (Wine answers the year 10000).
    VARION_STANDIN_ONLY(EXPECT_EQ(Fields(2958465.0 + 86399.6 * s), "refused"));
    UDATE u{};
    EXPECT_EQ(VarUdateFromDate(2958466.0, 0, &u), E_INVALIDARG);
    VARION_STANDIN_ONLY(EXPECT_EQ(VarUdateFromDate(0.0, 0, nullptr), E_INVALIDARG));
    VARION_STANDIN_ONLY(EXPECT_FALSE(VariantTimeToSystemTime(0.0, nullptr)));
}

TEST(Calendar, SystemTimeChecksTheFieldsAndRollsOverTheRest) {
    const struct { SYSTEMTIME st; bool ok; double value; } rows[] = {
        {{1900, 2, 0, 29, 0, 0, 0, 0}, true, 61.0},     // 1900 has no February 29: March 1
        {{2026, 3, 0, 1, 24, 0, 0, 0}, true, 46083.0},  // hour 24 is the next day: March 2
        {{2026, 3, 0, 2, 0, 0, 0, 999}, true, 46083.0},  // milliseconds are ignored
        {{1899, 12, 0, 29, 6, 0, 0, 0}, true, -1.25},
        {{2026, 0, 0, 1, 0, 0, 0, 0}, true, 45992.0},  // month 0 is December before: 2025-12-01
        {{2026, 1, 0, 0, 0, 0, 0, 0}, true, 46022.0},  // day 0 is the day before: 2025-12-31
        {{99, 12, 0, 31, 0, 0, 0, 0}, true, 36525.0},  // two-digit years: 1999-12-31
        {{29, 1, 0, 1, 0, 0, 0, 0}, true, 47119.0},    // 2029-01-01
        {{9999, 12, 0, 31, 24, 0, 0, 0}, true, 2958466.0},  // rolls past the last day
        // A refusal leaves the value alone.
        {{2026, 13, 0, 1, 0, 0, 0, 0}, false, -7.0}, {{2026, 1, 0, 32, 0, 0, 0, 0}, false, -7.0},
        {{10000, 1, 0, 1, 0, 0, 0, 0}, false, -7.0},
    };
    for (const auto& r : rows) {
        SYSTEMTIME st = r.st;
        double value = -7.0;
        ASSERT_EQ(SystemTimeToVariantTime(&st, &value) != FALSE, r.ok) << r.st.wYear << "-" << r.st.wMonth;
        EXPECT_DOUBLE_EQ(value, r.value) << r.st.wYear << "-" << r.st.wMonth << "-" << r.st.wDay;
    }
    [[maybe_unused]] double value = 0;
    VARION_STANDIN_ONLY(EXPECT_FALSE(SystemTimeToVariantTime(nullptr, &value)));
}

}  // namespace
