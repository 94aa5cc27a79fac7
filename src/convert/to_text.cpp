// Value to text: the route of SetType for every change into a string.
//
// Integers are written in decimal, floating values as "%.15f" with the
// trailing zeros trimmed (2.5 gives "2.5", 3.0 "3.0") and the decimal
// separator of the C library's numeric locale, Booleans as "true"/"false",
// byte arrays as "0x01, 0xAB", dates and durations by their producers. The
// digits come from std::to_chars; the only allocation is the new string.
#include <varion/varion.h>

#include "convert/number_text.h"
#include "convert/routes.h"
#include "datetime/datetime.h"
#include "value/access.h"

#include <charconv>
#include <cstdint>
#include <new>

using namespace varion::detail;

namespace {

// A new string holding the ASCII text [first, first + n).
BSTR Widen(const char* first, std::size_t n) noexcept {
    BSTR text = SysAllocStringLen(nullptr, static_cast<UINT>(n));
    if (text == nullptr) return nullptr;
    for (std::size_t k = 0; k < n; ++k) text[k] = static_cast<OLECHAR>(static_cast<unsigned char>(first[k]));
    return text;
}

template <class T>
BSTR IntegerText(T x) noexcept {
    char digits[24];
    const auto r = std::to_chars(digits, digits + sizeof(digits), x);
    return Widen(digits, static_cast<std::size_t>(r.ptr - digits));
}

BSTR FloatingText(double x) noexcept {
    char digits[kFixedTextMax];
    const std::size_t n = WriteTrimmedFixed(x, digits);
    const std::string_view written(digits, n);
    const std::size_t point = written.find('.');
    OLECHAR separator[2];
    const int separatorLength = point == std::string_view::npos ? 1 : RuntimeDecimalSeparator(separator);
    if (point == std::string_view::npos || (separatorLength == 1 && separator[0] == '.')) return Widen(digits, n);

    BSTR text = SysAllocStringLen(nullptr, static_cast<UINT>(n - 1 + static_cast<std::size_t>(separatorLength)));
    if (text == nullptr) return nullptr;
    OLECHAR* out = text;
    for (std::size_t k = 0; k < n; ++k) {
        if (k == point) {
            for (int s = 0; s < separatorLength; ++s) *out++ = separator[s];
        } else {
            *out++ = static_cast<OLECHAR>(digits[k]);
        }
    }
    return text;
}

// Dates and durations through their producers. A date-time that does not
// split into calendar fields has no text.
BSTR DateText(VARTYPE vt, double value) noexcept {
    try {
        CString text;
        switch (vt) {
        case VT_DATE: case VTX_DATETIME_ALT: case VTX_DATETIME: {
            DateTimeFieldSet fields;
            if (!DateTimeFields(value, fields)) return nullptr;
            text = FormatDateTime(value);
            break;
        }
        case VTX_DURATION: case VTX_DURATION_MSF: text = FormatDuration(value, CString()); break;
        case VTX_ISO_DURATION: text = FormatIsoDuration(value); break;
        case VTX_ISO_DATETIME: text = FormatIsoDateTime(value); break;
        default: return nullptr;
        }
        return SysAllocStringLen(text.GetString(), static_cast<UINT>(text.GetLength()));
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

// The text of `v`, or null when its type has none or memory ran out.
BSTR TextOfValue(const VARIANT& v) noexcept {
    switch (v.vt) {
    case VT_EMPTY: return SysAllocString(OLESTR(""));
    case VT_I1: return IntegerText(Load<std::int8_t>(v));
    case VT_UI1: return IntegerText(Load<std::uint8_t>(v));
    case VT_I2: return IntegerText(Load<std::int16_t>(v));
    case VT_UI2: return IntegerText(Load<std::uint16_t>(v));
    case VT_I4: return IntegerText(Load<std::int32_t>(v));
    case VT_UI4: return IntegerText(Load<std::uint32_t>(v));
    case VT_I8: return IntegerText(Load<std::int64_t>(v));
    case VT_UI8: return IntegerText(Load<std::uint64_t>(v));
    case VT_R4: return FloatingText(static_cast<double>(Load<float>(v)));
    case VT_R8: return FloatingText(Load<double>(v));
    case VT_BOOL: return SysAllocString(Load<std::uint8_t>(v) != 0 ? OLESTR("true") : OLESTR("false"));
    case VT_DATE: case VTX_DURATION: case VTX_DURATION_MSF: case VTX_DATETIME_ALT: case VTX_DATETIME:
    case VTX_ISO_DURATION: case VTX_ISO_DATETIME:
        return DateText(v.vt, Load<double>(v));
    case kByteArray: return ByteArrayText(v.parray);
    default: return nullptr;
    }
}

}  // namespace

long CVarion::ChangeToString(VARTYPE) noexcept {
    BSTR text = TextOfValue(m_v);
    if (text == nullptr) return RC_NOT_CONVERTIBLE;
    if (m_v.vt == kByteArray) SafeArrayDestroy(m_v.parray);
    // The string's member is the pointer: its bytes and the type code change,
    // the rest of the value stays.
    Store(m_v, text);
    m_v.vt = VT_BSTR;
    return RC_OK;
}
