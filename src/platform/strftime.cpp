// strftime-style rendering in the invariant locale. Composite directives
// (%c, %D, %T ...) expand to their pattern and are rendered recursively.
#include "platform/strftime.h"

#include <charconv>
#include <cstring>
#include <string_view>

namespace varion::detail {
namespace {

constexpr const char* kDayNames[7] = {"Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday"};
constexpr const char* kMonthNames[12] = {"January", "February", "March",     "April",   "May",      "June",
                                         "July",    "August",   "September", "October", "November", "December"};

class Writer {
public:
    Writer(OLECHAR* out, std::size_t capacity) noexcept : m_out(out), m_room(capacity - 1) {}

    void Ascii(std::string_view text) noexcept {
        if (m_overflow || text.size() > m_room - m_length) {
            m_overflow = true;
            return;
        }
        for (const char c : text) m_out[m_length++] = static_cast<OLECHAR>(static_cast<unsigned char>(c));
    }
    void Text(OleStringView text) noexcept {
        if (m_overflow || text.size() > m_room - m_length) {
            m_overflow = true;
            return;
        }
        std::memcpy(m_out + m_length, text.data(), text.size() * sizeof(OLECHAR));
        m_length += text.size();
    }
    // A number, zero- or blank-padded to `width` digits after any sign.
    void Number(long long value, int width, char pad = '0') noexcept {
        char digits[24];
        const bool negative = value < 0;
        const unsigned long long magnitude =
            negative ? 0ULL - static_cast<unsigned long long>(value) : static_cast<unsigned long long>(value);
        const auto r = std::to_chars(digits, digits + sizeof digits, magnitude);
        const auto count = static_cast<int>(r.ptr - digits);
        if (negative) Ascii("-");
        for (int i = count; i < width; ++i) Ascii(std::string_view(&pad, 1));
        Ascii(std::string_view(digits, static_cast<std::size_t>(count)));
    }
    // A name from a table, or "?" when the index is out of range; `abbreviate`
    // keeps its first three letters.
    template <std::size_t N>
    void Name(const char* const (&names)[N], int index, bool abbreviate) noexcept {
        if (index < 0 || static_cast<std::size_t>(index) >= N) return Ascii("?");
        const std::string_view name(names[index]);
        Ascii(abbreviate ? name.substr(0, 3) : name);
    }
    bool Overflowed() const noexcept { return m_overflow; }
    std::size_t Size() const noexcept { return m_length; }

private:
    OLECHAR* m_out;
    std::size_t m_room;
    std::size_t m_length = 0;
    bool m_overflow = false;
};

bool IsLeap(long long year) noexcept { return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0; }
int DaysIn(long long year) noexcept { return IsLeap(year) ? 366 : 365; }
long long FloorDiv(long long a, long long b) noexcept { return a / b - ((a % b != 0 && (a < 0) != (b < 0)) ? 1 : 0); }
long long FloorMod(long long a, long long b) noexcept { return a - FloorDiv(a, b) * b; }

// The ISO 8601 week of a date: the week-based year and the week 1-53. The
// week belongs to the year of its Thursday.
void IsoWeek(const std::tm& t, long long& year, long long& week) noexcept {
    year = 1900LL + t.tm_year;
    const long long mondayBased = FloorMod(t.tm_wday + 6LL, 7);  // Monday 0
    long long thursday = static_cast<long long>(t.tm_yday) - mondayBased + 3;
    if (thursday < 0) {
        --year;
        thursday += DaysIn(year);
    } else if (thursday >= DaysIn(year)) {
        thursday -= DaysIn(year);
        ++year;
    }
    week = FloorDiv(thursday, 7) + 1;
}

bool Render(Writer& w, OleStringView pattern, const std::tm& t) noexcept;

// Renders a composite directive's pattern.
bool Expand(Writer& w, const OLECHAR* pattern, const std::tm& t) noexcept {
    return Render(w, OleStringView(pattern), t);
}

// One directive; false when it is unknown.
bool Directive(Writer& w, OLECHAR d, const std::tm& t) noexcept {
    const long long year = 1900LL + t.tm_year;
    const int hour12 = static_cast<int>(FloorMod(t.tm_hour + 11LL, 12)) + 1;
    long long isoYear = 0;
    long long isoWeek = 0;
    switch (d) {
    case OLESTR('a'): w.Name(kDayNames, t.tm_wday, true); break;
    case OLESTR('A'): w.Name(kDayNames, t.tm_wday, false); break;
    case OLESTR('b'): case OLESTR('h'): w.Name(kMonthNames, t.tm_mon, true); break;
    case OLESTR('B'): w.Name(kMonthNames, t.tm_mon, false); break;
    case OLESTR('c'): return Expand(w, OLESTR("%a %b %e %H:%M:%S %Y"), t);
    case OLESTR('C'): w.Number(FloorDiv(year, 100), 2); break;
    case OLESTR('d'): w.Number(t.tm_mday, 2); break;
    case OLESTR('D'): case OLESTR('x'): return Expand(w, OLESTR("%m/%d/%y"), t);
    case OLESTR('e'): w.Number(t.tm_mday, 2, ' '); break;
    case OLESTR('F'): return Expand(w, OLESTR("%Y-%m-%d"), t);
    case OLESTR('g'): IsoWeek(t, isoYear, isoWeek); w.Number(FloorMod(isoYear, 100), 2); break;
    case OLESTR('G'): IsoWeek(t, isoYear, isoWeek); w.Number(isoYear, 1); break;
    case OLESTR('H'): w.Number(t.tm_hour, 2); break;
    case OLESTR('I'): w.Number(hour12, 2); break;
    case OLESTR('j'): w.Number(t.tm_yday + 1LL, 3); break;
    case OLESTR('m'): w.Number(t.tm_mon + 1LL, 2); break;
    case OLESTR('M'): w.Number(t.tm_min, 2); break;
    case OLESTR('n'): w.Ascii("\n"); break;
    case OLESTR('p'): w.Ascii(t.tm_hour >= 12 ? "PM" : "AM"); break;
    case OLESTR('r'): return Expand(w, OLESTR("%I:%M:%S %p"), t);
    case OLESTR('R'): return Expand(w, OLESTR("%H:%M"), t);
    case OLESTR('S'): w.Number(t.tm_sec, 2); break;
    case OLESTR('t'): w.Ascii("\t"); break;
    case OLESTR('T'): case OLESTR('X'): return Expand(w, OLESTR("%H:%M:%S"), t);
    case OLESTR('u'): w.Number(FloorMod(t.tm_wday + 6LL, 7) + 1, 1); break;
    case OLESTR('U'): w.Number(FloorDiv(t.tm_yday + 7LL - t.tm_wday, 7), 2); break;
    case OLESTR('V'): IsoWeek(t, isoYear, isoWeek); w.Number(isoWeek, 2); break;
    case OLESTR('w'): w.Number(t.tm_wday, 1); break;
    case OLESTR('W'): w.Number(FloorDiv(t.tm_yday + 7LL - FloorMod(t.tm_wday + 6LL, 7), 7), 2); break;
    case OLESTR('y'): w.Number(FloorMod(year, 100), 2); break;
    case OLESTR('Y'): w.Number(year, 1); break;
    case OLESTR('z'): case OLESTR('Z'): break;
    case OLESTR('%'): w.Ascii("%"); break;
    default: return false;
    }
    return true;
}

// The directives each modifier may precede.
bool Modifies(OLECHAR modifier, OLECHAR d) noexcept {
    const OleStringView allowed = modifier == OLESTR('E') ? OLESTR("cCxXyY") : OLESTR("deHImMSuUVwWy");
    return allowed.find(d) != OleStringView::npos;
}

bool Render(Writer& w, OleStringView pattern, const std::tm& t) noexcept {
    const std::size_t n = pattern.size();
    std::size_t pos = 0;
    while (pos < n && !w.Overflowed()) {
        if (pattern[pos] != OLESTR('%')) {
            std::size_t end = pattern.find(OLESTR('%'), pos);
            if (end == OleStringView::npos) end = n;
            w.Text(pattern.substr(pos, end - pos));
            pos = end;
            continue;
        }
        if (++pos >= n) return false;
        OLECHAR d = pattern[pos++];
        if (d == OLESTR('E') || d == OLESTR('O')) {
            if (pos >= n || !Modifies(d, pattern[pos])) return false;
            d = pattern[pos++];
        }
        if (!Directive(w, d, t)) return false;
    }
    return true;
}

}  // namespace

FormatResult FormatTime(OleStringView pattern, const std::tm& t, OLECHAR* out, std::size_t capacity) noexcept {
    if (out == nullptr || capacity == 0) return {FormatStatus::Overflow, 0};
    if (const std::size_t nul = pattern.find(OLECHAR(0)); nul != OleStringView::npos) pattern = pattern.substr(0, nul);
    Writer w(out, capacity);
    const bool known = Render(w, pattern, t);
    const FormatStatus status = !known ? FormatStatus::Malformed
                                : w.Overflowed() ? FormatStatus::Overflow
                                                 : FormatStatus::Ok;
    if (status != FormatStatus::Ok) {
        out[0] = 0;
        return {status, 0};
    }
    out[w.Size()] = 0;
    return {FormatStatus::Ok, w.Size()};
}

}  // namespace varion::detail
