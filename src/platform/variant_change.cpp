// VariantChangeType: the Automation type change, for what the library needs
// of it: numbers, dates and VT_EMPTY to text in the user's locale, and a copy
// when the type stays.
#include "platform/date_text.h"
#include "platform/locales.h"

#include <charconv>
#include <cstring>

namespace {

template <class T>
T ValueOf(const VARIANT& v) noexcept {
    T x;
    std::memcpy(&x, &v.llVal, sizeof(T));
    return x;
}

// Writes the number text of a numeric VARIANT into `out`; answers its length,
// or -1 when the type is not a number. Floats are written with 7 (VT_R4) or
// 15 (VT_R8) significant digits, as "%G" does, with the locale's separator:
// VT_R4 1.5 gives "1,5" in de-DE, 1e20 gives "1E+20".
int NumberText(const VARIANT& v, OLECHAR separator, OLECHAR* out, int capacity) noexcept {
    char text[64];
    std::to_chars_result r{text, std::errc()};
    char* const end = text + sizeof(text);
    switch (v.vt) {
    case VT_BOOL: r = std::to_chars(text, end, ValueOf<VARIANT_BOOL>(v) != 0 ? -1 : 0); break;  // "-1" or "0"
    case VT_I1: r = std::to_chars(text, end, ValueOf<signed char>(v)); break;
    case VT_UI1: r = std::to_chars(text, end, ValueOf<unsigned char>(v)); break;
    case VT_I2: r = std::to_chars(text, end, ValueOf<std::int16_t>(v)); break;
    case VT_UI2: r = std::to_chars(text, end, ValueOf<std::uint16_t>(v)); break;
    case VT_I4: case VT_INT: r = std::to_chars(text, end, ValueOf<std::int32_t>(v)); break;
    case VT_UI4: case VT_UINT: r = std::to_chars(text, end, ValueOf<std::uint32_t>(v)); break;
    case VT_I8: r = std::to_chars(text, end, ValueOf<std::int64_t>(v)); break;
    case VT_UI8: r = std::to_chars(text, end, ValueOf<std::uint64_t>(v)); break;
    case VT_R4: r = std::to_chars(text, end, ValueOf<float>(v), std::chars_format::general, 7); break;
    case VT_R8: r = std::to_chars(text, end, ValueOf<double>(v), std::chars_format::general, 15); break;
    default: return -1;
    }
    if (r.ec != std::errc()) return -1;
    int n = 0;
    for (const char* p = text; p != r.ptr && n < capacity; ++p, ++n) {
        const char c = *p;
        out[n] = c == '.' ? separator : c == 'e' ? OLECHAR('E') : static_cast<OLECHAR>(c);
    }
    return n;
}

}  // namespace

extern "C" {

HRESULT VariantChangeType(VARIANTARG* pvargDest, const VARIANTARG* pvarSrc, USHORT /*wFlags*/, VARTYPE vt) {
    if (pvargDest == nullptr || pvarSrc == nullptr) return E_INVALIDARG;
    if (pvarSrc->vt == vt) return VariantCopy(pvargDest, pvarSrc);
    if (vt != VT_BSTR) return DISP_E_TYPEMISMATCH;

    const varion::detail::LocaleInfo& locale = varion::detail::UserLocale();
    OLECHAR text[varion::detail::kDateTextCapacity];
    int length = 0;
    if (pvarSrc->vt == VT_DATE) {
        length = varion::detail::FormatDateText(pvarSrc->date, locale, 0, text);
        if (length < 0) return E_INVALIDARG;
    } else if (pvarSrc->vt != VT_EMPTY) {
        length = NumberText(*pvarSrc, locale.decimalSeparator, text, varion::detail::kDateTextCapacity);
        if (length < 0) return DISP_E_TYPEMISMATCH;
    }
    const BSTR result = SysAllocStringLen(text, static_cast<UINT>(length));
    if (result == nullptr) return E_OUTOFMEMORY;
    // The source may be the destination: clear only once the result exists.
    const HRESULT cleared = VariantClear(pvargDest);
    if (FAILED(cleared)) {
        SysFreeString(result);
        return cleared;
    }
    pvargDest->vt = VT_BSTR;
    pvargDest->bstrVal = result;
    return S_OK;
}

}  // extern "C"
