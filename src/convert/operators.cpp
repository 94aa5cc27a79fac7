// Conversion operators: the value read as a native type through a converted
// temporary; 0 (0.0, an empty text) when the conversion fails. Numeric values
// convert on a 16-byte copy of the VARIANT and never allocate.
#include <varion/varion.h>

#include "convert/numeric.h"
#include "value/access.h"

#include <new>

using varion::detail::Access;
using varion::detail::Load;
using varion::detail::NumericT;

namespace {

template <VARTYPE T, class R>
R ReadAs(const CVarion& self) noexcept {
    const VARIANT& v = Access::Var(self);
    if (v.vt == T) return static_cast<R>(Load<NumericT<T>>(v));
    if (CVarion::IsNumericType(v.vt)) {
        VARIANT copy = v;
        if (varion::detail::ConvertNumeric(copy, T) != RC_OK) return R(0);
        return static_cast<R>(Load<NumericT<T>>(copy));
    }
    CVarion copy(self);
    if (copy.SetType(T) < 0) return R(0);
    return static_cast<R>(Load<NumericT<T>>(Access::Var(copy)));
}

}  // namespace

CVarion::operator int() const noexcept { return ReadAs<VT_BOOL, std::uint8_t>(*this) != 0 ? 1 : 0; }
CVarion::operator char() const noexcept { return static_cast<char>(ReadAs<VT_I1, std::int8_t>(*this)); }
CVarion::operator unsigned char() const noexcept { return ReadAs<VT_UI1, unsigned char>(*this); }
CVarion::operator short() const noexcept { return ReadAs<VT_I2, short>(*this); }
CVarion::operator unsigned short() const noexcept { return ReadAs<VT_UI2, unsigned short>(*this); }
CVarion::operator long() const noexcept { return ReadAs<VT_I4, long>(*this); }
CVarion::operator unsigned long() const noexcept { return ReadAs<VT_UI4, unsigned long>(*this); }
CVarion::operator LONGLONG() const noexcept { return ReadAs<VT_I8, LONGLONG>(*this); }
CVarion::operator ULONGLONG() const noexcept { return ReadAs<VT_UI8, ULONGLONG>(*this); }
CVarion::operator float() const noexcept { return ReadAs<VT_R4, float>(*this); }
CVarion::operator double() const noexcept { return ReadAs<VT_R8, double>(*this); }

CVarion::operator CString() const noexcept {
    try {
        if (m_v.vt == VT_BSTR) return CString(m_v.bstrVal);
        CVarion copy(*this);
        if (copy.SetType(VT_BSTR) < 0) return CString();
        return CString(Access::Var(copy).bstrVal);
    } catch (const std::bad_alloc&) {
        return CString();
    }
}
