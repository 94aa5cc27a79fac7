// Parsing locale date texts; VarDateFromStr.
//
// The parser accepts only texts whose meaning is certain:
//   date            numeric: three fields separated by one of / - . (the same
//                   twice). A first field of 3 or 4 digits is the year
//                   (2026-11-17, 2026/11/17); otherwise dotted dates are
//                   day.month.year in every locale (17.11.2026) and / and -
//                   dates follow the order of the locale's short date
//                   pattern (en-US 11/17/2026, en-GB 17/11/2026).
//                   with a month name (the locale's or English, full or
//                   abbreviated, any case): 17 November 2026, 17. Nov. 2026,
//                   November 17, 2026, 17-Nov-2026.
//                   Day and month have 1 or 2 digits, the year 3 or 4.
//   weekday         optional before a date with a month name or a numeric
//                   date ("Tuesday, November 17, 2026"); it must be the date's.
//   time            H:mm or H:mm:ss, 24-hour, or 12-hour with an AM/PM
//                   designator (the locale's or AM/PM) before or after it.
//   date and time   separated by blanks, or by T after a year-first date.
// Surrounding blanks are ignored. Everything else, and every date or time
// that does not exist (31.02.2026, 25:00), is rejected: the parser never
// guesses a year, a century or a field order.
#include "platform/calendar.h"
#include "platform/date_text.h"

namespace varion::detail {
namespace {

struct Date {
    int year = 0, month = 0, day = 0;
};

bool IsDigit(OLECHAR c) noexcept { return c >= '0' && c <= '9'; }

// Letters of words (month, day and designator names): ASCII and Latin-1
// letters; anything beyond Latin-1 counts as a letter too, so that a name is
// never matched as the prefix of a longer word.
bool IsLetter(OLECHAR c) noexcept {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= 0xC0 && c != 0xD7 && c != 0xF7);
}

OLECHAR Fold(OLECHAR c) noexcept {
    if (c >= 'A' && c <= 'Z') return static_cast<OLECHAR>(c + 0x20);
    if (c >= 0xC0 && c <= 0xDE && c != 0xD7) return static_cast<OLECHAR>(c + 0x20);
    return c;
}

enum class Order { DMY, MDY, YMD };

// The field order of the locale's short date pattern.
Order OrderOf(const LocaleInfo& locale) noexcept {
    for (const OLECHAR* p = locale.shortDate; *p != 0; ++p) {
        if (*p == 'd') return Order::DMY;
        if (*p == 'M') return Order::MDY;
        if (*p == 'y') return Order::YMD;
    }
    return Order::MDY;
}

class Scanner {
public:
    explicit Scanner(OleStringView text) : m_text(text) {}

    std::size_t Size() const noexcept { return m_text.size(); }
    OLECHAR At(std::size_t pos) const noexcept { return pos < m_text.size() ? m_text[pos] : OLECHAR(0); }

    std::size_t SkipBlanks(std::size_t pos) const noexcept {
        while (pos < m_text.size() && CString::IsSpace(m_text[pos])) ++pos;
        return pos;
    }

    // A run of 1 to maxDigits digits at pos; a longer run fails.
    bool Number(std::size_t& pos, int maxDigits, int& value, int& digits) const noexcept {
        std::size_t p = pos;
        value = 0;
        while (p < m_text.size() && IsDigit(m_text[p])) {
            if (static_cast<int>(p - pos) == maxDigits) return false;
            value = value * 10 + (m_text[p] - '0');
            ++p;
        }
        digits = static_cast<int>(p - pos);
        if (digits == 0) return false;
        pos = p;
        return true;
    }

    // `word` in any case at pos, not followed by another letter.
    bool Word(std::size_t& pos, const OLECHAR* word) const noexcept {
        if (word == nullptr || *word == 0) return false;
        std::size_t p = pos;
        for (; *word != 0; ++word, ++p)
            if (p >= m_text.size() || Fold(m_text[p]) != Fold(*word)) return false;
        if (IsLetter(At(p)) && IsLetter(At(p - 1))) return false;
        pos = p;
        return true;
    }

    // Index (0-based) of the name in `names` matched at pos, or -1.
    template <std::size_t N>
    int Name(std::size_t& pos, const OLECHAR* const (&full)[N], const OLECHAR* const (&abbreviated)[N]) const noexcept {
        for (std::size_t i = 0; i < N; ++i)
            if (Word(pos, full[i]) || Word(pos, abbreviated[i])) return static_cast<int>(i);
        return -1;
    }

