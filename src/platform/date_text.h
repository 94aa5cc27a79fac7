// Locale texts of Automation dates: the work behind VarBstrFromDate and
// VarDateFromStr, on caller buffers and views so that nothing is allocated.
#pragma once

#include "platform/locale_dates.h"
#include "platform/locales.h"

namespace varion::detail {

/// Renders `value` by the locale's short date and long time patterns into
/// `out` (kDateTextCapacity units, null-terminated); answers the length, or
/// -1 when the date lies outside the calendar range. The time is rounded to
/// the nearest second. The date 1899-12-30 and the time 00:00:00 are left
/// out (the time of that day shows alone without flags);
/// VAR_TIMEVALUEONLY and VAR_DATEVALUEONLY leave out the other part, so
/// that nothing may remain: en-US 45613.5 gives "11/17/2024 12:00:00 PM",
/// 0.5 with VAR_DATEVALUEONLY the empty text.
int FormatDateText(double value, const LocaleInfo& locale, ULONG flags, OLECHAR* out) noexcept;

/// Parses a date, a time or both (see VarDateFromStr for the accepted forms).
/// Answers S_OK with `value` set, DISP_E_TYPEMISMATCH for a text that is not
/// a valid date or time, E_INVALIDARG for both value-only flags at once.
HRESULT ParseDateText(OleStringView text, const LocaleInfo& locale, ULONG flags, double& value) noexcept;

}  // namespace varion::detail
