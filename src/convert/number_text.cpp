#include "convert/number_text.h"

#include "convert/numeric.h"
#include "value/access.h"

#include <bit>
#include <charconv>
#include <clocale>
#include <cmath>
#include <cstring>
#include <limits>
#include <new>

#if !defined(_WIN32)
#include <langinfo.h>
#endif

namespace varion::detail {
namespace {

constexpr char kForeign = 0x7F;  // stands for every character outside ASCII

int DigitValue(char32_t c) noexcept {
    if (c >= '0' && c <= '9') return static_cast<int>(c - '0');
    if (c >= 'A' && c <= 'F') return static_cast<int>(c - 'A' + 10);
    if (c >= 'a' && c <= 'f') return static_cast<int>(c - 'a' + 10);
    return -1;
}

// The white space of the C library's "%x" scan in the C locale.
bool IsScanSpace(OLECHAR c) noexcept { return c == ' ' || (c >= 0x09 && c <= 0x0D); }

// One code point of a UTF-8 text (the locale's separator) as UTF-16.
int DecodeSeparator(const unsigned char* s, OLECHAR (&out)[2]) noexcept {
    char32_t cp = 0xFFFD;
    int extra = 0;
    if (s[0] >= 0xF0 && s[0] <= 0xF4) {
        cp = s[0] & 0x07u;
        extra = 3;
    } else if (s[0] >= 0xE0) {
        cp = s[0] & 0x0Fu;
        extra = 2;
    } else if (s[0] >= 0xC2 && s[0] <= 0xDF) {
        cp = s[0] & 0x1Fu;
        extra = 1;
    }
    for (int k = 1; k <= extra; ++k) {
        if ((s[k] & 0xC0u) != 0x80u) {
            cp = 0xFFFD;
            extra = 0;
            break;
        }
        cp = (cp << 6) | (s[k] & 0x3Fu);
    }
    if (extra == 0 || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) cp = 0xFFFD;
    if (cp < 0x10000) {
        out[0] = static_cast<OLECHAR>(cp);
        return 1;
    }
    cp -= 0x10000;
    out[0] = static_cast<OLECHAR>(0xD800 + (cp >> 10));
    out[1] = static_cast<OLECHAR>(0xDC00 + (cp & 0x3FF));
    return 2;
}

// Whether a finite decimal number that std::from_chars found out of range
// lies above the double range (rather than below it): the position of its
// first non-zero digit plus the exponent decides.
bool AboveDoubleRange(std::string_view digits, std::size_t separator, long long exponent) noexcept {
    long long magnitude = 0;
    std::size_t position = 0;  // digits seen, separator excluded
    const std::size_t integerDigits = separator == std::string_view::npos ? digits.size() : separator;
    for (std::size_t i = 0; i < digits.size(); ++i) {
        if (i == separator) continue;
        if (digits[i] != '0') {
            magnitude = static_cast<long long>(integerDigits) - static_cast<long long>(position) - 1;
            return magnitude + exponent > 0;
        }
        ++position;
    }
    return false;
}

// The optional exponent digits, saturated far beyond any double exponent.
long long ExponentOf(std::string_view digits) noexcept {
    bool negative = false;
    std::size_t i = 0;
    if (i < digits.size() && (digits[i] == '+' || digits[i] == '-')) negative = digits[i++] == '-';
    long long e = 0;
    for (; i < digits.size(); ++i)
        if (e < 1000000000) e = e * 10 + (digits[i] - '0');
    return negative ? -e : e;
}

// Where the parts of a decimal number lie in a text: an optional sign,
// digits with at most one "." or "," (digits on at least one side), then
// optionally "E" (or "e"), a sign and digits.
struct DecimalScan {
    std::size_t start = 0;         // after the sign
    std::size_t separator = std::string_view::npos;
    std::size_t mantissaEnd = 0;   // before the exponent
    std::size_t end = 0;           // characters read; 0 when there is no number
    bool negative = false;
};

template <class C>
bool IsDigitChar(C c) noexcept {
    return c >= C('0') && c <= C('9');
}

// Runs of digits in UTF-16 text are read four code units at a time, as one
// 64-bit word (little-endian: the first unit in the low bits), which takes
// the per-digit loop off the path of long numbers.
template <class C>
constexpr bool kFourAtATime = sizeof(C) == 2 && std::endian::native == std::endian::little;

// Whether the four code units at `p` are all decimal digits: 0x30 to 0x3F in
// every lane, and no lane above 0x39 (adding 6 carries 0x3A to 0x3F into the
// next nibble).
template <class C>
bool AreFourDigits(const C* p) noexcept {
    constexpr std::uint64_t kLanes = 0xFFF0FFF0FFF0FFF0ULL;
    constexpr std::uint64_t kZeros = 0x0030003000300030ULL;  // "0000"
    std::uint64_t word = 0;
    std::memcpy(&word, p, sizeof word);
    return (word & kLanes) == kZeros && ((word + 0x0006000600060006ULL) & kLanes) == kZeros;
}

// The value of four code units known to be decimal digits, the first the
// most significant ("1234" gives 1234).
template <class C>
std::uint64_t FourDigitsValue(const C* p) noexcept {
    std::uint64_t word = 0;
    std::memcpy(&word, p, sizeof word);
    const std::uint64_t d = word - 0x0030003000300030ULL;  // d0 d1 d2 d3, d0 lowest
    const std::uint64_t pairs = d * 10 + (d >> 16);         // d0d1 in lane 0, d2d3 in lane 2
    return (pairs & 0xFFFF) * 100 + ((pairs >> 32) & 0xFFFF);
}

// The end of the run of digits starting at `i`.
template <class C>
std::size_t DigitsEnd(const C* text, std::size_t i, std::size_t n) noexcept {
    if constexpr (kFourAtATime<C>) {
        while (i + 4 <= n && AreFourDigits(text + i)) i += 4;
    }
    while (i < n && IsDigitChar(text[i])) ++i;
    return i;
}

// The longest beginning of [text, text + n) that is a decimal number.
template <class C>
DecimalScan ScanDecimal(const C* text, std::size_t n) noexcept {
    DecimalScan scan;
    std::size_t i = 0;
    if (i < n && (text[i] == C('+') || text[i] == C('-'))) scan.negative = text[i++] == C('-');
    scan.start = i;
    i = DigitsEnd(text, i, n);
    const std::size_t integerEnd = i;
    if (i < n && (text[i] == C('.') || text[i] == C(','))) {
        const std::size_t j = DigitsEnd(text, i + 1, n);
        if (integerEnd > scan.start || j > i + 1) {
            scan.separator = i;
            i = j;
        }
    }
    if (i == scan.start) return DecimalScan{};  // no digit: nothing is read
    scan.mantissaEnd = i;
    if (i < n && (text[i] == C('E') || text[i] == C('e'))) {
        std::size_t k = i + 1;
        if (k < n && (text[k] == C('+') || text[k] == C('-'))) ++k;
        const std::size_t digits = k;
        while (k < n && IsDigitChar(text[k])) ++k;
        if (k > digits) i = k;
    }
    scan.end = i;
    return scan;
}

// The value of a scanned number whose characters from its start (after the
// sign) lie in `number`, with "." as separator. Beyond the double range: an
// infinity or a zero of the sign.
double DecimalValue(const char* number, const DecimalScan& scan) noexcept {
    const std::size_t length = scan.end - scan.start;
    double value = 0.0;
    const auto [ptr, ec] = std::from_chars(number, number + length, value);
    if (ec == std::errc::result_out_of_range) {
        const std::size_t mantissa = scan.mantissaEnd - scan.start;
        const std::size_t at = scan.separator == std::string_view::npos ? scan.separator : scan.separator - scan.start;
        const long long exponent = length > mantissa ? ExponentOf({number + mantissa + 1, length - mantissa - 1}) : 0;
        value = AboveDoubleRange({number, mantissa}, at, exponent) ? std::numeric_limits<double>::infinity() : 0.0;
    } else if (ec != std::errc() || ptr != number + length) {
        value = 0.0;  // not reached: the scan accepts only what from_chars reads
    }
    return scan.negative ? -value : value;
}

// The powers of ten a double holds exactly: 10^0 to 10^22.
constexpr double kExactPowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                        1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

// Appends the run of digits at text[i, n) to `m` and answers where the run
// ends. More than nineteen digits wrap `m`; callers count them. Inlined into
// the one-pass reader, where `m` stays in a register.
template <class C>
VARION_FOLD_INLINE std::size_t AppendDigitRun(std::uint64_t& m, const C* text, std::size_t i, std::size_t n) noexcept {
    if constexpr (kFourAtATime<C>) {
        for (; i + 4 <= n && AreFourDigits(text + i); i += 4) m = m * 10000 + FourDigitsValue(text + i);
    }
    for (; i < n; ++i) {
        const auto d = static_cast<std::uint64_t>(static_cast<unsigned>(text[i]) - unsigned{'0'});
        if (d > 9) break;
        m = m * 10 + d;
    }
    return i;
}

// The value of the whole of [text, text + n) read in one pass, when it is a
// plain decimal number that needs no more than one correctly rounded
// operation: its digits, without the separator, are at most nineteen and
// make an integer m below 2^53, and its power of ten p lies within 22 of
// zero, so that m and 10^|p| are exact doubles and m * 10^p (or m / 10^-p) is
// the double nearest the number, the one std::from_chars reads ("12,5" is
// 125 / 10). False for every other text, which the full scan then reads.
template <class C>
bool QuickDecimalValue(const C* text, std::size_t n, double& value) noexcept {
    const bool negative = text[0] == C('-');
    std::size_t i = (negative || text[0] == C('+')) ? 1 : 0;
    std::uint64_t m = 0;
    const std::size_t integerStart = i;
    i = AppendDigitRun(m, text, i, n);
    std::size_t digits = i - integerStart;
    long long power = 0;
    if (i < n && (text[i] == C('.') || text[i] == C(','))) {
        const std::size_t fractionStart = ++i;
        i = AppendDigitRun(m, text, i, n);
        digits += i - fractionStart;
        power = -static_cast<long long>(i - fractionStart);
    }
    if (digits == 0 || digits > 19) return false;
    if (i < n) {  // "E" or "e", an optional sign, one to three digits
        if (text[i] != C('E') && text[i] != C('e')) return false;
        ++i;
        const bool negativeExponent = i < n && text[i] == C('-');
        if (i < n && (text[i] == C('+') || text[i] == C('-'))) ++i;
        if (i == n || n - i > 3) return false;
        std::uint64_t e = 0;
        if (AppendDigitRun(e, text, i, n) != n) return false;
        power += negativeExponent ? -static_cast<long long>(e) : static_cast<long long>(e);
    }
    if (m >= 1ULL << 53 || power < -22 || power > 22) return false;
    const double magnitude = power < 0 ? static_cast<double>(m) / kExactPowersOfTen[-power]
                                       : static_cast<double>(m) * kExactPowersOfTen[power];
    value = negative ? -magnitude : magnitude;
    return true;
}

// Reads the longest decimal number at the start of a prepared text into
// `value` (0.0 when nothing is read) and answers the characters read. The
// separator in `text` becomes ".".
std::size_t ReadDecimal(char* text, std::size_t n, double& value) noexcept {
    const DecimalScan scan = ScanDecimal(text, n);
    value = 0.0;
    if (scan.end == 0) return 0;
    if (scan.separator != std::string_view::npos) text[scan.separator] = '.';
    value = DecimalValue(text + scan.start, scan);
    return scan.end;
}

// The fit rule: whether the digits' value v (with its base) is accepted by
// integer type T, and the value stored. Signed types below 64 bits also take
// v in [2^(b-1), 2^b - 1] from bases 2, 8 and 16 as their byte pattern;
// VT_I8 takes up to 64 significant bits from bases 2 and 16; VT_UI8 takes
// decimal texts only up to 2^63 - 1 and other bases at any size (saturated).
template <VARTYPE T>
bool Fit(const DigitRun& run, int base, NumericT<T>& out) noexcept {
    using TT = NumericT<T>;
    constexpr std::uint64_t kMax = static_cast<std::uint64_t>(std::numeric_limits<TT>::max());
    constexpr std::uint64_t kSignedMax = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    const std::uint64_t m = run.magnitude;
    if constexpr (T == VT_UI8) {
        if (run.negative && m != 0) return false;
        if (base == 10 && (run.overflow || m > kSignedMax)) return false;
        out = m;
        return true;
    } else if constexpr (std::is_unsigned_v<TT>) {
        if (run.overflow || (run.negative && m != 0) || m > kMax) return false;
        out = static_cast<TT>(m);
        return true;
    } else {
        if (run.overflow) return false;
        if (run.negative) {
            if (m > kMax + 1) return false;  // below the lower bound
            out = static_cast<TT>(0 - m);    // two's complement of the magnitude
            return true;
        }
        constexpr std::uint64_t kPatternMax =
            sizeof(TT) == 8 ? std::numeric_limits<std::uint64_t>::max() : (kMax << 1) + 1;
        const bool patternBase = sizeof(TT) == 8 ? (base == 2 || base == 16) : base != 10;
        if (m > kMax && !(patternBase && m <= kPatternMax)) return false;
        out = static_cast<TT>(m);  // beyond kMax: the byte pattern, read as two's complement
        return true;
    }
}

template <VARTYPE T>
bool FitInto(const DigitRun& run, int base, VARIANT& out) noexcept {
    NumericT<T> x{};
    if (!Fit<T>(run, base, x)) return false;
    out.vt = T;
    Store(out, x);
    return true;
}

bool FitInteger(const DigitRun& run, int base, VARTYPE type, VARIANT& out) noexcept {
    switch (type) {
    case VT_I1: return FitInto<VT_I1>(run, base, out);
    case VT_UI1: return FitInto<VT_UI1>(run, base, out);
    case VT_I2: return FitInto<VT_I2>(run, base, out);
    case VT_UI2: return FitInto<VT_UI2>(run, base, out);
    case VT_I4: return FitInto<VT_I4>(run, base, out);
    case VT_UI4: return FitInto<VT_UI4>(run, base, out);
    case VT_I8: return FitInto<VT_I8>(run, base, out);
    case VT_UI8: return FitInto<VT_UI8>(run, base, out);
    default: return false;
    }
}

// A double brought into `type` by the range-checked cast.
long DoubleInto(double d, VARTYPE type, VARIANT& out) noexcept {
    if (type == VT_R8) {
        out.vt = VT_R8;
        Store(out, d);
        return RC_OK;
    }
    VARIANT r{};
    r.vt = VT_R8;
    Store(r, d);
    if (ConvertNumeric(r, type) != RC_OK) return RC_NOT_CONVERTIBLE;
    out = r;
    return RC_OK;
}

}  // namespace

int RuntimeDecimalSeparator(OLECHAR (&out)[2]) noexcept {
#if defined(_WIN32)
    const std::lconv* conventions = std::localeconv();
    const char* point = conventions != nullptr ? conventions->decimal_point : nullptr;
#else
    // The same item localeconv() reports as decimal_point, without filling
    // the whole lconv structure on every number written.
    const char* point = nl_langinfo(RADIXCHAR);
#endif
    if (point == nullptr || point[0] == '\0') {
        out[0] = '.';
        return 1;
    }
    const auto* bytes = reinterpret_cast<const unsigned char*>(point);
    if (bytes[0] < 0x80) {
        out[0] = static_cast<OLECHAR>(bytes[0]);
        return 1;
    }
    return DecodeSeparator(bytes, out);
}

OleStringView TextOf(BSTR s) noexcept {
    if (s == nullptr) return {};
    const OleStringView all(s, SysStringLen(s));
    return all.substr(0, all.find(OLECHAR(0)));
}

OleStringView TrimmedView(OleStringView text) noexcept {
    // Printable ASCII is never white space; only the rest asks CString.
    const auto isSpace = [](OLECHAR c) { return (c <= 0x20 || c >= 0x7F) && CString::IsSpace(c); };
    std::size_t first = 0;
    std::size_t last = text.size();
    while (first < last && isSpace(text[first])) ++first;
    while (last > first && isSpace(text[last - 1])) --last;
    return text.substr(first, last - first);
}

bool NarrowText::Assign(OleStringView text) noexcept {
    const OleStringView trimmed = TrimmedView(text);
    m_data = m_small;
    m_size = 0;
    if (trimmed.size() > sizeof(m_small)) {
        m_large.reset(new (std::nothrow) char[trimmed.size()]);
        if (!m_large) return false;
        m_data = m_large.get();
    }
    for (std::size_t k = 0; k < trimmed.size(); ++k) {
        const unsigned c = trimmed[k];
        const unsigned narrow = c < 0x80 ? c : static_cast<unsigned>(kForeign);
        m_data[k] = static_cast<char>(narrow - (narrow - 'a' < 26u ? 0x20u : 0u));
    }
    m_size = trimmed.size();
    return true;
}

int BaseOfText(std::string_view text) noexcept {
    if (text.empty()) return 0;
    if (text[0] != '0' || text.size() == 1) return 10;
    switch (text[1]) {
    case 'B': case 'b': return 2;
    case 'X': case 'x': return 16;
    default: return 8;
    }
}

std::size_t PrefixLength(int base) noexcept {
    switch (base) {
    case 2: case 16: return 2;
    case 8: return 1;
    default: return 0;
    }
}

DigitRun ReadDigits(std::string_view text, int base) noexcept {
    DigitRun run;
    std::size_t i = 0;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) run.negative = text[i++] == '-';
    const std::size_t first = i;
    const auto b = static_cast<std::uint64_t>(base);
    for (; i < text.size(); ++i) {
        const int d = DigitValue(static_cast<unsigned char>(text[i]));
        if (d < 0 || d >= base) break;
        const auto digit = static_cast<std::uint64_t>(d);
        if (run.overflow) continue;
        if (run.magnitude > (std::numeric_limits<std::uint64_t>::max() - digit) / b) {
            run.overflow = true;
            run.magnitude = std::numeric_limits<std::uint64_t>::max();
        } else {
            run.magnitude = run.magnitude * b + digit;
        }
    }
    if (i == first) return DigitRun{};
    run.end = i;
    return run;
}

