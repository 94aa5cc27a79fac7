// Doubles written as "%.15f" with the trailing zeros trimmed: the text of
// every double below 2^64 in magnitude by exact integer arithmetic, the rest
// through std::to_chars.
#include "convert/number_text.h"

#include <bit>
#include <charconv>
#include <cstdint>
#include <cstring>

namespace varion::detail {
namespace {

#if defined(__SIZEOF_INT128__)
__extension__ typedef unsigned __int128 Uint128;

// The eight decimal digits of n < 10^8, leading zeros included, as digit
// values (0 to 9) in the bytes of a word, the first digit in the lowest byte.
// All eight are found at once: n splits into two four-digit halves in 32-bit
// lanes, each half into two-digit pairs in 16-bit lanes (x / 100 as
// x * 10486 >> 20, exact below 10^4), each pair into its two digits in
// 8-bit lanes (x / 10 as x * 103 >> 10, exact below 100).
std::uint64_t EightDigits(std::uint32_t n) noexcept {
    const std::uint64_t halves = std::uint64_t{n / 10000} | std::uint64_t{n % 10000} << 32;
    const std::uint64_t high = ((halves * 10486) >> 20) & 0x0000007F0000007FULL;
    const std::uint64_t pairs = ((halves - 100 * high) << 16) | high;
    const std::uint64_t tens = ((pairs * 103) >> 10) & 0x000F000F000F000FULL;
    return tens | (pairs - 10 * tens) << 8;
}

// Writes the eight digits of EightDigits' word as text, in one store.
void WriteEight(std::uint64_t digits, char* out) noexcept {
    std::uint64_t text = digits + 0x3030303030303030ULL;  // '0' added to every digit
    if constexpr (std::endian::native == std::endian::big) text = __builtin_bswap64(text);
    std::memcpy(out, &text, sizeof text);
}

// How many of the last digits of a nonzero EightDigits word are zeros.
int TrailingZeroDigits(std::uint64_t digits) noexcept { return std::countl_zero(digits) / 8; }
#endif

// WriteTrimmedFixed's text by exact integer arithmetic, for every finite x
// below 2^64 in magnitude: x = m * 2^-k splits into the whole part m >> k and
// the fraction f / 2^k (f the low k bits of m), whose fifteen decimals of
// "%.15f" are f * 10^15 / 2^k rounded to the nearest integer, ties to even,
// as std::to_chars(fixed, 15) rounds; a carry out of the decimals adds one to
// the whole part. The trailing zeros of the decimals are never written.
// Answers the length, or 0 for the other values (NaN, infinities, 2^64 and
// above, or no 128-bit integer type).
std::size_t ExactTrimmedFixed(double x, char* out) noexcept {
#if defined(__SIZEOF_INT128__)
    constexpr std::uint64_t kScale = 1000000000000000ULL;  // 10^15
    std::uint64_t bits = 0;
    std::memcpy(&bits, &x, sizeof bits);
    const auto biased = static_cast<int>((bits >> 52) & 0x7FF);
    if (biased == 0x7FF) return 0;
    const std::uint64_t fraction = bits & ((1ULL << 52) - 1);
    const std::uint64_t m = biased == 0 ? fraction : fraction | (1ULL << 52);
    const int k = biased == 0 ? 1074 : 1075 - biased;  // x = m * 2^-k
    std::uint64_t whole = 0;
    std::uint64_t decimals = 0;
    if (k <= 0) {
        if (k < -11) return 0;  // 2^64 or more
        whole = m << -k;
    } else {
        whole = k < 64 ? m >> k : 0;
        const std::uint64_t f = k < 64 ? m & ((1ULL << k) - 1) : m;
        if (k < 128) {
            const Uint128 product = static_cast<Uint128>(f) * kScale;
            Uint128 q = product >> k;
            const Uint128 rest = product - (q << k);
            const Uint128 half = static_cast<Uint128>(1) << (k - 1);
            if (rest > half || (rest == half && (q & 1U) != 0)) ++q;
            decimals = static_cast<std::uint64_t>(q);
        }  // else f * 10^15 / 2^k lies below 2^-24 and rounds to 0
        if (decimals == kScale) {
            ++whole;
            decimals = 0;
        }
    }
    char* p = out;
    if ((bits >> 63) != 0) *p++ = '-';
    p = std::to_chars(p, p + 20, whole).ptr;
    *p++ = '.';
    if (decimals == 0) {
        *p++ = '0';
        return static_cast<std::size_t>(p - out);
    }
    // The fifteen decimals as seven and eight digits; the first of the
    // sixteen written is the zero in front of the seven, and is overwritten
    // by the point. Trailing zeros are not kept: when the last eight are all
    // zeros ("12.5", "0.0000001") they are not made at all.
    const auto low = static_cast<std::uint32_t>(decimals % 100000000);
    const std::uint64_t first = EightDigits(static_cast<std::uint32_t>(decimals / 100000000));
    WriteEight(first, p - 1);
    p[-1] = '.';
    std::size_t count = 0;
    if (low == 0) {
        count = 7 - static_cast<std::size_t>(TrailingZeroDigits(first));
    } else {
        const std::uint64_t last = EightDigits(low);
        WriteEight(last, p + 7);
        count = 15 - static_cast<std::size_t>(TrailingZeroDigits(last));
    }
    return static_cast<std::size_t>(p + count - out);
#else
    (void)x;
    (void)out;
    return 0;
#endif
}

}  // namespace

std::size_t WriteTrimmedFixed(double x, char* out) noexcept {
    if (const std::size_t n = ExactTrimmedFixed(x, out); n != 0) return n;
    auto n = static_cast<std::size_t>(std::to_chars(out, out + kFixedTextMax, x, std::chars_format::fixed, 15).ptr - out);
    while (n > 0 && out[n - 1] == '0') --n;
    if (n > 0 && out[n - 1] == '.') out[n++] = '0';
    return n;
}

}  // namespace varion::detail
