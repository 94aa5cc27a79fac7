// Lookup in the unit table: a binary search over the ascending codes, started
// from the part of the table where the code's range lies.
#include "units/unit_table.h"

#include <varion/units.h>

#include "units/unit_table_data.h"

#include <algorithm>

namespace varion::detail {
namespace {

constexpr bool AscendingCodes() noexcept {
    for (int i = 1; i < kUnitRowCount; ++i)
        if (kUnitRows[i - 1].code >= kUnitRows[i].code) return false;
    return true;
}
static_assert(kUnitRowCount > 0 && AscendingCodes(), "the unit table is ascending by code");

constexpr int RowOfCode(int code) noexcept {
    for (int i = 0; i < kUnitRowCount; ++i)
        if (kUnitRows[i].code == code) return i;
    return -1;
}

// Fieldbus and extended codes (1000 and above) all lie from the row of the
// last HART table code 169 on; HART codes (below 256) within the first 256
// rows. Either bound only shortens the search.
constexpr int kFieldbusFirstRow = RowOfCode(169);
constexpr int kHartRowLimit = std::min(256, kUnitRowCount);
constexpr int kLastCode = kUnitRows[kUnitRowCount - 1].code;

constexpr bool RangesHold() noexcept {
    for (int i = 0; i < kUnitRowCount; ++i) {
        if (kUnitRows[i].code >= 1000 && i < kFieldbusFirstRow) return false;
        if (kUnitRows[i].code < 256 && i >= kHartRowLimit) return false;
    }
    return kFieldbusFirstRow >= 0;
}
static_assert(RangesHold(), "the search start rows hold for the table");

}  // namespace

int FindUnitIndex(int code) noexcept {
    if (code < 0 || code > kLastCode) return -1;
    const UnitRow* first = kUnitRows;
    const UnitRow* last = kUnitRows + kUnitRowCount;
    if (code >= 1000)
        first += kFieldbusFirstRow;
    else if (code < 256)
        last = kUnitRows + kHartRowLimit;
    const UnitRow* row =
        std::lower_bound(first, last, code, [](const UnitRow& r, int c) noexcept { return r.code < c; });
    return row != last && row->code == code ? static_cast<int>(row - kUnitRows) : -1;
}

const UnitRow* FindUnit(int code) noexcept {
    const int index = FindUnitIndex(code);
    return index < 0 ? nullptr : &kUnitRows[index];
}

}  // namespace varion::detail

int VarionUnitCount() noexcept { return varion::detail::kUnitRowCount; }

bool VarionUnitAt(int index, VarionUnitInfo* info) noexcept {
    using namespace varion::detail;
    if (info == nullptr || index < 0 || index >= kUnitRowCount) return false;
    const UnitRow& row = kUnitRows[index];
    const UnitText& text = kUnitTexts[index];
    *info = VarionUnitInfo{row.code, row.group, row.kind, row.factor, text.symbol, text.name, text.quantity};
    return true;
}

bool VarionUnitFind(short code, VarionUnitInfo* info) noexcept {
    return VarionUnitAt(varion::detail::FindUnitIndex(code), info);
}