long IntegerFromText(char* text, std::size_t size, VARTYPE type, VARIANT& out) noexcept {
    const std::string_view t(text, size);
    const int base = BaseOfText(t);
    if (base == 0) return RC_NOT_CONVERTIBLE;
    std::string_view rest = t.substr(PrefixLength(base));
    rest.remove_prefix(std::min(rest.find_first_not_of('0'), rest.size()));
    const DigitRun run = ReadDigits(rest, base);
    if (run.end != rest.size()) {
        if (base != 10) return RC_NOT_CONVERTIBLE;
        // A decimal number other than an integer: read it as a double and
        // round it into the type ("2.5" gives 3, "1e3" 1000).
        VARIANT r8{};
        if (FloatingFromText(text, size, VT_R8, r8) != RC_OK) return RC_NOT_CONVERTIBLE;
        return DoubleInto(Load<double>(r8), type, out);
    }
    return FitInteger(run, base, type, out) ? RC_OK : RC_NOT_CONVERTIBLE;
}

long FloatingFromText(char* text, std::size_t size, VARTYPE type, VARIANT& out) noexcept {
    const std::string_view t(text, size);
    const int base = BaseOfText(t);
    double d = 0.0;
    // A decimal text read whole holds no letter but "E", so it cannot be one
    // of the words below: the common case takes this path alone.
    if (base == 10 && ReadDecimal(text, size, d) == size) return DoubleInto(d, type, out);

    if (t.find("INF") != std::string_view::npos) {
        d = t.find('-') != std::string_view::npos ? -std::numeric_limits<double>::infinity()
                                                  : std::numeric_limits<double>::infinity();
    } else if (t.find("NAN") != std::string_view::npos || t.find("IND") != std::string_view::npos) {
        d = std::numeric_limits<double>::quiet_NaN();
    } else if (base == 10) {
        return RC_NOT_CONVERTIBLE;  // read above, and not whole
    } else {
        // "0x10" is 16.0 and "010" 8.0; "0.5" fails here and is read below.
        VARIANT whole{};
        if (IntegerFromText(text, size, VT_I8, whole) == RC_OK && ConvertNumeric(whole, type) == RC_OK) {
            out = whole;
            return RC_OK;
        }
        if (ReadDecimal(text, size, d) != size) return RC_NOT_CONVERTIBLE;
    }
    return DoubleInto(d, type, out);
}

