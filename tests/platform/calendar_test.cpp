// The Automation date services against an independent calendar: a plain
// day-by-day walk with its own leap-year rule and weekday counter.
#include "support/test_support.h"

#include <varion/platform/automation.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

struct WalkDate {
    int year, month, day;
    int weekday;  // 0 = Sunday
    int dayOfYear;
};

int MonthLength(int year, int month) {
    static const int kLengths[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool leap = year % 400 == 0 || (year % 4 == 0 && year % 100 != 0);
    return month == 2 && leap ? 29 : kLengths[month - 1];
}

void StepForward(WalkDate& d) {
    d.weekday = (d.weekday + 1) % 7;
    ++d.dayOfYear;
    if (++d.day > MonthLength(d.year, d.month)) {
        d.day = 1;
        if (++d.month > 12) {
            d.month = 1;
            ++d.year;
            d.dayOfYear = 1;
        }
    }
}

void StepBack(WalkDate& d) {
    d.weekday = (d.weekday + 6) % 7;
    --d.dayOfYear;
    if (--d.day < 1) {
        if (--d.month < 1) {
            d.month = 12;
            --d.year;
            d.dayOfYear = MonthLength(d.year, 2) == 29 ? 366 : 365;
        }
        d.day = MonthLength(d.year, d.month);
    }
}

// Checks one day both ways: fields to day count and day count to fields.
void CheckDay(const WalkDate& d, long dayNumber) {
    SYSTEMTIME st{static_cast<WORD>(d.year), static_cast<WORD>(d.month), 0, static_cast<WORD>(d.day), 0, 0, 0, 0};
    double value = -1e9;
    ASSERT_TRUE(SystemTimeToVariantTime(&st, &value)) << d.year << "-" << d.month << "-" << d.day;
    ASSERT_EQ(value, static_cast<double>(dayNumber)) << d.year << "-" << d.month << "-" << d.day;
    UDATE u{};
    ASSERT_EQ(VarUdateFromDate(static_cast<double>(dayNumber), 0, &u), S_OK) << dayNumber;
    ASSERT_EQ(u.st.wYear, d.year) << dayNumber;
    ASSERT_EQ(u.st.wMonth, d.month) << dayNumber;
    ASSERT_EQ(u.st.wDay, d.day) << dayNumber;
    ASSERT_EQ(u.st.wDayOfWeek, d.weekday) << dayNumber;
    ASSERT_EQ(u.wDayOfYear, d.dayOfYear) << dayNumber;
}

// Day 0 is Saturday 1899-12-30; walk to both ends of the calendar range.
TEST(Calendar, EveryDayFromYear100To9999MatchesAPlainWalk) {
    WalkDate d{1899, 12, 30, 6, 364};
    long dayNumber = 0;
    for (; d.year <= 9999; StepForward(d), ++dayNumber) CheckDay(d, dayNumber);
    EXPECT_EQ(dayNumber - 1, 2958465);  // 9999-12-31

    d = {1899, 12, 30, 6, 364};
    dayNumber = 0;
    for (; d.year >= 100; StepBack(d), --dayNumber) CheckDay(d, dayNumber);
    EXPECT_EQ(dayNumber + 1, -657434);  // 0100-01-01
}

TEST(Calendar, HistoricalAnchors) {
    struct Row {
        WORD year, month, day, weekday;
    };
    const Row rows[] = {
        {1582, 10, 15, 5},  // first day of the Gregorian reform, a Friday
        {1582, 10, 4, 1},   // proleptic: the day before is not skipped
        {1900, 1, 1, 1},    {1900, 2, 28, 3}, {1900, 3, 1, 4},  // 1900 has no February 29
        {2000, 2, 29, 2},   {2100, 3, 1, 1},  {2026, 11, 17, 2}, {1899, 12, 29, 5},
    };
    for (const Row& r : rows) {
        SYSTEMTIME st{r.year, r.month, 0, r.day, 0, 0, 0, 0};
        double value = 0;
        ASSERT_TRUE(SystemTimeToVariantTime(&st, &value));
        SYSTEMTIME back{};
        ASSERT_TRUE(VariantTimeToSystemTime(value, &back));
        EXPECT_EQ(back.wDayOfWeek, r.weekday) << r.year << "-" << r.month << "-" << r.day;
    }
    SYSTEMTIME feb29{1900, 2, 0, 29, 0, 0, 0, 0};
    double value = 0;
    ASSERT_TRUE(SystemTimeToVariantTime(&feb29, &value));  // rolls over
    SYSTEMTIME back{};
    ASSERT_TRUE(VariantTimeToSystemTime(value, &back));
    EXPECT_EQ(back.wMonth, 3);
    EXPECT_EQ(back.wDay, 1);
}

TEST(Calendar, TimeOfDayIsTheMagnitudeOfTheFractionAndRoundsToTheSecond) {
    struct Row {
        double value;
        bool ok;
        WORD year, month, day, hour, minute, second;
    };
    const double s = 1.0 / 86400.0;
    const Row rows[] = {
        {0.0, true, 1899, 12, 30, 0, 0, 0},
        {0.5, true, 1899, 12, 30, 12, 0, 0},
        {-0.5, true, 1899, 12, 30, 12, 0, 0},
        {-1.25, true, 1899, 12, 29, 6, 0, 0},
        {-1.0 - 0.4999 * s, true, 1899, 12, 29, 0, 0, 0},
        {2.0 + 0.5 * s, true, 1900, 1, 1, 0, 0, 1},  // half a second rounds up
        {2.0 + 0.49 * s, true, 1900, 1, 1, 0, 0, 0},
        {3.0 - 0.4 * s, true, 1900, 1, 2, 0, 0, 0},  // 23:59:59.6 is the next day
        {-2.0 - 86399.6 * s, true, 1899, 12, 29, 0, 0, 0},  // before day 0 too
        {-0.9999999999, true, 1899, 12, 31, 0, 0, 0},
        {2958465.0 + 86399.0 * s, true, 9999, 12, 31, 23, 59, 59},
        {2958466.0, false, 0, 0, 0, 0, 0, 0},
        {-657434.0, true, 100, 1, 1, 0, 0, 0},
        {-657434.0 - 86399.0 * s, true, 100, 1, 1, 23, 59, 59},
        {-657435.0, false, 0, 0, 0, 0, 0, 0},
        {std::numeric_limits<double>::quiet_NaN(), true, 1899, 12, 30, 0, 0, 0},  // passes the range checks as day 0
        {std::numeric_limits<double>::infinity(), false, 0, 0, 0, 0, 0, 0},
        {-1e300, false, 0, 0, 0, 0, 0, 0},
    };
    for (const Row& r : rows) {
        SYSTEMTIME st{};
        const bool ok = VariantTimeToSystemTime(r.value, &st) != FALSE;
        ASSERT_EQ(ok, r.ok) << r.value;
        if (!ok) continue;
        EXPECT_EQ(st.wYear, r.year) << r.value;
        EXPECT_EQ(st.wMonth, r.month) << r.value;
        EXPECT_EQ(st.wDay, r.day) << r.value;
        EXPECT_EQ(st.wHour, r.hour) << r.value;
        EXPECT_EQ(st.wMinute, r.minute) << r.value;
        EXPECT_EQ(st.wSecond, r.second) << r.value;
        EXPECT_EQ(st.wMilliseconds, 0) << r.value;
    }
    // The last second rounding up leaves the range (Wine answers the year 10000).
    [[maybe_unused]] SYSTEMTIME last{};
    VARION_STANDIN_ONLY(EXPECT_FALSE(VariantTimeToSystemTime(2958465.0 + 86399.6 * s, &last)));
    UDATE u{};
    EXPECT_EQ(VarUdateFromDate(2958466.0, 0, &u), E_INVALIDARG);
    VARION_STANDIN_ONLY(EXPECT_EQ(VarUdateFromDate(0.0, 0, nullptr), E_INVALIDARG));
    VARION_STANDIN_ONLY(EXPECT_FALSE(VariantTimeToSystemTime(0.0, nullptr)));
}

TEST(Calendar, SystemTimeChecksTheFieldsAndRollsOverTheRest) {
    struct Row {
        SYSTEMTIME st;
        bool ok;
        double value;
    };
    const Row rows[] = {
        {{2026, 2, 0, 30, 0, 0, 0, 0}, true, 46083.0},  // February 30 is March 2
        {{2026, 3, 0, 1, 24, 0, 0, 0}, true, 46083.0},  // hour 24 is the next day
        {{2026, 3, 0, 1, 0, 1440, 0, 0}, true, 46083.0},  // 1,440 minutes too
        {{2026, 3, 0, 2, 0, 0, 0, 999}, true, 46083.0},  // milliseconds are ignored
        {{1899, 12, 0, 29, 6, 0, 0, 0}, true, -1.25},
        {{2026, 0, 0, 1, 0, 0, 0, 0}, true, 45992.0},  // month 0 is December before: 2025-12-01
        {{2026, 1, 0, 0, 0, 0, 0, 0}, true, 46022.0},  // day 0 is the day before: 2025-12-31
        {{99, 12, 0, 31, 0, 0, 0, 0}, true, 36525.0},  // two-digit years: 1999-12-31
        {{29, 1, 0, 1, 0, 0, 0, 0}, true, 47119.0},    // 2029-01-01
        {{9999, 12, 0, 31, 24, 0, 0, 0}, true, 2958466.0},  // rolls past the last day
        {{2026, 13, 0, 1, 0, 0, 0, 0}, false, 0},
        {{2026, 1, 0, 32, 0, 0, 0, 0}, false, 0},
        {{10000, 1, 0, 1, 0, 0, 0, 0}, false, 0},
    };
    for (const Row& r : rows) {
        SYSTEMTIME st = r.st;
        double value = -7.0;
        ASSERT_EQ(SystemTimeToVariantTime(&st, &value) != FALSE, r.ok) << r.st.wYear << "-" << r.st.wMonth;
        if (r.ok) EXPECT_DOUBLE_EQ(value, r.value) << r.st.wYear << "-" << r.st.wMonth << "-" << r.st.wDay;
        else EXPECT_EQ(value, -7.0);
    }
    [[maybe_unused]] double value = 0;
    VARION_STANDIN_ONLY(EXPECT_FALSE(SystemTimeToVariantTime(nullptr, &value)));
}

}  // namespace