    // Separator between the parts of a written date: blanks, dots and commas,
    // or one - or / with blanks around it. Answers false when there is none.
    bool NameSeparator(std::size_t& pos) const noexcept {
        std::size_t p = SkipBlanks(pos);
        if (At(p) == '-' || At(p) == '/') {
            p = SkipBlanks(p + 1);
        } else {
            while (p < m_text.size() && (At(p) == '.' || At(p) == ',' || CString::IsSpace(At(p)))) ++p;
        }
        if (p == pos) return false;
        pos = p;
        return true;
    }

private:
    OleStringView m_text;
};

int MonthName(const Scanner& s, std::size_t& pos, const LocaleInfo& locale) noexcept {
    int month = s.Name(pos, locale.names->months, locale.names->monthsShort);
    if (month < 0) month = s.Name(pos, InvariantLocale().names->months, InvariantLocale().names->monthsShort);
    return month < 0 ? -1 : month + 1;
}

int WeekdayName(const Scanner& s, std::size_t& pos, const LocaleInfo& locale) noexcept {
    const int day = s.Name(pos, locale.names->days, locale.names->daysShort);
    return day >= 0 ? day : s.Name(pos, InvariantLocale().names->days, InvariantLocale().names->daysShort);
}

// `yearFirst` tells an ISO-like date (2026-11-17), which may be joined to its time by T.
bool NumericDate(const Scanner& s, std::size_t& pos, const LocaleInfo& locale, Date& date, bool& yearFirst) noexcept {
    std::size_t p = pos;
    int n[3], digits[3];
    if (!s.Number(p, 4, n[0], digits[0])) return false;
    const OLECHAR separator = s.At(p);
    if (separator != '/' && separator != '-' && separator != '.') return false;
    ++p;
    if (!s.Number(p, 2, n[1], digits[1]) || s.At(p) != separator) return false;
    ++p;
    if (!s.Number(p, 4, n[2], digits[2])) return false;
    yearFirst = digits[0] >= 3;
    if (yearFirst) {
        if (digits[2] > 2) return false;
        date = {n[0], n[1], n[2]};
    } else {
        const Order order = separator == '.' ? Order::DMY : OrderOf(locale);
        if (order == Order::YMD || digits[2] < 3) return false;
        date = order == Order::DMY ? Date{n[2], n[1], n[0]} : Date{n[2], n[0], n[1]};
    }
    pos = p;
    return true;
}

bool WrittenDate(const Scanner& s, std::size_t& pos, const LocaleInfo& locale, Date& date) noexcept {
    std::size_t p = pos;
    int digits = 0;
    if (s.Number(p, 2, date.day, digits)) {  // 17 November 2026
        if (!s.NameSeparator(p) || (date.month = MonthName(s, p, locale)) < 0) return false;
    } else {  // November 17, 2026
        if ((date.month = MonthName(s, p, locale)) < 0 || !s.NameSeparator(p) || !s.Number(p, 2, date.day, digits))
            return false;
    }
    if (!s.NameSeparator(p) || !s.Number(p, 4, date.year, digits) || digits < 3) return false;
    pos = p;
    return true;
}

// A time at pos; `secondOfDay` is set.
bool Time(const Scanner& s, std::size_t& pos, const LocaleInfo& locale, long long& secondOfDay) noexcept {
    auto designator = [&](std::size_t& p, bool& pm) {
        if (s.Word(p, locale.am) || s.Word(p, OLESTR("AM"))) return pm = false, true;
        if (s.Word(p, locale.pm) || s.Word(p, OLESTR("PM"))) return pm = true, true;
        return false;
    };
    std::size_t p = pos;
    bool pm = false;
    bool twelveHour = designator(p, pm);
    if (twelveHour) p = s.SkipBlanks(p);
    int hour = 0, minute = 0, second = 0, digits = 0;
    if (!s.Number(p, 2, hour, digits) || s.At(p) != ':') return false;
    ++p;
    if (!s.Number(p, 2, minute, digits)) return false;
    if (s.At(p) == ':') {
        ++p;
        if (!s.Number(p, 2, second, digits)) return false;
    }
    if (!twelveHour) {
        std::size_t q = s.SkipBlanks(p);
        if (designator(q, pm)) {
            twelveHour = true;
            p = q;
        }
    }
    if (twelveHour) {
        if (hour < 1 || hour > 12) return false;
        hour = hour % 12 + (pm ? 12 : 0);
    }
    if (hour > 23 || minute > 59 || second > 59) return false;
    secondOfDay = hour * 3600LL + minute * 60LL + second;
    pos = p;
    return true;
}

// Date and/or time from pos to the end. `dayNumber` is 0 without a date.
bool Body(const Scanner& s, std::size_t pos, const LocaleInfo& locale, bool& hasDate, long long& dayNumber,
          long long& secondOfDay) noexcept {
    Date date;
    hasDate = false;
    dayNumber = 0;
    secondOfDay = 0;
    std::size_t p = pos;
    bool yearFirst = false;
    const bool numeric = NumericDate(s, p, locale, date, yearFirst);
    if (!numeric) p = pos;
    if (numeric || WrittenDate(s, p, locale, date)) {
        if (date.year < kFirstYear || date.year > kLastYear || date.day < 1 ||
            date.day > DaysInMonth(date.year, date.month))
            return false;
        hasDate = true;
        dayNumber = DayFromCivil(date.year, date.month, date.day);
        if (p == s.Size()) return true;
        if (numeric && yearFirst && (s.At(p) == 'T' || s.At(p) == 't') && IsDigit(s.At(p + 1))) {
            ++p;
        } else {
            const std::size_t q = s.SkipBlanks(p);
            if (q == p) return false;
            p = q;
        }
    }
    return Time(s, p, locale, secondOfDay) && p == s.Size();
}

}  // namespace

