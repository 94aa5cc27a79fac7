// Automation date services: SYSTEMTIME and UDATE to and from the Automation
// date, with the calendar of platform/calendar.h.
#include "platform/calendar.h"

using namespace varion::detail;

namespace {

void FillSystemTime(const DateParts& parts, SYSTEMTIME& st) noexcept {
    st.wYear = static_cast<WORD>(parts.year);
    st.wMonth = static_cast<WORD>(parts.month);
    st.wDayOfWeek = static_cast<WORD>(parts.dayOfWeek);
    st.wDay = static_cast<WORD>(parts.day);
    st.wHour = static_cast<WORD>(parts.hour);
    st.wMinute = static_cast<WORD>(parts.minute);
    st.wSecond = static_cast<WORD>(parts.second);
    st.wMilliseconds = 0;
}

}  // namespace

extern "C" {

// As on the platform: a year below 100 is a two-digit year (0 to 29 give
// 2000 to 2029, 30 to 99 give 1930 to 1999); the year (to 9999), the month
// (0 to 12) and the day (0 to 31) are checked; month 0 and day 0 roll back
// (2026-01-00 is 2025-12-31, 2026-00-01 2025-12-01), a day beyond the
// month's end and hours, minutes and seconds beyond their range roll over
// into the following days (February 30 gives March 2, 9999-12-31 24:00 the
// day after). Milliseconds are ignored.
INT SystemTimeToVariantTime(LPSYSTEMTIME lpSystemTime, DOUBLE* pvtime) {
    if (lpSystemTime == nullptr || pvtime == nullptr) return FALSE;
    const SYSTEMTIME& st = *lpSystemTime;
    if (st.wYear > kLastYear || st.wMonth > 12 || st.wDay > 31) return FALSE;
    long long year = st.wYear;
    if (year < 100) year += year < 30 ? 2000 : 1900;
    const long long dayNumber0 = st.wMonth == 0 ? DayFromCivil(year - 1, 12, 1) : DayFromCivil(year, st.wMonth, 1);
    long long dayNumber = dayNumber0 + st.wDay - 1;
    long long seconds = st.wHour * 3600LL + st.wMinute * 60LL + st.wSecond;
    dayNumber += seconds / kSecondsPerDay;
    seconds %= kSecondsPerDay;
    *pvtime = AutomationDate(dayNumber, seconds * 1000);
    return TRUE;
}

// The time of day is rounded to the nearest second; wMilliseconds is 0.
INT VariantTimeToSystemTime(DOUBLE vtime, LPSYSTEMTIME lpSystemTime) {
    DateParts parts;
    if (lpSystemTime == nullptr || !SplitAutomationDate(ServiceDate(vtime), parts)) return FALSE;
    FillSystemTime(parts, *lpSystemTime);
    return TRUE;
}

// As VariantTimeToSystemTime, with the day of year (1 to 366); flags are not used.
HRESULT VarUdateFromDate(DATE dateIn, ULONG /*dwFlags*/, UDATE* pudateOut) {
    DateParts parts;
    if (pudateOut == nullptr || !SplitAutomationDate(ServiceDate(dateIn), parts)) return E_INVALIDARG;
    FillSystemTime(parts, pudateOut->st);
    pudateOut->wDayOfYear = static_cast<USHORT>(parts.dayOfYear);
    return S_OK;
}

}  // extern "C"
