// Dates, times and durations: the internal operations other subsystems use.
//
// Every date-family value holds a double counting days. Date-times (VT_DATE,
// 102, 103, 106) count from 1899-12-30 00:00 as the Automation date does
// (before that day the whole part is the day and the magnitude of the
// fraction the time of day: -1.25 is 1899-12-29 06:00); durations (100, 101,
// 105) are signed spans (-0.25 is minus six hours).
//
// Whole units are counted after adding 1/64 ms away from zero ("rounded
// counts"), so 0.9999 ms counts as 1 ms. Where a double cannot resolve 1/64 ms
// (beyond about 524,288 days, the year 3335 for a date-time) the offset grows
// to two units in the last place of the value, so that the error of the
// stored double never drops a unit: 9999-12-31 23:59:59.001 still reads 1 ms.
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

/// The count of whole units (`unitsPerDay`, an integral number, per day) in
/// `days`, rounded as above and truncated toward zero: (1.5, 24) gives 36,
/// (-0.25, 86400000) gives -21600000. NaN counts 0; a count beyond the 64-bit
/// range saturates at its limit.
LONGLONG RoundedCount(double days, double unitsPerDay) noexcept;

/// Splits a date-time: the millisecond m is the rounded count of milliseconds
/// remainder 1,000 (with the count's sign, so it is zero or negative before
/// 1899-12-30), the other fields are those of the value less m milliseconds,
/// the time rounded to the nearest second. So 23:59:59.750 stays on its day
/// with second 59 and millisecond 750. Before 1899-12-30 the fields are the
/// time of day without its milliseconds and -m its milliseconds: -1.2499942
/// (1899-12-29 05:59:59.500) gives 5:59:59 and -500. False (fields untouched)
/// outside 0100-01-01 .. 9999-12-31 23:59:59 and for NaN or infinities.
bool DateTimeFields(double value, DateTimeFieldSet& fields) noexcept;

/// Builds a date-time from fields; answers 0 when valid, 1 when not. Each of
/// the first six fields is taken by its low 16 bits; they are valid when they
/// name an existing date from 0100-01-01 to 9999-12-31 and a time up to
/// 23:59:59 (2023-02-29 and hour 24 are invalid). A millisecond of 1 or more
/// is added to the day count (1,500 adds one and a half seconds; before
/// 1899-12-30 adding moves the time of day back); zero or less adds nothing.
/// Invalid fields set `value` to 0.0.
int DateFromFields(long year, long month, long day, long hour, long minute, long second, long millisecond,
                   double& value) noexcept;

/// Components and totals of a duration; whole days are the value truncated
/// toward zero (no rounding offset), low 32 bits: 0.99999999999 gives 0 days
/// and 24 total hours.
DurationFieldSet DurationFields(double value) noexcept;
/// days + hours/24 + minutes/1440 + seconds/86400 + milliseconds/86400000 +
/// fractions/2764800000, summed in that order; no field is range-checked.
double DurationFromFields(long days, long hours, long minutes, long seconds, long milliseconds,
                          long fractions) noexcept;
double DurationFromFields(long days, long hours, long minutes, double seconds) noexcept;
/// n / 86,400,000 and n / 2,764,800,000.
double DurationFromMilliseconds(LONGLONG milliseconds) noexcept;
double DurationFromFractions(LONGLONG fractions) noexcept;

// ---------------------------------------------------------------------------
// Text forms. The producers may throw std::bad_alloc; callers catch it. Each
// allocates at most its result.
// ---------------------------------------------------------------------------

/// The user locale's date-time text (short date and long time, as
/// VarBstrFromDate writes it) of the value less its millisecond, then "," and
/// the millisecond in three digits when it is above zero: de-DE
/// "17.11.2026 20:18:38,250"; a date alone at midnight, a time alone on
/// 1899-12-30. Dates before 1899-12-30 show whole seconds (their millisecond
/// is not above zero). Empty outside the calendar range.
CString FormatDateTime(double value);
/// "2026-11-17T20:18:38.25": fields of DateTimeFields, the millisecond after
/// "." without trailing zeros and only when above zero, no zone. Empty outside
/// the calendar range. Dates before 1899-12-30 show whole seconds (their
/// millisecond is not above zero), so only from that day on does every
/// instant read back to the millisecond.
CString FormatIsoDateTime(double value);
/// A duration under a directive format: %D whole days, %H %M %S hours,
/// minutes and seconds zero-padded to two digits (%#H, %#M, %#S unpadded),
/// %% a "%". An empty format is "%D %H:%M:%S" from one day on, else
/// "%H:%M:%S". When there are milliseconds or fractions, %S shows them:
/// "%06.3lf" (05.250) or, with fractions, "%9.6lf" (" 5.500500"), with the
/// runtime's decimal separator; %#S stays whole. Any other character after
/// "%" (or "%#") is copied with it ("%Q" stays "%Q"); a lone "%" at the end
/// stays. A negative duration is written as "-" and the text of its magnitude:
/// minus 30 minutes gives "-00:30:00", minus 1.5 days "-1 12:00:00".
CString FormatDuration(double value, const CString& format);
/// "PT90.5S", "-PT1.25S", "PT0S": total milliseconds as seconds.
CString FormatIsoDuration(double value);

// Parsers: 0 on success with `value` set; a failed parse may have written
// part of `value`, which the caller discards. They never throw and never
// allocate for texts of ordinary length.

/// The locale date text with optional fraction of a second after "," (or "."
/// after the last ":"): "17.11.2026 20:18:38,250". -2 when the date or time
/// does not parse (VarDateFromStr with `flags` and `lcid`), -1 when the
/// fraction is not a decimal number. A text without a date-and-time part
/// (empty, or only commas) gives 0 with 0.0.
long ParseDateTimeText(const CString& text, ULONG flags, LCID lcid, double& value) noexcept;
/// "2026-11-17", "2026-11-17T20:18:38.25" (fraction cut to milliseconds; a
/// zone after the seconds is ignored). Answers DateFromFields' flag: 0 valid,
/// 1 invalid.
int ParseIsoDateTime(const CString& text, double& value) noexcept;
/// "[days ]hours:minutes[:seconds]" with seconds as a decimal number with "."
/// or ",": "1 12:00:00", "00:00:05,25", "0:90", and the space-padded seconds
/// FormatDuration writes with fractions ("00:00: 0.500500"; a space counts as
/// ending the days only before the first ":"). -1 for a leading "-", a text
/// without ":", a field that is not a number or a duration beyond the double
/// range.
long ParseDuration(const CString& text, double& value) noexcept;
/// "PT90.5S", "-PT1.25S", "+PT0S", "PT.5S"; the fraction is cut to
/// milliseconds. -1 for a wrong shape, -2 for seconds that are not a number
/// or lie beyond +/-9e15.
long ParseIsoDuration(const CString& text, double& value) noexcept;

/// A date read from a value: a VT_DATE's double, or a VT_BSTR text that
/// VarDateFromStr reads in the user's locale (date and time, then date only)
/// or in German (0x407, the same two ways). Anything else is not valid.
struct PlatformDate {
    double value = 0.0;
    bool valid = false;
};
PlatformDate DateFromValue(const CVarion& value) noexcept;

}  // namespace varion::detail
