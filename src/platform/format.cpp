// The printf-like formatter: scanning the format, reading conversion
// directives and rendering integers, floating values, characters and
// texts. Number digits come from std::to_chars and are then shaped (padding,
// prefixes, three-digit exponents, the locale's decimal separator).
#include "platform/format.h"

#include <array>
#include <charconv>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <system_error>

#if defined(__GLIBC__)
#include <langinfo.h>
#endif

namespace varion::detail {
namespace {

enum : unsigned { kLeft = 1, kPlus = 2, kSpace = 4, kAlt = 8, kZero = 16 };

enum class Length : unsigned char { None, Char, Short, Long, LongLong };

struct Spec {
    unsigned flags = 0;
    int width = 0;
    int precision = -1;  // -1: none given
    Length length = Length::None;
    OLECHAR conversion = 0;
};

// Room for the longest number text a width and precision up to 999 allow:
// 309 integer digits, the point and 999 decimals, or a scientific form.
constexpr std::size_t kNumberBuffer = 1400;

// ---------------------------------------------------------------------------
// Sinks: where the text goes. Each write either fits whole or marks overflow.
// ---------------------------------------------------------------------------
class FixedSink {
public:
    FixedSink(OLECHAR* out, std::size_t capacity) noexcept
        : m_out(out), m_room(out != nullptr && capacity > 0 ? capacity - 1 : 0) {}

    void Put(OLECHAR c) noexcept {
        if (Reserve(1)) m_out[m_length++] = c;
    }
    void Fill(OLECHAR c, std::size_t n) noexcept {
        if (!Reserve(n)) return;
        for (std::size_t i = 0; i < n; ++i) m_out[m_length++] = c;
    }
    void Text(OleStringView text) noexcept {
        if (!Reserve(text.size())) return;
        std::memcpy(m_out + m_length, text.data(), text.size() * sizeof(OLECHAR));
        m_length += text.size();
    }
    // ASCII text with every "." written as `point`.
    void Ascii(std::string_view text, OLECHAR point) noexcept {
        if (!Reserve(text.size())) return;
        for (const char c : text) m_out[m_length++] = c == '.' ? point : static_cast<OLECHAR>(c);
    }
    void MarkOverflow() noexcept { m_overflow = true; }
    bool Overflowed() const noexcept { return m_overflow; }
    std::size_t Size() const noexcept { return m_length; }

private:
    bool Reserve(std::size_t n) noexcept {
        if (m_overflow || n > m_room - m_length) {
            m_overflow = true;
            return false;
        }
        return true;
    }

    OLECHAR* m_out;
    std::size_t m_room;
    std::size_t m_length = 0;
    bool m_overflow = false;
};

class StringSink {
public:
    explicit StringSink(OleString& out) noexcept : m_out(out) {}

