// Range-checked conversions between the eleven numeric types. The rule and
// its table of 121 casts live in <varion/detail/numeric_cast.h>, which the
// public header includes so that SetType and the conversion operators can
// convert numbers inline.
#pragma once

#include <varion/varion.h>

namespace varion::detail {

/// Converts the numeric value in `v` to numeric type `target` in place, as
/// ChangeNumericToNumeric does: on success (or for a VT_BOOL target) the
/// target's bytes and type code are written and 0 returned; otherwise the
/// code (-3, -4) and `v` untouched. -2 when either type is not numeric.
inline long ConvertNumeric(VARIANT& v, VARTYPE target) noexcept {
    const NumericCastFn cast = NumericCast(target, v.vt);
    return cast != nullptr ? cast(v) : RC_NOT_CONVERTIBLE;
}

}  // namespace varion::detail
