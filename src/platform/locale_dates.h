// The locale texts of Automation dates as the library uses them: the user's
// text of a date and the parse of a text in a given locale. On Windows they
// go to the system's VarBstrFromDate and VarDateFromStr; elsewhere to the
// stand-ins' work behind the same services. Both work on caller buffers and
// views.
#pragma once

#include <varion/platform/cstring.h>

namespace varion::detail {

/// Room UserDateText needs in its output buffer, terminator included.
constexpr int kDateTextCapacity = 128;

/// VarBstrFromDate(value, LOCALE_USER_DEFAULT, 0) written into `out`
/// (kDateTextCapacity units, null-terminated): the short date and the long
/// time of the user's locale, the date alone at midnight and the time alone
/// on 1899-12-30. Answers the length, or -1 when the date has no text (out
/// of the calendar range, no memory). de-DE 46343.8463 gives
/// "17.11.2026 20:18:40".
int UserDateText(double value, OLECHAR* out) noexcept;

/// VarDateFromStr on a view: answers S_OK with `value` set,
/// DISP_E_TYPEMISMATCH for a text that is no date or time (a text holding a
/// U+0000 included), E_INVALIDARG for an unknown locale or both value-only
/// flags, E_OUTOFMEMORY.
HRESULT DateFromText(OleStringView text, LCID lcid, ULONG flags, double& value) noexcept;

}  // namespace varion::detail
