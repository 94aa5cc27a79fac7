// Exchange with VARIANT: SetData takes one in, GetData gives one out, and the
// VARIANT constructors are SetData on a fresh value.
//
// Both directions copy member by member. Strings and arrays are duplicated so
// that each side owns its own; the Boolean meets VARIANT_BOOL at the edge;
// interface pointers pass without reference counting; codes 100, 101, 105 and
// 106 leave as their text. The new content is made before the old is
// released, so a source that aliases the destination (a value handed its own
// VARIANT) is read before it is freed.
#include <varion/varion.h>

#include "value/access.h"

#include <cstdint>
#include <cstring>

using varion::detail::Access;
using varion::detail::IsArrayType;
using varion::detail::Load;
using varion::detail::Store;

namespace {

// How a type code crosses the boundary. The Boolean and the by-value/array
// cases are decided by the caller; this covers the codes whose member is
// copied as it is.
enum class Cross { Empty, Member, String, Bool, Unknown };

struct CrossRow {
    VARTYPE code;  // type code on the VARIANT side (the code arriving in SetData)
    VARTYPE held;  // type code this value holds for it
    Cross how;
    int width;     // bytes of the member copied
};

// clang-format off
constexpr CrossRow kCrossing[] = {
    // VARIANT code       held here           how              member bytes
    {VT_EMPTY,            VT_EMPTY,           Cross::Empty,    0},
    {VT_I2,               VT_I2,              Cross::Member,   2},
    {VT_UI2,              VT_UI2,             Cross::Member,   2},
    {VT_I4,               VT_I4,              Cross::Member,   4},
    {VT_INT,              VT_I4,              Cross::Member,   4},
    {VT_UI4,              VT_UI4,             Cross::Member,   4},
    {VT_UINT,             VT_UI4,             Cross::Member,   4},
    {VT_R4,               VT_R4,              Cross::Member,   4},
    {VT_R8,               VT_R8,              Cross::Member,   8},
    {VT_DATE,             VT_DATE,            Cross::Member,   8},
    {VTX_DURATION,        VTX_DURATION,       Cross::Member,   8},
    {VTX_DURATION_MSF,    VTX_DURATION_MSF,   Cross::Member,   8},
    {VTX_DATETIME_ALT,    VTX_DATETIME_ALT,   Cross::Member,   8},
    {VTX_DATETIME,        VTX_DATETIME,       Cross::Member,   8},
    {VTX_ISO_DURATION,    VTX_ISO_DURATION,   Cross::Member,   8},
    {VTX_ISO_DATETIME,    VTX_ISO_DATETIME,   Cross::Member,   8},
    {VT_BSTR,             VT_BSTR,            Cross::String,   0},
    {VT_BOOL,             VT_BOOL,            Cross::Bool,     0},
    {VT_UNKNOWN,          VT_UNKNOWN,         Cross::Unknown,  0},
    {VT_I1,               VT_I1,              Cross::Member,   1},
    {VT_UI1,              VT_UI1,             Cross::Member,   1},
    {VT_I8,               VT_I8,              Cross::Member,   8},
    {VT_UI8,              VT_UI8,             Cross::Member,   8},
};
// clang-format on

const CrossRow* FindCrossing(VARTYPE vt) noexcept {
    for (const CrossRow& row : kCrossing)
        if (row.code == vt) return &row;
    return nullptr;
}

// Copies the first `width` bytes of the value field from `from` to `to`.
void CopyMember(VARIANT& to, const VARIANT& from, int width) noexcept {
    std::memcpy(&to.llVal, &from.llVal, static_cast<std::size_t>(width));
}

// A duplicate of `source` carrying its whole flag word (so a fixed-size array
// stays fixed-size); null when there is no array or it cannot be copied.
SAFEARRAY* DuplicateArray(SAFEARRAY* source) noexcept {
    if (source == nullptr) return nullptr;
    SAFEARRAY* copy = nullptr;
    if (FAILED(SafeArrayCopy(source, &copy)) || copy == nullptr) return nullptr;
    copy->fFeatures = source->fFeatures;
    return copy;
}

bool IsOwnCode(VARTYPE vt) noexcept { return vt >= VTX_DURATION && vt <= VTX_ISO_DATETIME; }

// Releases what `target` holds and makes it VT_EMPTY. A VARIANT carrying one
// of this library's own codes holds a double only, which the platform's
// VariantClear may not know: it is emptied directly. False when the content
// cannot be released (an unknown type code); the target is then unchanged.
bool ClearTarget(VARIANT& target) noexcept {
    if (IsOwnCode(target.vt)) {
        target.vt = VT_EMPTY;
        return true;
    }
    return SUCCEEDED(VariantClear(&target));
}

// Frees the string or array a VARIANT made here owns; an interface pointer is
// not ours to release.
void ReleaseOwned(VARIANT& v) noexcept {
    if (v.vt == VT_BSTR) SysFreeString(v.bstrVal);
    if (IsArrayType(v.vt)) SafeArrayDestroy(v.parray);
    v.vt = VT_EMPTY;
}

}  // namespace