bool ReadByteToken(OleStringView token, BYTE& value) noexcept {
    std::size_t i = 0;
    const std::size_t n = token.size();
    while (i < n && IsScanSpace(token[i])) ++i;
    if (i + 2 < n && token[i] == '0' && (token[i + 1] == 'x' || token[i + 1] == 'X') && DigitValue(token[i + 2]) >= 0)
        i += 2;
    unsigned v = 0;
    std::size_t digits = 0;
    for (; i < n; ++i, ++digits) {
        const int d = DigitValue(token[i]);
        if (d < 0) break;
        if (v <= 0xFF) v = v * 16 + static_cast<unsigned>(d);  // once above 255 it stays above
    }
    if (digits == 0 || v > 0xFF) return false;
    value = static_cast<BYTE>(v);
    return true;
}

bool PlainDecimalFromText(OleStringView trimmed, VARTYPE type, VARIANT& out, long& code) noexcept {
    constexpr std::size_t kLongest = 96;
    const std::size_t n = trimmed.size();
    if (n == 0 || n > kLongest) return false;
    // A "0" before anything but the separator makes a text of another base.
    if (trimmed[0] == '0' && n > 1 && trimmed[1] != '.' && trimmed[1] != ',') return false;
    double value = 0.0;
    if (!QuickDecimalValue(trimmed.data(), n, value)) {
        const DecimalScan scan = ScanDecimal(trimmed.data(), n);
        if (scan.end != n) return false;
        char number[kLongest];
        for (std::size_t k = scan.start; k < n; ++k) number[k - scan.start] = static_cast<char>(trimmed[k]);
        if (scan.separator != std::string_view::npos) number[scan.separator - scan.start] = '.';
        value = DecimalValue(number, scan);
    }
    code = DoubleInto(value, type, out);
    return true;
}

