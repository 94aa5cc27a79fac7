// Lookup in the unit table (unit_table_data.h, generated from unit_table.txt).
#pragma once

#include "units/unit_row.h"

namespace varion::detail {

/// Index of the row of unit code `code` in kUnitRows, or -1 when the table
/// has no such code. A binary search over the ascending codes; codes below 0
/// or above the last code are not searched.
int FindUnitIndex(int code) noexcept;

/// The row of unit code `code`, or nullptr when the table has no such code.
const UnitRow* FindUnit(int code) noexcept;

}  // namespace varion::detail
