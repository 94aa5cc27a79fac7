// Lookup in the unit table (unit_table_data.h, generated from unit_table.txt).
#pragma once

#include "units/unit_row.h"

#include <varion/varion.h>

namespace varion::detail {

/// Index of the row of unit code `code` in kUnitRows, or -1 when the table
/// has no such code. A binary search over the ascending codes; codes below 0
/// or above the last code are not searched.
int FindUnitIndex(int code) noexcept;

/// The row of unit code `code`, or nullptr when the table has no such code.
const UnitRow* FindUnit(int code) noexcept;

/// Converts `v` from unit `from` to unit `to`, two rows of the same kind and
/// group: temperatures by formula through kelvin, other units by
/// v / from.factor * to.factor. Answers RC_OK, or RC_UNIT_NOT_CONVERTIBLE
/// with `v` unchanged (a temperature without a formula, a factor that is not
/// above zero or is NaN).
long ConvertBetweenRows(const UnitRow& from, const UnitRow& to, double& v) noexcept;

}  // namespace varion::detail