    void Put(OLECHAR c) { m_out.push_back(c); }
    void Fill(OLECHAR c, std::size_t n) { m_out.append(n, c); }
    void Text(OleStringView text) { m_out.append(text); }
    void Ascii(std::string_view text, OLECHAR point) {
        for (const char c : text) m_out.push_back(c == '.' ? point : static_cast<OLECHAR>(c));
    }
    void MarkOverflow() noexcept { m_overflow = true; }
    bool Overflowed() const noexcept { return m_overflow; }

private:
    OleString& m_out;
    bool m_overflow = false;
};

// ---------------------------------------------------------------------------
// Conversion directives
// ---------------------------------------------------------------------------
bool IsDigit(OLECHAR c) noexcept { return c >= OLESTR('0') && c <= OLESTR('9'); }

// Reads a decimal count at `pos`; false when it exceeds kMaxFieldWidth.
bool ReadCount(OleStringView f, std::size_t& pos, int& value) noexcept {
    int v = 0;
    for (; pos < f.size() && IsDigit(f[pos]); ++pos)
        if (v <= kMaxFieldWidth) v = v * 10 + (f[pos] - OLESTR('0'));
    value = v;
    return v <= kMaxFieldWidth;
}

// The length prefixes each conversion accepts; false for unknown conversions.
bool Accepts(OLECHAR conversion, Length length) noexcept {
    switch (conversion) {
    case OLESTR('d'): case OLESTR('i'): case OLESTR('o'): case OLESTR('u'): case OLESTR('x'): case OLESTR('X'):
        return true;
    case OLESTR('c'): case OLESTR('C'): case OLESTR('s'): case OLESTR('S'):
        return length == Length::None || length == Length::Short || length == Length::Long;
    case OLESTR('e'): case OLESTR('E'): case OLESTR('f'): case OLESTR('g'): case OLESTR('G'):
        return length == Length::None || length == Length::Long;
    default:
        return false;
    }
}

// Reads the directive after a "%" (pos is just past it) up to and
// including its conversion character; false when it cannot be used.
bool ParseSpec(OleStringView f, std::size_t& pos, Spec& spec) noexcept {
    const std::size_t n = f.size();
    for (bool more = true; more && pos < n;) {
        switch (f[pos]) {
        case OLESTR('-'): spec.flags |= kLeft; break;
        case OLESTR('+'): spec.flags |= kPlus; break;
        case OLESTR(' '): spec.flags |= kSpace; break;
        case OLESTR('#'): spec.flags |= kAlt; break;
        case OLESTR('0'): spec.flags |= kZero; break;
        default: more = false; continue;
        }
        ++pos;
    }
    if (pos < n && f[pos] == OLESTR('*')) return false;
    if (!ReadCount(f, pos, spec.width)) return false;
    if (pos < n && f[pos] == OLESTR('.')) {
        ++pos;
        if (pos < n && f[pos] == OLESTR('*')) return false;
        if (!ReadCount(f, pos, spec.precision)) return false;
    }
    if (pos < n) {
        const OLECHAR c = f[pos];
        const OLECHAR next = pos + 1 < n ? f[pos + 1] : OLECHAR(0);
        if (c == OLESTR('h')) {
            spec.length = next == OLESTR('h') ? Length::Char : Length::Short;
            pos += next == OLESTR('h') ? 2 : 1;
        } else if (c == OLESTR('l')) {
            spec.length = next == OLESTR('l') ? Length::LongLong : Length::Long;
            pos += next == OLESTR('l') ? 2 : 1;
        } else if (c == OLESTR('I')) {
            if (!(next == OLESTR('6') && pos + 2 < n && f[pos + 2] == OLESTR('4'))) return false;
            spec.length = Length::LongLong;
            pos += 3;
        }
    }
    if (pos >= n) return false;
    spec.conversion = f[pos++];
    return Accepts(spec.conversion, spec.length);
}

// ---------------------------------------------------------------------------
// Emitting a field: blanks, prefix, zeros, body, blanks.
// ---------------------------------------------------------------------------
template <class Sink>
void EmitNumber(Sink& sink, const Spec& spec, std::string_view prefix, std::size_t zeros, std::string_view body,
                bool zeroPad, OLECHAR point) {
    if (spec.width == 0 && zeros == 0) {  // no field to fill: "%X", "%.2f"
        sink.Ascii(prefix, point);
        sink.Ascii(body, point);
        return;
    }
    const std::size_t length = prefix.size() + zeros + body.size();
    const auto width = static_cast<std::size_t>(spec.width);
    std::size_t pad = width > length ? width - length : 0;
    const bool left = (spec.flags & kLeft) != 0;
    if (zeroPad && !left) {
        zeros += pad;
        pad = 0;
    }
    if (!left) sink.Fill(OLESTR(' '), pad);
    sink.Ascii(prefix, point);
    sink.Fill(OLESTR('0'), zeros);
    sink.Ascii(body, point);
    if (left) sink.Fill(OLESTR(' '), pad);
}

template <class Sink>
void EmitText(Sink& sink, const Spec& spec, OleStringView body) {
    const auto width = static_cast<std::size_t>(spec.width);
    const std::size_t pad = width > body.size() ? width - body.size() : 0;
    const bool left = (spec.flags & kLeft) != 0;
    if (!left) sink.Fill(OLESTR(' '), pad);
    sink.Text(body);
    if (left) sink.Fill(OLESTR(' '), pad);
}

// ---------------------------------------------------------------------------
// Integers
// ---------------------------------------------------------------------------
unsigned BitsOf(Length length) noexcept {
    switch (length) {
    case Length::Char: return 8;
    case Length::Short: return 16;
    case Length::LongLong: return 64;
    default: return 32;
    }
}

template <class Sink>
bool RenderInteger(Sink& sink, const Spec& spec, const FormatArg& arg) {
    if (arg.kind() != FormatArg::Kind::Signed && arg.kind() != FormatArg::Kind::Unsigned) return false;
    const unsigned bits = BitsOf(spec.length);
    const unsigned long long mask = bits == 64 ? ~0ULL : (1ULL << bits) - 1;
    unsigned long long value = arg.bits() & mask;
    const OLECHAR conv = spec.conversion;

    char prefix[2];
    std::size_t prefixLength = 0;
    if (conv == OLESTR('d') || conv == OLESTR('i')) {
        if ((value >> (bits - 1)) & 1U) {
            prefix[prefixLength++] = '-';
            value = (0ULL - value) & mask;  // the magnitude; 2^(bits-1) for the least value
        } else if (spec.flags & kPlus) {
            prefix[prefixLength++] = '+';
        } else if (spec.flags & kSpace) {
            prefix[prefixLength++] = ' ';
        }
    }
    const int base = conv == OLESTR('o') ? 8 : (conv == OLESTR('x') || conv == OLESTR('X')) ? 16 : 10;

    char digits[24];
    std::size_t count = 0;
    if (!(spec.precision == 0 && value == 0)) {
        const auto result = std::to_chars(digits, digits + sizeof digits, value, base);
        count = static_cast<std::size_t>(result.ptr - digits);
        if (conv == OLESTR('X'))
            for (std::size_t i = 0; i < count; ++i)
                if (digits[i] >= 'a') digits[i] = static_cast<char>(digits[i] - 'a' + 'A');
    }
    const auto precision = static_cast<std::size_t>(spec.precision < 0 ? 0 : spec.precision);
    std::size_t zeros = precision > count ? precision - count : 0;
    if (spec.flags & kAlt) {
        if (conv == OLESTR('o')) {
            if (zeros == 0 && (count == 0 || digits[0] != '0')) zeros = 1;
        } else if (base == 16 && value != 0) {
            prefix[prefixLength++] = '0';
            prefix[prefixLength++] = conv == OLESTR('X') ? 'X' : 'x';
        }
    }
    EmitNumber(sink, spec, std::string_view(prefix, prefixLength), zeros, std::string_view(digits, count),
               (spec.flags & kZero) != 0 && spec.precision < 0, OLESTR('.'));
    return true;
}

template <class Sink>
bool RenderCharacter(Sink& sink, const Spec& spec, const FormatArg& arg) {
    if (arg.kind() != FormatArg::Kind::Signed && arg.kind() != FormatArg::Kind::Unsigned) return false;
    const unsigned long long mask = spec.length == Length::Short ? 0xFFU : 0xFFFFU;
    const auto code = static_cast<OLECHAR>(arg.bits() & mask);
    EmitText(sink, spec, OleStringView(&code, 1));
    return true;
}

template <class Sink>
bool RenderString(Sink& sink, const Spec& spec, const FormatArg& arg) {
    if (arg.kind() != FormatArg::Kind::Text) return false;
    OleStringView text = arg.text();
    if (spec.precision >= 0 && static_cast<std::size_t>(spec.precision) < text.size())
        text = text.substr(0, static_cast<std::size_t>(spec.precision));
    EmitText(sink, spec, text);
    return true;
}

// ---------------------------------------------------------------------------
// Floating values
// ---------------------------------------------------------------------------

// The C library's decimal separator as one UTF-16 code unit ("." when it has
// none or it is not a single character of the Basic Multilingual Plane).
// The GNU C library answers nl_langinfo(RADIXCHAR) from the same numeric
// locale data as localeconv()->decimal_point, without filling a structure.
OLECHAR DecimalPoint() noexcept {
#if defined(__GLIBC__)
    const auto* p = reinterpret_cast<const unsigned char*>(nl_langinfo(RADIXCHAR));
#else
    const std::lconv* conv = std::localeconv();
    const auto* p = conv != nullptr ? reinterpret_cast<const unsigned char*>(conv->decimal_point) : nullptr;
#endif
    if (p == nullptr || p[0] == 0) return OLESTR('.');
    if (p[0] < 0x80) return p[1] == 0 ? static_cast<OLECHAR>(p[0]) : OLESTR('.');
    if ((p[0] & 0xE0) == 0xC0 && (p[1] & 0xC0) == 0x80 && p[2] == 0)
        return static_cast<OLECHAR>(((p[0] & 0x1FU) << 6) | (p[1] & 0x3FU));
    if ((p[0] & 0xF0) == 0xE0 && (p[1] & 0xC0) == 0x80 && (p[2] & 0xC0) == 0x80 && p[3] == 0)
        return static_cast<OLECHAR>(((p[0] & 0x0FU) << 12) | ((p[1] & 0x3FU) << 6) | (p[2] & 0x3FU));
    return OLESTR('.');
}

// Pads the exponent of a scientific text to at least three digits; answers
// the new length. The buffer has room for the added digit.
std::size_t WidenExponent(char* text, std::size_t length) noexcept {
    const char* e = static_cast<const char*>(std::memchr(text, 'e', length));
    if (e == nullptr) return length;
    const auto digitsAt = static_cast<std::size_t>(e - text) + 2;  // past "e" and its sign
    std::size_t digits = length - digitsAt;
    while (digits < 3) {
        std::memmove(text + digitsAt + 1, text + digitsAt, digits);
        text[digitsAt] = '0';
        ++digits;
        ++length;
    }
    return length;
}

// Inserts "." after the first digit of a scientific text (the "#" form of a
// precision of 0); answers the new length.
std::size_t InsertPoint(char* text, std::size_t length) noexcept {
    std::memmove(text + 2, text + 1, length - 1);
    text[1] = '.';
    return length + 1;
}

// The exponent written in a scientific text.
int ExponentOf(const char* text, std::size_t length) noexcept {
    const char* e = static_cast<const char*>(std::memchr(text, 'e', length));
    if (e == nullptr) return 0;
    int value = 0;
    std::from_chars(e + 2, text + length, value);
    return e[1] == '-' ? -value : value;
}

// "%.<precision>f" of a finite, non-negative x by exact integer arithmetic,
// for the common case of a small precision and a value below 2^53 after
// scaling: x = m * 2^k, so x * 10^p = m * 10^p * 2^k is rounded to the
// nearest integer (ties to even, as the correctly rounded conversion does)
// and written with the point p digits from its end. Answers 0 when the case
// is not covered; std::to_chars then gives the same digits, only slower.
#if defined(__SIZEOF_INT128__)
__extension__ typedef unsigned __int128 Uint128;
#endif

// 10^p, and 2^53 / 10^p (the largest x the quick way takes), for p = 0 to 15.
constexpr std::uint64_t kPowersOfTen[] = {1ULL, 10ULL, 100ULL, 1000ULL, 10000ULL, 100000ULL, 1000000ULL,
                                          10000000ULL, 100000000ULL, 1000000000ULL, 10000000000ULL,
                                          100000000000ULL, 1000000000000ULL, 10000000000000ULL,
                                          100000000000000ULL, 1000000000000000ULL};
constexpr auto kQuickFixedLimits = [] {
    std::array<double, std::size(kPowersOfTen)> limits{};
    for (std::size_t p = 0; p < limits.size(); ++p) limits[p] = 9007199254740992.0 / static_cast<double>(kPowersOfTen[p]);
    return limits;
}();

std::size_t QuickFixed(char* buf, double x, int precision) noexcept {
#if defined(__SIZEOF_INT128__)
    if (precision < 0 || precision > 15) return 0;
    const auto p = static_cast<std::size_t>(precision);
    if (!(x < kQuickFixedLimits[p])) return 0;
    std::uint64_t bits = 0;
    std::memcpy(&bits, &x, sizeof bits);
    const auto biased = static_cast<int>(bits >> 52) & 0x7FF;
    const std::uint64_t fraction = bits & ((1ULL << 52) - 1);
    const std::uint64_t m = biased == 0 ? fraction : fraction | (1ULL << 52);
    const int shift = biased == 0 ? 1074 : 1075 - biased;  // x = m * 2^-shift
    const Uint128 product = static_cast<Uint128>(m) * kPowersOfTen[p];
    std::uint64_t n = 0;
    if (shift <= 0) {
        n = static_cast<std::uint64_t>(product << -shift);
    } else if (shift < 120) {
        n = static_cast<std::uint64_t>(product >> shift);
        const Uint128 rest = product - (static_cast<Uint128>(n) << shift);
        const Uint128 half = static_cast<Uint128>(1) << (shift - 1);
        if (rest > half || (rest == half && (n & 1U))) ++n;
    }  // else x * 10^p < 2^-16: rounds to 0
    // n written from its last digit, the point p digits from the end and at
    // least one digit before it: (314, 2) gives "3.14", (5, 2) "0.05".
    std::size_t digits = 1;
    for (std::uint64_t rest = n; rest >= 10; rest /= 10) ++digits;
    const std::size_t whole = digits > p ? digits - p : 1;
    const std::size_t length = whole + (p > 0 ? p + 1 : 0);
    char* out = buf + length;
    for (std::size_t i = 0; i < p; ++i, n /= 10) *--out = static_cast<char>('0' + n % 10);
    if (p > 0) *--out = '.';
    do {
        *--out = static_cast<char>('0' + n % 10);
        n /= 10;
    } while (out != buf);
    return length;
#else
    (void)buf;
    (void)x;
    (void)precision;
    return 0;
#endif
}

// The digits of a finite, non-negative x for the directive, with "." as
// the separator; 0 when they do not fit the buffer.
std::size_t FloatBody(char* buf, double x, const Spec& spec) noexcept {
    // Keep three spare characters for the point and exponent digits added below.
    char* const end = buf + kNumberBuffer - 3;
    const bool alt = (spec.flags & kAlt) != 0;
    int precision = spec.precision < 0 ? 6 : spec.precision;
    std::to_chars_result r{};
    std::size_t length = 0;
    switch (spec.conversion) {
    case OLESTR('f'):
        length = QuickFixed(buf, x, precision);
        if (length == 0) {
            r = std::to_chars(buf, end, x, std::chars_format::fixed, precision);
            if (r.ec != std::errc()) return 0;
            length = static_cast<std::size_t>(r.ptr - buf);
        }
        if (alt && precision == 0) buf[length++] = '.';
        return length;
    case OLESTR('e'): case OLESTR('E'):
        r = std::to_chars(buf, end, x, std::chars_format::scientific, precision);
        if (r.ec != std::errc()) return 0;
        length = static_cast<std::size_t>(r.ptr - buf);
        if (alt && precision == 0) length = InsertPoint(buf, length);
        return WidenExponent(buf, length);
    default:  // g, G
        if (precision == 0) precision = 1;
        if (!alt) {
            r = std::to_chars(buf, end, x, std::chars_format::general, precision);
            if (r.ec != std::errc()) return 0;
            return WidenExponent(buf, static_cast<std::size_t>(r.ptr - buf));
        }
        // "#": the style of %g, keeping trailing zeros and the point.
        r = std::to_chars(buf, end, x, std::chars_format::scientific, precision - 1);
        if (r.ec != std::errc()) return 0;
        length = static_cast<std::size_t>(r.ptr - buf);
        if (const int exponent = ExponentOf(buf, length); exponent >= -4 && exponent < precision) {
            const int decimals = precision - 1 - exponent;
            r = std::to_chars(buf, end, x, std::chars_format::fixed, decimals);
            if (r.ec != std::errc()) return 0;
            length = static_cast<std::size_t>(r.ptr - buf);
            if (decimals == 0) buf[length++] = '.';
            return length;
        }
        if (precision == 1) length = InsertPoint(buf, length);
        return WidenExponent(buf, length);
    }
}

template <class Sink>
bool RenderFloat(Sink& sink, const Spec& spec, const FormatArg& arg) {
    double x = 0.0;
    switch (arg.kind()) {
    case FormatArg::Kind::Double: x = arg.number(); break;
    case FormatArg::Kind::Signed: x = static_cast<double>(static_cast<long long>(arg.bits())); break;
    case FormatArg::Kind::Unsigned: x = static_cast<double>(arg.bits()); break;
    default: return false;
    }
    const OLECHAR conv = spec.conversion;
    const bool upper = conv == OLESTR('E') || conv == OLESTR('G');
    char sign[1];
    std::size_t signLength = 0;
    if (std::signbit(x)) {
        sign[signLength++] = '-';
    } else if (spec.flags & kPlus) {
        sign[signLength++] = '+';
    } else if (spec.flags & kSpace) {
        sign[signLength++] = ' ';
    }
    const std::string_view prefix(sign, signLength);
    if (!std::isfinite(x)) {
        const char* word = std::isnan(x) ? (upper ? "NAN" : "nan") : (upper ? "INF" : "inf");
        EmitNumber(sink, spec, prefix, 0, word, false, OLESTR('.'));
        return true;
    }
    char buf[kNumberBuffer];
    const std::size_t length = FloatBody(buf, std::fabs(x), spec);
    if (length == 0) {
        sink.MarkOverflow();
        return true;
    }
    if (upper)
        if (char* e = static_cast<char*>(std::memchr(buf, 'e', length))) *e = 'E';
    EmitNumber(sink, spec, prefix, 0, std::string_view(buf, length), (spec.flags & kZero) != 0, DecimalPoint());
    return true;
}

template <class Sink>
bool Render(Sink& sink, const Spec& spec, const FormatArg& arg) {
    switch (spec.conversion) {
    case OLESTR('c'): case OLESTR('C'): return RenderCharacter(sink, spec, arg);
    case OLESTR('s'): case OLESTR('S'): return RenderString(sink, spec, arg);
    case OLESTR('e'): case OLESTR('E'): case OLESTR('f'): case OLESTR('g'): case OLESTR('G'): return RenderFloat(sink, spec, arg);
    default: return RenderInteger(sink, spec, arg);
    }
}

// ---------------------------------------------------------------------------
// A bare conversion: the whole format is "%d", "%i", "%u", "%x", "%X", "%o" or
// "%.<digit>f", which is what display formats mostly are. It is written here
// by the general path's rules (the low 32 bits of an integer without a length
// prefix; the C library's decimal separator) without the general path's
// machinery. False for everything else (other formats, other kinds of
// argument, values the quick fixed-point digits do not cover), which the
// general path then writes.
// ---------------------------------------------------------------------------
bool WriteBare(OleStringView format, const FormatArg& arg, FixedSink& sink) noexcept {
    if (format.size() < 2 || format[0] != OLESTR('%')) return false;
    const OLECHAR conv = format.back();
    const bool integer = arg.kind() == FormatArg::Kind::Signed || arg.kind() == FormatArg::Kind::Unsigned;
    if (format.size() == 2 && integer) {
        const bool isSigned = conv == OLESTR('d') || conv == OLESTR('i');
        const int base = conv == OLESTR('o') ? 8 : (conv == OLESTR('x') || conv == OLESTR('X')) ? 16 : 10;
        if (!isSigned && base == 10 && conv != OLESTR('u')) return false;
        const auto low = static_cast<std::uint32_t>(arg.bits());
        char text[16];
        std::size_t n = 0;
        std::uint32_t magnitude = low;
        if (isSigned && (low >> 31) != 0) {
            text[n++] = '-';
            magnitude = 0U - low;
        }
        n = static_cast<std::size_t>(std::to_chars(text + n, text + sizeof text, magnitude, base).ptr - text);
        if (conv == OLESTR('X'))
            for (std::size_t i = 0; i < n; ++i)
                if (text[i] >= 'a') text[i] = static_cast<char>(text[i] - 'a' + 'A');
        sink.Ascii(std::string_view(text, n), OLESTR('.'));
        return true;
    }
    if (format.size() == 4 && format[1] == OLESTR('.') && IsDigit(format[2]) && conv == OLESTR('f') &&
        arg.kind() == FormatArg::Kind::Double && std::isfinite(arg.number())) {
        const double x = arg.number();
        char text[48];
        const std::size_t sign = std::signbit(x) ? 1 : 0;
        text[0] = '-';
        const std::size_t body = QuickFixed(text + sign, std::fabs(x), format[2] - OLESTR('0'));
        if (body == 0) return false;
        sink.Ascii(std::string_view(text, sign + body), DecimalPoint());
        return true;
    }
    return false;
}

// ---------------------------------------------------------------------------
// The format: literal runs, "%%" and conversions, each taking the next argument.
// ---------------------------------------------------------------------------
template <class Sink>
FormatStatus Run(OleStringView format, const FormatArg* args, std::size_t count, Sink& sink) {
    if (const std::size_t nul = format.find(OLECHAR(0)); nul != OleStringView::npos) format = format.substr(0, nul);
    const std::size_t n = format.size();
    std::size_t used = 0;
    std::size_t pos = 0;
    while (pos < n) {
        if (format[pos] != OLESTR('%')) {
            std::size_t end = format.find(OLESTR('%'), pos);
            if (end == OleStringView::npos) end = n;
            sink.Text(format.substr(pos, end - pos));
            pos = end;
            continue;
        }
        ++pos;
        if (pos < n && format[pos] == OLESTR('%')) {
            sink.Put(OLESTR('%'));
            ++pos;
            continue;
        }
        Spec spec;
        if (!ParseSpec(format, pos, spec) || used == count || args == nullptr) return FormatStatus::Malformed;
        if (!Render(sink, spec, args[used++])) return FormatStatus::Malformed;
        if (sink.Overflowed()) return FormatStatus::Overflow;
    }
    return sink.Overflowed() ? FormatStatus::Overflow : FormatStatus::Ok;
}

}  // namespace

FormatResult FormatOne(OleStringView format, const FormatArg& arg, OLECHAR* out, std::size_t capacity) noexcept {
    if (out == nullptr || capacity == 0) return {FormatStatus::Overflow, 0};  // not even room for the terminator
    FixedSink sink(out, capacity);
    FormatStatus status = FormatStatus::Ok;
    if (WriteBare(format, arg, sink))
        status = sink.Overflowed() ? FormatStatus::Overflow : FormatStatus::Ok;
    else
        status = Run(format, &arg, 1, sink);
    if (status != FormatStatus::Ok) {
        out[0] = 0;
        return {status, 0};
    }
    out[sink.Size()] = 0;
    return {FormatStatus::Ok, sink.Size()};
}

FormatStatus FormatList(OleStringView format, const FormatArg* args, std::size_t count, OleString& out) {
    OleString text;
    StringSink sink(text);
    const FormatStatus status = Run(format, args, count, sink);
    if (status != FormatStatus::Ok) {
        out.clear();
        return status;
    }
    out.swap(text);
    return status;
}

}  // namespace varion::detail
