// Proleptic Gregorian day arithmetic and the split of an Automation date.
//
// An Automation date counts days from 1899-12-30 00:00. Its whole part is the
// day (negative before that day) and the magnitude of its fraction the time of
// day, so -1.25 is 1899-12-29 06:00 and 0.5 / -0.5 are both 1899-12-30 12:00.
// Day numbers here are the whole parts: day 0 is 1899-12-30, day 2 1900-01-01.
#pragma once

#include <varion/platform/automation.h>

#include <cmath>

namespace varion::detail {

constexpr long long kFirstDay = -657434;  // 0100-01-01
constexpr long long kLastDay = 2958465;   // 9999-12-31
constexpr long kFirstYear = 100;
constexpr long kLastYear = 9999;
constexpr long long kSecondsPerDay = 86400;

constexpr bool IsLeapYear(long long year) noexcept {
    return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

constexpr int DaysInMonth(long long year, int month) noexcept {
    constexpr int kDays[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (month < 1 || month > 12) return 0;
    return month == 2 && IsLeapYear(year) ? 29 : kDays[month - 1];
}

/// Day number of a calendar date (any year; month 1..12, day 1..31 taken as given).
constexpr long long DayFromCivil(long long year, int month, int day) noexcept {
    year -= month <= 2 ? 1 : 0;
    const long long era = (year >= 0 ? year : year - 399) / 400;
    const long long yoe = year - era * 400;
    const long long doy = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
    const long long doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + doe - 719468 + 25569;  // 25569: 1899-12-30 to 1970-01-01
}

struct CivilDate {
    long long year;
    int month, day;
};

/// Calendar date of a day number.
constexpr CivilDate CivilFromDay(long long dayNumber) noexcept {
    const long long z = dayNumber - 25569 + 719468;
    const long long era = (z >= 0 ? z : z - 146096) / 146097;
    const long long doe = z - era * 146097;
    const long long yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    const long long doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    const long long mp = (5 * doy + 2) / 153;
    const int day = static_cast<int>(doy - (153 * mp + 2) / 5 + 1);
    const int month = static_cast<int>(mp < 10 ? mp + 3 : mp - 9);
    return {yoe + era * 400 + (month <= 2 ? 1 : 0), month, day};
}

/// Day of week of a day number, 0 = Sunday (day 0, 1899-12-30, is a Saturday).
constexpr int WeekdayOfDay(long long dayNumber) noexcept {
    const long long r = (dayNumber + 6) % 7;
    return static_cast<int>(r < 0 ? r + 7 : r);
}

/// An Automation date taken apart, the time of day rounded to the nearest second.
struct DateParts {
    long long dayNumber = 0;
    int year = 0, month = 0, day = 0;
    int dayOfWeek = 0;  // 0 = Sunday
    int dayOfYear = 0;  // 1 to 366
    int hour = 0, minute = 0, second = 0;
};

/// Splits `value`; false for NaN, infinities and dates outside 0100-01-01 to
/// 9999-12-31 23:59:59 (after rounding: 9999-12-31 23:59:59.6 is outside).
bool SplitAutomationDate(double value, DateParts& parts) noexcept;

/// The date the platform's services take a NaN for: its range checks let it
/// through as day 0, 1899-12-30 00:00:00.
inline double ServiceDate(double value) noexcept { return std::isnan(value) ? 0.0 : value; }

/// The Automation date of a day number and a time of day given in
/// milliseconds (0 to 86,399,999), rounded once to the nearest double.
double AutomationDate(long long dayNumber, long long millisecondOfDay) noexcept;

}  // namespace varion::detail
