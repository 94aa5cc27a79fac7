// The split of an Automation date into calendar parts and its making from a
// day number and a time of day, shared by the library and the stand-ins.
#include "platform/calendar.h"

#include <cmath>

namespace varion::detail {

bool SplitAutomationDate(double value, DateParts& parts) noexcept {
    // A generous bound first, so that the integer conversions below are defined.
    if (!(value > static_cast<double>(kFirstDay) - 2.0 && value < static_cast<double>(kLastDay) + 2.0)) return false;
    const double whole = std::trunc(value);
    const double fraction = std::fabs(value - whole);  // exact
    long long dayNumber = static_cast<long long>(whole);
    long long seconds = static_cast<long long>(std::floor(fraction * 86400.0 + 0.5));
    if (seconds >= kSecondsPerDay) {  // rounded up into the next calendar day
        seconds -= kSecondsPerDay;
        ++dayNumber;
    }
    if (dayNumber < kFirstDay || dayNumber > kLastDay) return false;
    const CivilDate date = CivilFromDay(dayNumber);
    parts.dayNumber = dayNumber;
    parts.year = static_cast<int>(date.year);
    parts.month = date.month;
    parts.day = date.day;
    parts.dayOfWeek = WeekdayOfDay(dayNumber);
    parts.dayOfYear = static_cast<int>(dayNumber - DayFromCivil(date.year, 1, 1) + 1);
    parts.hour = static_cast<int>(seconds / 3600);
    parts.minute = static_cast<int>(seconds / 60 % 60);
    parts.second = static_cast<int>(seconds % 60);
    return true;
}

double AutomationDate(long long dayNumber, long long millisecondOfDay) noexcept {
    const long long count = dayNumber >= 0 ? dayNumber * 86400000 + millisecondOfDay
                                           : dayNumber * 86400000 - millisecondOfDay;
    return static_cast<double>(count) / 86400000.0;
}

}  // namespace varion::detail
