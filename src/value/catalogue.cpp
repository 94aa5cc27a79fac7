// The type catalogue: the numeric reading and the device-description type
// mapping (the type predicates are inline in the public header).
#include <varion/varion.h>

namespace {

// The value types a device parameter of each device-description type takes,
// by its size in bytes. Sizes are compared as signed numbers.
struct DDTypeRow {
    unsigned short ddType;
    VARTYPE upTo1;     // size 1 or less (0 and negative included)
    VARTYPE size2;     // size 2
    VARTYPE size3to4;  // size 3 or 4
    VARTYPE above4;    // size 5 and more
};

constexpr VARTYPE BYTES = VT_ARRAY | VT_UI1;

// clang-format off
constexpr DDTypeRow kDDTypes[] = {
    // type   size <= 1         size 2            size 3..4         size >= 5
    {   1,    VT_I1,            VT_I2,            VT_I4,            VT_I8            },
    {   2,    VT_UI1,           VT_UI2,           VT_UI4,           VT_UI8           },
    {   3,    VT_R4,            VT_R4,            VT_R4,            VT_R4            },
    {   4,    VT_R8,            VT_R8,            VT_R8,            VT_R8            },
    {   5,    VT_UI1,           VT_UI2,           VT_UI4,           VT_UI8           },
    {   6,    VT_UI1,           VT_UI2,           VT_UI4,           VT_UI8           },
    {   7,    VT_BSTR,          VT_BSTR,          VT_BSTR,          VT_BSTR          },
    {   8,    VT_BSTR,          VT_BSTR,          VT_BSTR,          VT_BSTR          },
    {   9,    VT_BSTR,          VT_BSTR,          VT_BSTR,          VT_BSTR          },
    {  10,    VT_BSTR,          VT_BSTR,          VT_BSTR,          VT_BSTR          },
    {  11,    VT_BSTR,          VT_BSTR,          VT_BSTR,          VT_BSTR          },
    {  12,    BYTES,            BYTES,            BYTES,            BYTES            },
    {  13,    VT_UI1,           VT_UI2,           VT_UI4,           VT_UI4           },
    {  14,    VT_DATE,          VT_DATE,          VT_DATE,          VT_DATE          },
    {  15,    VT_DATE,          VT_DATE,          VT_DATE,          VT_DATE          },
    {  16,    VTX_DURATION_MSF, VTX_DURATION_MSF, VTX_DURATION_MSF, VTX_DURATION_MSF },
    {  17,    VTX_DURATION,     VTX_DURATION,     VTX_DURATION,     VTX_DURATION     },
    {  18,    VT_BOOL,          VT_BOOL,          VT_BOOL,          VT_BOOL          },
    {  19,    VT_BSTR,          VT_BSTR,          VT_BSTR,          VT_BSTR          },
    {  20,    VT_DATE,          VT_DATE,          VT_DATE,          VT_DATE          },
    {  21,    VT_EMPTY,         VT_EMPTY,         VT_EMPTY,         VT_EMPTY         },
    {  22,    VT_R4,            VT_R4,            VT_R4,            VT_R4            },
    {  23,    VT_R4,            VT_R4,            VT_R4,            VT_R4            },
    {  24,    VT_R4,            VT_R4,            VT_R4,            VT_R4            },
    {  25,    VT_I4,            VT_I4,            VT_I4,            VT_I4            },
    {  26,    VT_BSTR,          VT_BSTR,          VT_BSTR,          VT_BSTR          },
    { 300,    VTX_ISO_DATETIME, VTX_ISO_DATETIME, VTX_ISO_DATETIME, VTX_ISO_DATETIME },
    { 301,    VTX_ISO_DURATION, VTX_ISO_DURATION, VTX_ISO_DURATION, VTX_ISO_DURATION },
};
// clang-format on

}  // namespace

int CVarion::IsNumeric() const noexcept {
    const VARTYPE t = m_v.vt;
    if (IsNumericType(t) || t == VT_DATE) return 1;
    return (IsAnyDateType(t) && !IsNativeVariant(t)) ? 1 : 0;
}

VARTYPE CVarion::DDType2VariantType(unsigned short ddType, short size) noexcept {
    for (const DDTypeRow& row : kDDTypes) {
        if (row.ddType != ddType) continue;
        if (size <= 1) return row.upTo1;
        if (size == 2) return row.size2;
        if (size <= 4) return row.size3to4;
        return row.above4;
    }
    return VT_EMPTY;
}
