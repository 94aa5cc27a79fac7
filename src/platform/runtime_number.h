// The runtime library's number readers (wcstol, wcstod, and wcstod under a
// locale whose decimal separator is ","), implemented here so that no result
// depends on which C locales a machine has generated. They work on views and
// never allocate for texts of ordinary length.
#pragma once

#include <varion/platform/cstring.h>

namespace varion::detail {

/// As wcstol with base 10: leading white space, an optional sign, digits.
/// Answers the number of code units read (0 when no digit was found, then
/// `value` is 0); a value beyond the 32-bit range saturates.
std::size_t ReadLong(OleStringView text, long& value) noexcept;

/// As wcstod with any of `separators` as the decimal separator (OLESTR(",")
/// for the German conventions, OLESTR(".,") for either): leading white space,
/// an optional sign, digits with at most one separator (digits on at least
/// one side), an optional exponent (E or e, optional sign, digits).
/// Answers the code units read (0 when there is no number, then `value` is
/// 0.0). Magnitudes beyond the double range give an infinity, tiny ones 0.
/// Hexadecimal texts, "inf" and "nan" are not numbers here.
std::size_t ReadDouble(OleStringView text, OleStringView separators, double& value) noexcept;

/// The decimal separator of the runtime's numeric locale (C library's
/// LC_NUMERIC, localeconv), as one code unit: "." or ",".
OLECHAR RuntimeDecimalSeparator() noexcept;

}  // namespace varion::detail
