// Automation locale data: a table built into the library, one row per locale,
// so that date texts and separators never depend on which locales a machine
// has generated.
//
// LOCALE_USER_DEFAULT (and 0 and LOCALE_SYSTEM_DEFAULT) resolve to the user's
// locale named by the environment: the first non-empty of LC_ALL, LC_TIME and
// LANG. Names such as "de_DE.UTF-8", "de_DE@euro", "de-DE" and "de_DE" pick the
// de-DE row; "C", "POSIX", "C.UTF-8" and an unset environment the invariant
// row; an unknown country the first row of its language ("de_LU" gives de-DE);
// an unknown language the invariant row. The environment is read on every
// call; only the row of the last name seen is remembered, per thread, and
// the name is compared with it on every call.
#pragma once

#include <varion/platform/automation.h>

#include <span>
#include <string_view>

namespace varion::detail {

/// Month and day names of one language; days start with Sunday.
struct LocaleNames {
    const OLECHAR* months[12];
    const OLECHAR* monthsShort[12];
    const OLECHAR* days[7];
    const OLECHAR* daysShort[7];
};

/// One locale: its identifier and name, the short date and long time
/// patterns of the platform (format pictures: d dd ddd dddd M MM MMM MMMM
/// y yy yyyy h hh H HH m mm s ss t tt 'literal'), decimal separator and
/// AM/PM designators.
struct LocaleInfo {
    LCID lcid;
    const char* name;  // "de-DE"; empty for the invariant locale
    const OLECHAR* shortDate;
    const OLECHAR* longTime;
    OLECHAR decimalSeparator;
    const OLECHAR* am;
    const OLECHAR* pm;
    const LocaleNames* names;
};

/// The invariant row (LCID 0x7F): MM/dd/yyyy, HH:mm:ss, ".".
const LocaleInfo& InvariantLocale() noexcept;
/// The user's locale from the environment (see above).
const LocaleInfo& UserLocale() noexcept;
/// The row an environment locale name selects (see above).
const LocaleInfo& LocaleFromName(std::string_view name) noexcept;
/// The row of a locale identifier: 0, LOCALE_USER_DEFAULT and
/// LOCALE_SYSTEM_DEFAULT give the user's locale, other identifiers their own
/// row (sort bits above the low 16 are ignored); null when the table has none.
const LocaleInfo* LocaleFromLcid(LCID lcid) noexcept;
/// Every row of the table, for tests and tools.
std::span<const LocaleInfo> AllLocales() noexcept;

}  // namespace varion::detail
