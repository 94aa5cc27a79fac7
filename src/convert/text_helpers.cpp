// The class's small text functions: number bases, NaN texts, decimal
// separators, trimming and searching of UTF-16 strings.
#include <varion/varion.h>

#include "convert/number_text.h"
#include "value/access.h"

#include <climits>
#include <cmath>
#include <cstdint>
#include <new>

using namespace varion::detail;

namespace {

// The separator in a number text "1?5": its first "." or, failing that,
// its first ","; 0 when it has neither.
OLECHAR SeparatorIn(OleStringView text) noexcept {
    for (const OLECHAR wanted : {OLECHAR('.'), OLECHAR(',')})
        if (text.find(wanted) != OleStringView::npos) return wanted;
    return 0;
}

// The user's decimal separator: the one in the Automation text of the
// single 1.5.
OLECHAR UserDecimalSeparator() noexcept {
    VARIANT number;
    VariantInit(&number);
    number.vt = VT_R4;
    number.fltVal = 1.5f;
    VARIANT text;
    VariantInit(&text);
    if (FAILED(VariantChangeType(&text, &number, 0, VT_BSTR)) || text.vt != VT_BSTR) {
        VariantClear(&text);
        return 0;
    }
    const OLECHAR separator = SeparatorIn(TextOf(text.bstrVal));
    VariantClear(&text);
    return separator;
}

// The C library's separator, as it shows in "%.1f" of 1.5.
OLECHAR RuntimeSeparator() noexcept {
    OLECHAR separator[2];
    const int length = RuntimeDecimalSeparator(separator);
    return SeparatorIn(OleStringView(separator, static_cast<std::size_t>(length)));
}

char NarrowOf(OLECHAR c) noexcept { return c < 0x80 ? static_cast<char>(c) : '\x7F'; }

}  // namespace

int CVarion::GetBase(CString& text, bool keepPrefix) noexcept {
    const char head[2] = {NarrowOf(text.GetAt(0)), NarrowOf(text.GetAt(1))};
    const int base = BaseOfText(std::string_view(head, text.GetLength() < 2 ? static_cast<std::size_t>(text.GetLength()) : 2));
    if (!keepPrefix) text.Delete(0, static_cast<int>(PrefixLength(base)));
    return base;
}

void CVarion::CheckDecimalPoint(CString& text) noexcept {
    const OLECHAR user = UserDecimalSeparator();
    const OLECHAR runtime = RuntimeSeparator();
    if (user == 0 || runtime == 0 || user == runtime) return;
    const int at = text.Find(runtime);
    if (at >= 0) text.SetAt(at, user);
}

bool CVarion::HandleNaN(CString& text) const noexcept {
    double x = 0.0;
    if (m_v.vt == VT_R4)
        x = static_cast<double>(Load<float>(m_v));
    else if (m_v.vt == VT_R8)
        x = Load<double>(m_v);
    else
        return false;
    if (std::isfinite(x)) return false;
    try {
        text = std::isnan(x) ? OLESTR("< Not a Number (NaN) >") : OLESTR("< +/- Infinity >");
    } catch (const std::bad_alloc&) {
        // The value is still not a number; only its text could not be stored.
    }
    return true;
}

HRESULT CVarion::TrimUnicodeStringLeftAndRight(BSTR* text) noexcept {
    if (text == nullptr || *text == nullptr) return E_INVALIDARG;
    const OLECHAR* rest = *text;
    while (*rest == ' ') ++rest;
    BSTR trimmed = SysAllocString(rest);
    if (trimmed == nullptr) return E_OUTOFMEMORY;
    SysFreeString(*text);
    *text = trimmed;
    return S_OK;
}

int CVarion::FindCharacterInUnicodeString(const OLECHAR* text, OLECHAR ch) noexcept {
    if (text == nullptr) return -1;
    for (const OLECHAR* p = text; *p != 0; ++p)
        if (*p == ch) return 1;
    return -1;
}

int CVarion::FindCharacterInUnicodeString(const OLECHAR* text, char ch) noexcept {
    if (text == nullptr) return -1;
    // A byte widens with its sign: 0x80 to 0xFF become U+FF80 to U+FFFF.
    const auto wide = static_cast<OLECHAR>(static_cast<std::uint16_t>(static_cast<signed char>(ch)));
    for (int i = 0; i < INT_MAX && text[i] != 0; ++i)
        if (text[i] == wide) return i;
    return -1;
}

int CVarion::IsUnicodeHexNumber(const OLECHAR* text) noexcept {
    if (text == nullptr) return 0;
    for (const OLECHAR* p = text; *p != 0; ++p) {
        const bool hex = (*p >= '0' && *p <= '9') || (*p >= 'A' && *p <= 'F') || (*p >= 'a' && *p <= 'f');
        if (!hex) return 0;
    }
    return 1;
}
