// The small members of CVarion that are worth inlining: the constructors
// from numbers, copy, move, assignment and clearing, SetType and the number
// operators. varion.h includes this file with VARION_MEMBER as `inline`; a
// Windows DLL defines them once instead (src/value/inline_members.cpp), since
// GCC does not export the inline members of an exported class.
#pragma once

VARION_MEMBER CVarion::CVarion() noexcept { Init<std::uint8_t>(VT_EMPTY, 0); }

VARION_MEMBER CVarion::CVarion(bool value) noexcept { Init<std::uint8_t>(VT_BOOL, value ? 1 : 0); }

VARION_MEMBER CVarion::CVarion(char value) noexcept { Init(VT_I1, static_cast<signed char>(value)); }

VARION_MEMBER CVarion::CVarion(signed char value) noexcept { Init(VT_I1, value); }

VARION_MEMBER CVarion::CVarion(unsigned char value) noexcept { Init(VT_UI1, value); }

VARION_MEMBER CVarion::CVarion(short value) noexcept { Init(VT_I2, value); }

VARION_MEMBER CVarion::CVarion(unsigned short value) noexcept { Init(VT_UI2, value); }

VARION_MEMBER CVarion::CVarion(int value) noexcept { Init(VT_I4, static_cast<std::int32_t>(value)); }

VARION_MEMBER CVarion::CVarion(unsigned int value) noexcept { Init(VT_UI4, static_cast<std::uint32_t>(value)); }

VARION_MEMBER CVarion::CVarion(long value) noexcept {
    if (value >= INT32_MIN && value <= INT32_MAX)
        Init(VT_I4, static_cast<std::int32_t>(value));
    else
        Init(VT_I8, static_cast<LONGLONG>(value));
}

VARION_MEMBER CVarion::CVarion(unsigned long value) noexcept {
    if (value <= UINT32_MAX)
        Init(VT_UI4, static_cast<std::uint32_t>(value));
    else
        Init(VT_UI8, static_cast<ULONGLONG>(value));
}

VARION_MEMBER CVarion::CVarion(LONGLONG value) noexcept { Init(VT_I8, value); }

VARION_MEMBER CVarion::CVarion(ULONGLONG value) noexcept { Init(VT_UI8, value); }

VARION_MEMBER CVarion::CVarion(float value) noexcept { Init(VT_R4, value); }

VARION_MEMBER CVarion::CVarion(double value) noexcept { Init(VT_R8, value); }

VARION_MEMBER CVarion::CVarion(const CVarion& other) noexcept {
    const VARTYPE type = other.m_v.vt;
    if (HoldsPlainValue(type)) {
        // Two 8-byte stores: the type code with its zeroed reserved
        // words, then the value field.
        const std::uint64_t head = HeadWord(type);
        std::memcpy(static_cast<void*>(&m_v), &head, sizeof head);
        std::memcpy(&m_v.llVal, &other.m_v.llVal, sizeof(m_v.llVal));
    } else {
        CopyContent(other);
    }
}

VARION_MEMBER CVarion::CVarion(CVarion&& other) noexcept {
    std::memcpy(static_cast<void*>(&m_v), &other.m_v, sizeof(m_v));
    other.m_v.vt = VT_EMPTY;
}

VARION_MEMBER CVarion::~CVarion() {
    if (OwnsContent(m_v.vt)) ReleaseContent();
}

VARION_MEMBER void CVarion::Clear() noexcept {
    if (OwnsContent(m_v.vt)) ReleaseContent();
    m_v.vt = VT_EMPTY;
}

VARION_MEMBER CVarion& CVarion::operator=(const CVarion& other) noexcept {
    // Between values without a string or an array all 16 bytes are copied.
    if (!OwnsContent(m_v.vt) && !OwnsContent(other.m_v.vt)) {
        if (this != &other) std::memcpy(static_cast<void*>(&m_v), &other.m_v, sizeof(m_v));
        return *this;
    }
    return AssignContent(other);
}

VARION_MEMBER VARTYPE CVarion::GetType() const noexcept { return m_v.vt; }

VARION_MEMBER_FOLD long CVarion::SetType(VARTYPE newType) noexcept {
    // Number to number inline (a constant target folds to the one cast);
    // every other change goes through the dispatcher.
    if (const varion::detail::NumericCastFn cast = varion::detail::NumericCast(newType, m_v.vt))
        return cast(m_v);
    return Dispatch(newType);
}

VARION_MEMBER CVarion::operator int() const noexcept { return ReadAs<VT_BOOL>() != 0 ? 1 : 0; }

VARION_MEMBER CVarion::operator char() const noexcept { return static_cast<char>(ReadAs<VT_I1>()); }

VARION_MEMBER CVarion::operator unsigned char() const noexcept { return ReadAs<VT_UI1>(); }

VARION_MEMBER CVarion::operator short() const noexcept { return ReadAs<VT_I2>(); }

VARION_MEMBER CVarion::operator unsigned short() const noexcept { return ReadAs<VT_UI2>(); }

VARION_MEMBER CVarion::operator long() const noexcept { return ReadAs<VT_I4>(); }

VARION_MEMBER CVarion::operator unsigned long() const noexcept { return ReadAs<VT_UI4>(); }

VARION_MEMBER CVarion::operator LONGLONG() const noexcept { return ReadAs<VT_I8>(); }

VARION_MEMBER CVarion::operator ULONGLONG() const noexcept { return ReadAs<VT_UI8>(); }

VARION_MEMBER CVarion::operator float() const noexcept { return ReadAs<VT_R4>(); }

VARION_MEMBER CVarion::operator double() const noexcept { return ReadAs<VT_R8>(); }

VARION_MEMBER_CONSTEXPR bool CVarion::IsNativeVariant(VARTYPE type) noexcept {
    return type != VTX_DURATION && type != VTX_DURATION_MSF && type != VTX_ISO_DURATION &&
           type != VTX_ISO_DATETIME;
}

VARION_MEMBER_CONSTEXPR bool CVarion::IsNumericType(VARTYPE type) noexcept {
    switch (type) {
    case VT_I2: case VT_I4: case VT_R4: case VT_R8: case VT_BOOL:
    case VT_I1: case VT_UI1: case VT_UI2: case VT_UI4: case VT_I8: case VT_UI8:
        return true;
    default:
        return false;
    }
}

VARION_MEMBER_CONSTEXPR bool CVarion::IsStringType(VARTYPE type) noexcept { return type == VT_BSTR; }

VARION_MEMBER_CONSTEXPR bool CVarion::IsAnyDateType(VARTYPE type) noexcept { return IsDateTimeType(type) || IsDurationType(type); }

VARION_MEMBER_CONSTEXPR bool CVarion::IsDateTimeType(VARTYPE type) noexcept {
    return type == VT_DATE || type == VTX_DATETIME_ALT || type == VTX_DATETIME || type == VTX_ISO_DATETIME;
}

VARION_MEMBER_CONSTEXPR bool CVarion::IsDurationType(VARTYPE type) noexcept {
    return type == VTX_DURATION || type == VTX_DURATION_MSF || type == VTX_ISO_DURATION;
}