HRESULT ParseDateText(OleStringView text, const LocaleInfo& locale, ULONG flags, double& value) noexcept {
    if ((flags & VAR_TIMEVALUEONLY) && (flags & VAR_DATEVALUEONLY)) return E_INVALIDARG;
    std::size_t first = 0, last = text.size();
    while (first < last && CString::IsSpace(text[first])) ++first;
    while (last > first && CString::IsSpace(text[last - 1])) --last;
    const Scanner s(text.substr(first, last - first));
    if (s.Size() == 0) return DISP_E_TYPEMISMATCH;

    bool hasDate = false;
    long long dayNumber = 0, secondOfDay = 0;
    std::size_t p = 0;
    const int weekday = WeekdayName(s, p, locale);
    bool parsed = false;
    if (weekday >= 0 && s.NameSeparator(p) && Body(s, p, locale, hasDate, dayNumber, secondOfDay)) {
        if (!hasDate || WeekdayOfDay(dayNumber) != weekday) return DISP_E_TYPEMISMATCH;
        parsed = true;
    }
    // A leading word may also be a month name that reads like a day name.
    if (!parsed && !Body(s, 0, locale, hasDate, dayNumber, secondOfDay)) return DISP_E_TYPEMISMATCH;

    if (flags & VAR_TIMEVALUEONLY) dayNumber = 0;
    if (flags & VAR_DATEVALUEONLY) secondOfDay = 0;
    value = AutomationDate(dayNumber, secondOfDay * 1000);
    return S_OK;
}

HRESULT DateFromText(OleStringView text, LCID lcid, ULONG flags, double& value) noexcept {
    const LocaleInfo* locale = LocaleFromLcid(lcid);
    if (locale == nullptr) return E_INVALIDARG;
    return ParseDateText(text, *locale, flags, value);
}

}  // namespace varion::detail

extern "C" {

// Parses a date and/or time text in the given locale (see the list at the
// top of this file); LOCALE_NOUSEROVERRIDE has no effect. VAR_TIMEVALUEONLY
// keeps only the time (the day becomes 1899-12-30), VAR_DATEVALUEONLY only
// the date. DISP_E_TYPEMISMATCH for a text that is no date or time,
// E_INVALIDARG for a null argument, an unknown locale or both flags at once.
HRESULT VarDateFromStr(LPCOLESTR strIn, LCID lcid, ULONG dwFlags, DATE* pdateOut) {
    if (strIn == nullptr || pdateOut == nullptr) return E_INVALIDARG;
    return varion::detail::DateFromText(OleStringView(strIn), lcid, dwFlags, *pdateOut);
}

}  // extern "C"
