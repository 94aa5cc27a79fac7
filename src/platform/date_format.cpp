// Rendering Automation dates by a locale's format pictures; VarBstrFromDate.
#include "platform/calendar.h"
#include "platform/date_text.h"

namespace varion::detail {
namespace {

// A bounded writer over the caller's buffer; text beyond the room is dropped
// (the table's patterns never come near it).
class TextWriter {
public:
    explicit TextWriter(OLECHAR* out) : m_out(out) {}
    void Put(OLECHAR c) noexcept {
        if (m_length < kDateTextCapacity - 1) m_out[m_length++] = c;
    }
    void Put(const OLECHAR* text) noexcept {
        for (; text != nullptr && *text != 0; ++text) Put(*text);
    }
    void Number(long long value, int minDigits) noexcept {
        OLECHAR digits[24];
        int n = 0;
        if (value < 0) value = -value;  // never negative here; keeps the loop bounded
        do {
            digits[n++] = static_cast<OLECHAR>('0' + value % 10);
            value /= 10;
        } while (value != 0 && n < 20);
        for (int i = n; i < minDigits; ++i) Put('0');
        while (n > 0) Put(digits[--n]);
    }
    int Finish() noexcept {
        m_out[m_length] = 0;
        return m_length;
    }

private:
    OLECHAR* m_out;
    int m_length = 0;
};

// Expands one format picture for the given parts.
void Expand(const OLECHAR* pattern, const DateParts& p, const LocaleInfo& locale, TextWriter& w) noexcept {
    const LocaleNames& names = *locale.names;
    const OLECHAR* designator = p.hour < 12 ? locale.am : locale.pm;
    while (*pattern != 0) {
        const OLECHAR c = *pattern;
        if (c == '\'') {  // quoted literal; '' is one quote
            ++pattern;
            while (*pattern != 0) {
                if (*pattern == '\'') {
                    if (pattern[1] != '\'') break;
                    ++pattern;
                }
                w.Put(*pattern++);
            }
            if (*pattern == '\'') ++pattern;
            continue;
        }
        int run = 0;
        while (pattern[run] == c) ++run;
        pattern += run;
        const int pad = run >= 2 ? 2 : 1;
        switch (c) {
        case 'd':
            if (run <= 2) w.Number(p.day, pad);
            else w.Put(run == 3 ? names.daysShort[p.dayOfWeek] : names.days[p.dayOfWeek]);
            break;
        case 'M':
            if (run <= 2) w.Number(p.month, pad);
            else w.Put(run == 3 ? names.monthsShort[p.month - 1] : names.months[p.month - 1]);
            break;
        case 'y':
            if (run <= 2) w.Number(p.year % 100, pad);
            else w.Number(p.year, 4);
            break;
        case 'h': w.Number(p.hour % 12 == 0 ? 12 : p.hour % 12, pad); break;
        case 'H': w.Number(p.hour, pad); break;
        case 'm': w.Number(p.minute, pad); break;
        case 's': w.Number(p.second, pad); break;
        case 't':
            if (run == 1) {
                if (designator[0] != 0) w.Put(designator[0]);
            } else {
                w.Put(designator);
            }
            break;
        case 'g': break;  // era: none in the Gregorian calendar texts
        default:
            for (int i = 0; i < run; ++i) w.Put(c);
        }
    }
}

}  // namespace

int FormatDateText(double value, const LocaleInfo& locale, ULONG flags, OLECHAR* out) noexcept {
    const bool timeOnly = (flags & VAR_TIMEVALUEONLY) != 0;
    const bool dateOnly = (flags & VAR_DATEVALUEONLY) != 0;
    DateParts parts;
    if (!SplitAutomationDate(ServiceDate(value), parts)) return -1;
    // The day 1899-12-30 and the time 00:00:00 are left out; the time alone
    // of that day shows when no flag asks for a part. A part left out by
    // both rule and flag leaves the empty text. A NaN, which fails every
    // comparison, shows both parts of day 0.
    const bool nan = std::isnan(value);
    const bool midnight = parts.hour == 0 && parts.minute == 0 && parts.second == 0;
    const bool showDate = !timeOnly && (parts.dayNumber != 0 || nan);
    const bool showTime = !dateOnly && (!midnight || nan || (parts.dayNumber == 0 && !timeOnly));
    TextWriter w(out);
    if (showDate) Expand(locale.shortDate, parts, locale, w);
    if (showDate && showTime) w.Put(' ');
    if (showTime) Expand(locale.longTime, parts, locale, w);
    return w.Finish();
}

int UserDateText(double value, OLECHAR* out) noexcept { return FormatDateText(value, UserLocale(), 0, out); }

}  // namespace varion::detail

extern "C" {

// LOCALE_NOUSEROVERRIDE and the other flags have no effect: the table holds
// no user overrides. E_INVALIDARG for an unknown locale, a date outside the
// calendar range or a null output; E_OUTOFMEMORY when the string cannot be had.
HRESULT VarBstrFromDate(DATE dateIn, LCID lcid, ULONG dwFlags, BSTR* pbstrOut) {
    if (pbstrOut == nullptr) return E_INVALIDARG;
    *pbstrOut = nullptr;
    const varion::detail::LocaleInfo* locale = varion::detail::LocaleFromLcid(lcid);
    if (locale == nullptr) return E_INVALIDARG;
    OLECHAR text[varion::detail::kDateTextCapacity];
    const int length = varion::detail::FormatDateText(dateIn, *locale, dwFlags, text);
    if (length < 0) return E_INVALIDARG;
    *pbstrOut = SysAllocStringLen(text, static_cast<UINT>(length));
    return *pbstrOut == nullptr ? E_OUTOFMEMORY : S_OK;
}

}  // extern "C"
