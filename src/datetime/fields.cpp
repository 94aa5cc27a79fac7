// Calendar fields of date-times and components of durations.
#include "datetime/datetime.h"

#include "platform/calendar.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace varion::detail {
namespace {

constexpr double kCountLimit = 9.2e18;  // below the largest 64-bit integer

std::int32_t Low32(long long x) noexcept { return static_cast<std::int32_t>(static_cast<std::uint32_t>(x)); }

WORD Low16(long x) noexcept { return static_cast<WORD>(static_cast<unsigned long>(x) & 0xFFFFu); }

}  // namespace

LONGLONG RoundedCount(double days, double unitsPerDay) noexcept {
    if (std::isnan(days)) return 0;
    const double magnitude = std::fabs(days);
    if (magnitude * unitsPerDay >= kCountLimit) return days < 0 ? INT64_MIN : INT64_MAX;
    const double ulp = std::nextafter(magnitude, HUGE_VAL) - magnitude;
    const double offset = std::max(kRoundingOffset, 2.0 * ulp);
    // Whole days and the fraction apart, so that the product keeps the
    // fraction's precision.
    const double whole = std::floor(magnitude);
    const long long count = static_cast<long long>(whole * unitsPerDay) +
                            static_cast<long long>((magnitude - whole + offset) * unitsPerDay);
    return days < 0 ? -count : count;
}

bool DateTimeFields(double value, DateTimeFieldSet& fields) noexcept {
    if (!std::isfinite(value)) return false;
    const long long millisecond = RoundedCount(value, kMillisecondsPerDay) % 1000;
    DateParts parts;
    if (!SplitAutomationDate(value - static_cast<double>(millisecond) / kMillisecondsPerDay, parts)) return false;
    fields.year = parts.year;
    fields.month = parts.month;
    fields.day = parts.day;
    fields.dayOfWeek = parts.dayOfWeek == 0 ? 7 : parts.dayOfWeek;
    fields.hour = parts.hour;
    fields.minute = parts.minute;
    fields.second = parts.second;
    fields.millisecond = static_cast<long>(millisecond);
    return true;
}

int DateFromFields(long year, long month, long day, long hour, long minute, long second, long millisecond,
                   double& value) noexcept {
    SYSTEMTIME st{Low16(year), Low16(month), 0, Low16(day), Low16(hour), Low16(minute), Low16(second), 0};
    // Valid when the platform conversion and its inverse give the same fields:
    // this rejects what the platform would roll over (February 30, hour 24).
    double base = 0.0;
    SYSTEMTIME back{};
    if (!SystemTimeToVariantTime(&st, &base) || !VariantTimeToSystemTime(base, &back) || back.wYear != st.wYear ||
        back.wMonth != st.wMonth || back.wDay != st.wDay || back.wHour != st.wHour || back.wMinute != st.wMinute ||
        back.wSecond != st.wSecond) {
        value = 0.0;
        return 1;
    }
    // The same date counted in milliseconds and divided once, so the double
    // is the nearest to the exact instant.
    const long long dayNumber = DayFromCivil(st.wYear, st.wMonth, st.wDay);
    const long long secondOfDay = st.wHour * 3600LL + st.wMinute * 60LL + st.wSecond;
    const long long count = (dayNumber >= 0 ? dayNumber * 86400 + secondOfDay : dayNumber * 86400 - secondOfDay) * 1000;
    value = (static_cast<double>(count) + (millisecond >= 1 ? static_cast<double>(millisecond) : 0.0)) /
            kMillisecondsPerDay;
    return 0;
}

DurationFieldSet DurationFields(double value) noexcept {
    DurationFieldSet f;
    if (std::isnan(value)) return f;
    const double whole = std::trunc(value);
    f.days = Low32(whole >= kCountLimit ? INT64_MAX : whole <= -kCountLimit ? INT64_MIN : static_cast<long long>(whole));
    f.totalHours = RoundedCount(value, 24.0);
    f.totalMinutes = RoundedCount(value, 1440.0);
    f.totalSeconds = RoundedCount(value, 86400.0);
    f.totalMilliseconds = RoundedCount(value, kMillisecondsPerDay);
    f.totalFractions = RoundedCount(value, kFractionsPerDay);
    f.hours = static_cast<long>(f.totalHours % 24);
    f.minutes = static_cast<long>(f.totalMinutes % 60);
    f.seconds = static_cast<long>(f.totalSeconds % 60);
    f.milliseconds = static_cast<long>(f.totalMilliseconds % 1000);
    f.fractions = static_cast<long>(f.totalFractions % 32);
    return f;
}

double DurationFromFields(long days, long hours, long minutes, long seconds, long milliseconds,
                          long fractions) noexcept {
    double sum = DurationFromFields(days, hours, minutes, static_cast<double>(seconds));
    sum += static_cast<double>(milliseconds) / kMillisecondsPerDay;
    sum += static_cast<double>(fractions) / kFractionsPerDay;
    return sum;
}

double DurationFromFields(long days, long hours, long minutes, double seconds) noexcept {
    double sum = static_cast<double>(days);
    sum += static_cast<double>(hours) / 24.0;
    sum += static_cast<double>(minutes) / 1440.0;
    sum += seconds / 86400.0;
    return sum;
}

double DurationFromMilliseconds(LONGLONG milliseconds) noexcept {
    return static_cast<double>(milliseconds) / kMillisecondsPerDay;
}

double DurationFromFractions(LONGLONG fractions) noexcept { return static_cast<double>(fractions) / kFractionsPerDay; }

}  // namespace varion::detail
