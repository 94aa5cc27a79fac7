// The class's small text functions: number bases, NaN texts, decimal
// separators, trimming and searching of UTF-16 strings.
#include <varion/varion.h>

#include "convert/number_text.h"
#include "platform/locales.h"
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

// The separator in the Automation text of the single 1.5 (the user's
// locale); 0 when the text cannot be made.
OLECHAR AutomationSeparator() noexcept {
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

// The user's decimal separator: the one in the Automation text of the
// single 1.5. That text depends on the user's locale alone, so each thread
// keeps the separator of the last locale it saw and makes the text again only
// when the environment names another one.
OLECHAR UserDecimalSeparator() noexcept {
#if defined(_WIN32)
    return AutomationSeparator();
#else
    struct Remembered {
        const LocaleInfo* locale;
        OLECHAR separator;
    };
    static thread_local Remembered last{nullptr, 0};
    const LocaleInfo* locale = &UserLocale();
    if (locale != last.locale) {
        const OLECHAR separator = AutomationSeparator();
        if (separator == 0) return 0;  // no memory for the text: nothing to remember
        last = {locale, separator};
    }
    return last.separator;
#endif
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
    // A text without the runtime's separator has nothing to replace, whatever
    // the user's separator is.
    const OLECHAR runtime = RuntimeSeparator();
    const int at = runtime == 0 ? -1 : text.Find(runtime);
    if (at < 0) return;
    const OLECHAR user = UserDecimalSeparator();
    if (user == 0 || user == runtime) return;
    text.SetAt(at, user);
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
