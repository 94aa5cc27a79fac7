// The row types of the unit table (unit_table_data.h).
#pragma once

#include <cstdint>

namespace varion::detail {

/// One unit of the table. Two units convert into each other when their kinds
/// and groups are equal: value / factor(from) * factor(to).
struct UnitRow {
    std::uint16_t code;   ///< the unit code; the table is ascending by it
    std::uint16_t group;  ///< conversion group: the code of its reference unit
    std::uint32_t kind;   ///< physical quantity; kTemperatureKind converts by formula
    double factor;        ///< units per reference unit; 0.0 for formula temperatures
};

/// The texts of a row, in UTF-8 (kept apart so the searched rows stay small).
struct UnitText {
    const char* symbol;    ///< usual symbol, "" for the generic codes
    const char* name;      ///< name as the public code tables give it
    const char* quantity;  ///< the physical quantity it measures
};

inline constexpr std::uint32_t kTemperatureKind = 1;

}  // namespace varion::detail
