// Routes of the dispatcher that are still to be built: each answers
// RC_NOT_CONVERTIBLE and leaves the value unchanged.
// TODO(text, dates): replace with the value-to-text, text-to-value and
// number/date conversions.
#include <varion/varion.h>

long CVarion::ChangeToString(VARTYPE) noexcept { return RC_NOT_CONVERTIBLE; }
long CVarion::ChangeFromString(VARTYPE) noexcept { return RC_NOT_CONVERTIBLE; }
long CVarion::ChangeNumericToDate(VARTYPE) noexcept { return RC_NOT_CONVERTIBLE; }
long CVarion::ChangeDateToNumeric(VARTYPE) noexcept { return RC_NOT_CONVERTIBLE; }
