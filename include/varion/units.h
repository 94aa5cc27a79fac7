// varion: the built-in engineering unit table, for listings and look-ups.
//
// CVarion::UnitConvert converts between the codes of this table; these
// functions let a caller show what a code stands for. Texts are UTF-8 and
// static: they stay valid for the life of the process.
#pragma once

#include <varion/export.h>

/// One row of the unit table.
struct VarionUnitInfo {
    unsigned short code;   ///< the unit code: 1010
    unsigned short group;  ///< conversion group, the code of its reference unit: 1010 (metre)
    unsigned int kind;     ///< physical quantity number: 0 pressure, 1 temperature, 5 length, ...
    double factor;         ///< units per reference unit: 1000.0 for 1013 (mm); 0.0 for
                           ///< temperatures, which convert by formula
    const char* symbol;    ///< usual symbol: "mm"; "" for the generic codes 250 to 253
    const char* name;      ///< name: "millimeter"
    const char* quantity;  ///< quantity measured: "length"
};

/// The number of rows of the unit table (991).
VARION_API int VarionUnitCount() noexcept;

/// Fills `*info` with row `index` (0 to VarionUnitCount() - 1, ascending by
/// code) and answers true; answers false and leaves `*info` untouched for an
/// index out of range or a null `info`.
VARION_API bool VarionUnitAt(int index, VarionUnitInfo* info) noexcept;

/// Fills `*info` with the row of unit code `code` and answers true; answers
/// false and leaves `*info` untouched when the table has no such code (0,
/// 256, -1) or `info` is null.
VARION_API bool VarionUnitFind(short code, VarionUnitInfo* info) noexcept;