long NumberFromText(OleStringView text, VARTYPE type, VARIANT& out) noexcept {
    const bool floating = type == VT_R4 || type == VT_R8;
    if (floating) {
        long code = RC_NOT_CONVERTIBLE;
        if (PlainDecimalFromText(TrimmedView(text), type, out, code)) return code;
    }
    NarrowText prepared;
    if (!prepared.Assign(text)) return RC_NOT_CONVERTIBLE;
    return floating ? FloatingFromText(prepared.Data(), prepared.Size(), type, out)
                    : IntegerFromText(prepared.Data(), prepared.Size(), type, out);
}

bool PlainIntegerFromText(OleStringView trimmed, VARTYPE type, VARIANT& out, long& code) noexcept {
    const std::size_t n = trimmed.size();
    // A "0" in front of more makes a text of another base.
    if (n == 0 || (trimmed[0] == '0' && n > 1)) return false;
    DigitRun run;
    std::size_t i = 0;
    if (trimmed[0] == '+' || trimmed[0] == '-') run.negative = trimmed[i++] == '-';
    // Nineteen digits at most, so that the magnitude cannot overflow.
    if (i == n || n - i > 19) return false;
    std::uint64_t m = 0;
    if (AppendDigitRun(m, trimmed.data(), i, n) != n) return false;
    run.magnitude = m;
    run.end = n;
    code = FitInteger(run, 10, type, out) ? RC_OK : RC_NOT_CONVERTIBLE;
    return true;
}

long NumberFromString(BSTR text, VARTYPE type, VARIANT& out) noexcept {
    // A plain number holds no zero code unit: it is looked for in the whole
    // string, before the full rules read the string up to its first zero.
    if (text != nullptr) {
        const OleStringView trimmed = TrimmedView(OleStringView(text, SysStringLen(text)));
        long code = RC_NOT_CONVERTIBLE;
        const bool floating = type == VT_R4 || type == VT_R8;
        if (floating ? PlainDecimalFromText(trimmed, type, out, code) : PlainIntegerFromText(trimmed, type, out, code))
            return code;
    }
    return NumberFromText(TextOf(text), type, out);
}

}  // namespace varion::detail
