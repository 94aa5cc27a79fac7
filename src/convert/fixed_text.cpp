// Doubles written as "%.15f" with the trailing zeros trimmed: the text of
// every double below 2^64 in magnitude by exact integer arithmetic, the rest
// through std::to_chars.
#include "convert/number_text.h"

#include <array>
#include <charconv>
#include <cstdint>
#include <cstring>

namespace varion::detail {
namespace {

#if defined(__SIZEOF_INT128__)
__extension__ typedef unsigned __int128 Uint128;

// The two-digit texts "00" to "99", one after the other.
constexpr auto kDigitPairs = [] {
    std::array<char, 200> pairs{};
    for (std::size_t i = 0; i < 100; ++i) {
        pairs[2 * i] = static_cast<char>('0' + i / 10);
        pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
    }
    return pairs;
}();

// Writes the `count` last decimal digits of n, with leading zeros.
void WriteDigits(std::uint64_t n, std::size_t count, char* out) noexcept {
    char* end = out + count;
    for (; count >= 2; count -= 2, n /= 100) {
        end -= 2;
        std::memcpy(end, &kDigitPairs[static_cast<std::size_t>(2 * (n % 100))], 2);
    }
    if (count == 1) *--end = static_cast<char>('0' + n % 10);
}
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
    // At most fourteen trailing zeros: steps of 8, 4, 2 and 1 drop them all.
    struct ZeroStep {
        std::uint64_t power;
        std::size_t digits;
    };
    constexpr ZeroStep kZeroSteps[] = {{100000000ULL, 8}, {10000ULL, 4}, {100ULL, 2}, {10ULL, 1}};
    std::size_t count = 15;
    for (const ZeroStep& step : kZeroSteps) {
        if (decimals % step.power == 0) {
            decimals /= step.power;
            count -= step.digits;
        }
    }
    WriteDigits(decimals, count, p);
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
