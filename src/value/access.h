// Internal access to a CVarion's storage and private members.
//
// Subsystems read and write the VARIANT a value is laid out as through these
// helpers; value-field reads and writes go through Load and Store
// (<varion/detail/numeric_cast.h>), which copy bytes so that any member may be
// read after any other was written.
#pragma once

#include <varion/varion.h>

namespace varion::detail {

constexpr VARTYPE kByteArray = VT_ARRAY | VT_UI1;

constexpr bool IsArrayType(VARTYPE vt) noexcept { return (vt & VT_ARRAY) != 0; }

struct Access {
    static VARIANT& Var(CVarion& v) noexcept { return v.m_v; }
    static const VARIANT& Var(const CVarion& v) noexcept { return v.m_v; }

    // Private members, for the subsystems and their tests.
    static long InitType(CVarion& v, VARTYPE t) noexcept { return v.InitType(t); }
    static long ChangeNumericToNumeric(CVarion& v, VARTYPE t) noexcept { return v.ChangeNumericToNumeric(t); }
    static long ChangeToString(CVarion& v, VARTYPE t) noexcept { return v.ChangeToString(t); }
    static long ChangeFromString(CVarion& v, VARTYPE t) noexcept { return v.ChangeFromString(t); }
    static long ChangeNumericToDate(CVarion& v, VARTYPE t) noexcept { return v.ChangeNumericToDate(t); }
    static long ChangeDateToNumeric(CVarion& v, VARTYPE t) noexcept { return v.ChangeDateToNumeric(t); }
    static CString StringToBinaryStream(const CString& text, int base) {
        return CVarion::StringToBinaryStream(text, base);
    }
    static bool HandleNaN(const CVarion& v, CString& text) noexcept { return v.HandleNaN(text); }
    static HRESULT TrimUnicodeStringLeftAndRight(BSTR* text) noexcept {
        return CVarion::TrimUnicodeStringLeftAndRight(text);
    }
    static int FindCharacterInUnicodeString(const OLECHAR* text, OLECHAR ch) noexcept {
        return CVarion::FindCharacterInUnicodeString(text, ch);
    }
    static int FindCharacterInUnicodeString(const OLECHAR* text, char ch) noexcept {
        return CVarion::FindCharacterInUnicodeString(text, ch);
    }
    static int IsUnicodeHexNumber(const OLECHAR* text) noexcept { return CVarion::IsUnicodeHexNumber(text); }
};

}  // namespace varion::detail
