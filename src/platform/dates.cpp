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

// Year, month and day of month are checked (100..9999, 1..12, 1..31); a day
// beyond the month's end and hours, minutes and seconds beyond their range
// roll over into the following days, as on the platform (February 30 gives
// March 2). Milliseconds are ignored. FALSE when the result leaves the range.
INT SystemTimeToVariantTime(LPSYSTEMTIME lpSystemTime, DOUBLE* pvtime) {
    if (lpSystemTime == nullptr || pvtime == nullptr) return FALSE;
    const SYSTEMTIME& st = *lpSystemTime;
    if (st.wYear < kFirstYear || st.wYear > kLastYear || st.wMonth < 1 || st.wMonth > 12 || st.wDay < 1 ||
        st.wDay > 31)
        return FALSE;
    long long dayNumber = DayFromCivil(st.wYear, st.wMonth, 1) + st.wDay - 1;
    long long seconds = st.wHour * 3600LL + st.wMinute * 60LL + st.wSecond;
    dayNumber += seconds / kSecondsPerDay;
    seconds %= kSecondsPerDay;
    if (dayNumber < kFirstDay || dayNumber > kLastDay) return FALSE;
    *pvtime = AutomationDate(dayNumber, seconds * 1000);
    return TRUE;
}

// The time of day is rounded to the nearest second; wMilliseconds is 0.
INT VariantTimeToSystemTime(DOUBLE vtime, LPSYSTEMTIME lpSystemTime) {
    DateParts parts;
    if (lpSystemTime == nullptr || !SplitAutomationDate(vtime, parts)) return FALSE;
    FillSystemTime(parts, *lpSystemTime);
    return TRUE;
}

// As VariantTimeToSystemTime, with the day of year (1 to 366); flags are not used.
HRESULT VarUdateFromDate(DATE dateIn, ULONG /*dwFlags*/, UDATE* pudateOut) {
    DateParts parts;
    if (pudateOut == nullptr || !SplitAutomationDate(dateIn, parts)) return E_INVALIDARG;
    FillSystemTime(parts, pudateOut->st);
    pudateOut->wDayOfYear = static_cast<USHORT>(parts.dayOfYear);
    return S_OK;
}

}  // extern "C"
