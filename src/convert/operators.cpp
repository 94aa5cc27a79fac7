// Conversion operators: the value read as a native type through a converted
// temporary; 0 (0.0, an empty text) when the conversion fails. The numeric
// operators are inline in the public header and convert numbers on a 16-byte
// copy of the VARIANT; what they cannot read that way comes here.
#include <varion/varion.h>

#include "convert/routes.h"
#include "value/access.h"

#include <new>

using varion::detail::Access;

bool CVarion::ReadConverted(VARTYPE type, VARIANT& out) const noexcept {
    // A string is read where it stands: converting a copy would duplicate
    // the string only to release it again. The rule writes `out` itself (a
    // VARIANT put together here and copied whole would be read back before
    // its parts are stored).
    if (m_v.vt == VT_BSTR) return varion::detail::ValueFromText(m_v.bstrVal, type, out) == RC_OK;
    CVarion copy(*this);
    if (copy.SetType(type) < 0) return false;
    out = copy.m_v;
    return true;
}

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
