// Dates, times and durations: the internal operations other subsystems use.
//
// Every date-family value holds a double counting days. Date-times (VT_DATE,
// 102, 103, 106) count from 1899-12-30 00:00 as the Automation date does
// (before that day the whole part is the day and the magnitude of the
// fraction the time of day); durations (100, 101, 105) are signed spans.
// Whole units are counted after adding 1/64 ms away from zero ("rounded
// counts"), so 0.9999 ms counts as 1 ms.
#pragma once

#include <varion/varion.h>

namespace varion::detail {

/// Milliseconds and 1/32-millisecond fractions per day; the rounding offset.
constexpr double kMillisecondsPerDay = 86400000.0;
constexpr double kFractionsPerDay = 2764800000.0;
constexpr double kRoundingOffset = 1.808449074074074e-10;  // 1/64 ms in days

/// Calendar fields of a date-time; day of week 1 = Monday to 7 = Sunday.
struct DateTimeFieldSet {
    long year = -1, month = -1, day = -1, dayOfWeek = -1;
    long hour = -1, minute = -1, second = -1, millisecond = -1;
};

/// Components (each with the duration's sign) and totals of a duration.
struct DurationFieldSet {
    long days = 0, hours = 0, minutes = 0, seconds = 0, milliseconds = 0, fractions = 0;
    LONGLONG totalHours = 0, totalMinutes = 0, totalSeconds = 0, totalMilliseconds = 0, totalFractions = 0;
};

/// The count of whole units (unitsPerDay per day) in `days`, rounded as above.
LONGLONG RoundedCount(double days, double unitsPerDay) noexcept;

/// Splits a date-time; false when it lies outside 0100-01-01 .. 9999-12-31 23:59:59.
bool DateTimeFields(double value, DateTimeFieldSet& fields) noexcept;
/// Builds a date-time from fields; answers 0 when valid, 1 when not (then
/// `value` is left as the platform conversion left it, without milliseconds).
int DateFromFields(long year, long month, long day, long hour, long minute, long second, long millisecond,
                   double& value) noexcept;

DurationFieldSet DurationFields(double value) noexcept;
double DurationFromFields(long days, long hours, long minutes, long seconds, long milliseconds,
                          long fractions) noexcept;
double DurationFromFields(long days, long hours, long minutes, double seconds) noexcept;
double DurationFromMilliseconds(LONGLONG milliseconds) noexcept;
double DurationFromFractions(LONGLONG fractions) noexcept;

// Text forms. The producers may throw std::bad_alloc; callers catch it.
CString FormatDateTime(double value);
CString FormatIsoDateTime(double value);
CString FormatDuration(double value, const CString& format);
CString FormatIsoDuration(double value);

// Parsers: 0 on success with `value` set; a failed parse may have written
// part of `value`, which the caller discards. Never throw.
long ParseDateTimeText(const CString& text, ULONG flags, LCID lcid, double& value) noexcept;
int ParseIsoDateTime(const CString& text, double& value) noexcept;
long ParseDuration(const CString& text, double& value) noexcept;
long ParseIsoDuration(const CString& text, double& value) noexcept;

}  // namespace varion::detail
