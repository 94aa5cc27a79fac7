// Construction, copy, assignment and clearing of values.
#include <varion/varion.h>

#include "value/access.h"

#include <cstring>
#include <new>

using varion::detail::IsArrayType;
using varion::detail::kByteArray;
using varion::detail::Store;

namespace {

// Starts a value: all 16 bytes zero, then the type code.
void Reset(VARIANT& v, VARTYPE vt) noexcept {
    std::memset(&v, 0, sizeof(v));
    v.vt = vt;
}

// Sets a member and the type code of an existing value; the reserved words and
// the value bytes beyond the member stay as they are.
template <class T>
void SetMember(VARIANT& v, VARTYPE vt, T x) noexcept {
    Store(v, x);
    v.vt = vt;
}

// A string value copied from `text` up to its terminator; VT_EMPTY when no
// string results.
void MakeString(VARIANT& v, const OLECHAR* text) noexcept {
    Reset(v, VT_EMPTY);
    BSTR s = SysAllocString(text);
    if (s != nullptr) {
        v.bstrVal = s;
        v.vt = VT_BSTR;
    }
}

// A string value from a text in another encoding (UTF-8, UTF-32), converted
// through CString; VT_EMPTY for a null pointer or when memory runs out.
template <class Char>
void MakeConvertedString(VARIANT& v, const Char* text) noexcept {
    Reset(v, VT_EMPTY);
    if (text == nullptr) return;
    try {
        const CString converted(text);
        MakeString(v, converted.GetString());
    } catch (const std::bad_alloc&) {
    }
}

}  // namespace

CVarion::CVarion(const OLECHAR* text) noexcept { MakeString(m_v, text); }

#if !defined(_WIN32)
CVarion::CVarion(const wchar_t* text) noexcept { MakeConvertedString(m_v, text); }
#endif

CVarion::CVarion(const char* text) noexcept { MakeConvertedString(m_v, text); }

CVarion::CVarion(const CString& text) noexcept { MakeString(m_v, text.GetString()); }

void CVarion::CopyContent(const CVarion& other) noexcept {
    Reset(m_v, VT_EMPTY);
    const VARIANT& s = other.m_v;
    if (s.vt == VT_BSTR) {
        MakeString(m_v, s.bstrVal);
    } else if (IsArrayType(s.vt)) {
        SAFEARRAY* copy = nullptr;
        if (s.parray != nullptr && SUCCEEDED(SafeArrayCopy(s.parray, &copy)) && copy != nullptr) {
            copy->fFeatures = s.parray->fFeatures;
            m_v.parray = copy;
            m_v.vt = s.vt;
        }
    }
}

void CVarion::ReleaseContent() noexcept {
    if (m_v.vt == VT_BSTR && m_v.bstrVal != nullptr) {
        SysFreeString(m_v.bstrVal);
        m_v.bstrVal = nullptr;
    }
    if (IsArrayType(m_v.vt) && m_v.parray != nullptr) {
        SafeArrayDestroy(m_v.parray);
        m_v.parray = nullptr;
    }
}

CVarion& CVarion::AssignContent(const CVarion& other) noexcept {
    if (this == &other) return *this;
    VARIANT& d = m_v;
    const VARIANT& s = other.m_v;

    // What an array destination remembers of itself when it stays fixed-size.
    USHORT features = 0;
    SAFEARRAYBOUND boundA{};
    SAFEARRAYBOUND boundB{};

    if (d.vt == VT_BSTR) {
        SysFreeString(d.bstrVal);
        d.bstrVal = nullptr;
    } else if (IsArrayType(d.vt)) {
        SAFEARRAY* da = d.parray;
        SAFEARRAY* sa = s.parray;
        if (s.vt != d.vt || da == nullptr || sa == nullptr || sa->cDims != da->cDims) {
            Clear();
            return *this;
        }
        if (da->fFeatures & FADF_FIXEDSIZE) {
            if (da->rgsabound[0].cElements < sa->rgsabound[0].cElements) {
                // A fixed byte array takes the source's first bytes; any other
                // fixed array cannot take a larger source.
                if (d.vt == kByteArray && da->pvData != nullptr && sa->pvData != nullptr)
                    std::memcpy(da->pvData, sa->pvData, da->rgsabound[0].cElements);
                else
                    Clear();
                return *this;
            }
            if (da->cDims == 2 && da->rgsabound[1].cElements < sa->rgsabound[1].cElements) {
                Clear();
                return *this;
            }
            boundA = da->rgsabound[0];
            if (da->cDims == 2) boundB = da->rgsabound[1];
        }
        features = da->fFeatures;
        SafeArrayDestroy(da);
        d.parray = nullptr;
    }

    std::memcpy(&d, &s, sizeof(d));
    if (s.vt == VT_BSTR) {
        d.bstrVal = SysAllocString(s.bstrVal);
    } else if (IsArrayType(s.vt)) {
        SAFEARRAY* copy = nullptr;
        if (s.parray == nullptr || FAILED(SafeArrayCopy(s.parray, &copy)) || copy == nullptr) {
            d.parray = nullptr;
            d.vt = VT_EMPTY;
            return *this;
        }
        if (features & FADF_FIXEDSIZE) {
            const bool grow = boundA.cElements > copy->rgsabound[0].cElements ||
                              (copy->cDims == 2 && boundB.cElements > copy->rgsabound[1].cElements);
            if (grow) {
                copy->fFeatures = static_cast<USHORT>(copy->fFeatures & ~FADF_FIXEDSIZE);
                SafeArrayRedim(copy, &boundA);
                copy->fFeatures = features;
            }
        } else {
            copy->fFeatures = s.parray->fFeatures;
        }
        d.parray = copy;
    }
    return *this;
}

int CVarion::IsNull() const noexcept { return static_cast<int>(*this) == 0 ? 1 : 0; }

long CVarion::InitType(VARTYPE type) noexcept {
    Clear();
    switch (type) {
    case VT_EMPTY: return RC_OK;
    case VT_I2: case VT_UI2: SetMember<std::uint16_t>(m_v, type, 0); return RC_OK;
    case VT_I4: case VT_UI4: SetMember<std::uint32_t>(m_v, type, 0); return RC_OK;
    case VT_R4: SetMember(m_v, type, 0.0f); return RC_OK;
    case VT_R8: case VT_DATE:
    case VTX_DURATION: case VTX_DURATION_MSF: case VTX_DATETIME_ALT: case VTX_DATETIME:
    case VTX_ISO_DURATION: case VTX_ISO_DATETIME:
        SetMember(m_v, type, 0.0);
        return RC_OK;
    case VT_BSTR:
        if (BSTR s = SysAllocString(OLESTR("")); s != nullptr) SetMember(m_v, VT_BSTR, s);
        return RC_OK;
    case VT_BOOL: case VT_I1: case VT_UI1: SetMember<std::uint8_t>(m_v, type, 0); return RC_OK;
    case VT_I8: case VT_UI8: SetMember<std::uint64_t>(m_v, type, 0); return RC_OK;
    case kByteArray: {
        SAFEARRAY* psa = SafeArrayCreateVector(VT_UI1, 0, 0);
        if (psa == nullptr) return RC_NOT_CONVERTIBLE;
        SetMember(m_v, kByteArray, psa);
        return RC_OK;
    }
    default:
        return RC_NOT_CONVERTIBLE;
    }
}