CVarion::CVarion(const VARIANT& source) noexcept {
    std::memset(&m_v, 0, sizeof(m_v));
    SetData(source);
}

CVarion::CVarion(const VARIANT* source) noexcept {
    std::memset(&m_v, 0, sizeof(m_v));
    if (source != nullptr) SetData(*source);
}

long CVarion::SetData(VARIANT source) noexcept {
    if (source.vt & VT_BYREF) return RC_NOT_APPLICABLE;

    if (IsArrayType(source.vt)) {
        SAFEARRAY* copy = DuplicateArray(source.parray);
        Clear();
        if (copy == nullptr) return RC_NOT_CONVERTIBLE;
        m_v.parray = copy;
        m_v.vt = source.vt;
        return RC_OK;
    }

    const CrossRow* row = FindCrossing(source.vt);
    if (row == nullptr) {
        Clear();
        return RC_NOT_CONVERTIBLE;
    }
    switch (row->how) {
    case Cross::String: {
        BSTR copy = SysAllocString(source.bstrVal);
        Clear();
        if (copy == nullptr) return RC_NOT_CONVERTIBLE;
        m_v.bstrVal = copy;
        break;
    }
    case Cross::Bool:
        Clear();
        Store<std::uint8_t>(m_v, source.boolVal != 0 ? 1 : 0);
        break;
    case Cross::Unknown:
        Clear();
        m_v.punkVal = source.punkVal;  // shared: no reference is taken
        break;
    case Cross::Member:
        Clear();
        CopyMember(m_v, source, row->width);
        break;
    case Cross::Empty:
        Clear();
        break;
    }
    m_v.vt = row->held;
    return RC_OK;
}

long CVarion::GetData(VARIANT& target) const noexcept {
    const VARTYPE vt = m_v.vt;
    if (vt & VT_BYREF) return RC_NOT_APPLICABLE;

    if (!IsNativeVariant(vt)) {
        // Durations and ISO date-times have no VARIANT code: they leave as text.
        CVarion text(*this);
        if (text.SetType(VT_BSTR) != RC_OK) {
            ClearTarget(target);
            return RC_NOT_CONVERTIBLE;
        }
        return text.GetData(target);
    }

    // The new content is made first: the target may be this value's own VARIANT.
    VARIANT out;
    std::memset(&out, 0, sizeof(out));
    out.vt = VT_EMPTY;
    long code = RC_OK;
    if (IsArrayType(vt)) {
        out.parray = DuplicateArray(m_v.parray);
        if (out.parray != nullptr)
            out.vt = vt;
        else
            code = RC_NOT_CONVERTIBLE;
    } else if (const CrossRow* row = FindCrossing(vt); row == nullptr || row->code != row->held) {
        code = RC_NOT_CONVERTIBLE;  // not a code this value holds
    } else {
        switch (row->how) {
        case Cross::String:
            out.bstrVal = SysAllocString(m_v.bstrVal);
            if (out.bstrVal != nullptr)
                out.vt = VT_BSTR;
            else
                code = RC_NOT_CONVERTIBLE;
            break;
        case Cross::Bool:
            out.boolVal = static_cast<VARIANT_BOOL>(Load<std::uint8_t>(m_v));
            out.vt = VT_BOOL;
            break;
        case Cross::Unknown:
            out.punkVal = m_v.punkVal;  // the same pointer, no reference added
            out.vt = VT_UNKNOWN;
            break;
        case Cross::Member:
            CopyMember(out, m_v, row->width);
            out.vt = vt;
            break;
        case Cross::Empty:
            break;
        }
    }

    if (!ClearTarget(target)) {
        ReleaseOwned(out);
        return RC_NOT_CONVERTIBLE;
    }
    // The target keeps its reserved words; its type code and value field are ours.
    target.vt = out.vt;
    target.llVal = out.llVal;
    return code;
}
