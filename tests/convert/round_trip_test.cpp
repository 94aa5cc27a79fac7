// Every text the library writes for a number or a byte array reads back as
// the same value (floating values to within the fifteen decimals written),
// under a locale with a decimal point and one with a decimal comma.
#include "convert_test_util.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

using namespace varion::test;

namespace {

// Bounds, small values, random bit patterns of T and, for floating types,
// powers of two and ten and their neighbours (the integer bounds in every
// base are swept elsewhere).
template <class T>
std::vector<T> Samples() {
    using L = std::numeric_limits<T>;
    std::vector<T> s = {L::min(), L::max(), L::lowest(), T(0), T(1), static_cast<T>(-1)};
    if constexpr (std::is_floating_point_v<T>) {
        s.insert(s.end(), {L::denorm_min(), -L::denorm_min(), L::epsilon(), T(-0.0), T(0.1), T(2.5), L::infinity(),
                           -L::infinity(), L::quiet_NaN()});
        for (int e = L::min_exponent - 1; e <= L::max_exponent - 1; ++e) s.insert(s.end(), {std::ldexp(T(1), e), -std::ldexp(T(1), e)});
        for (T p = 1; std::isfinite(p); p *= 10) s.insert(s.end(), {p, -p, T(1) / p, std::nextafter(p, T(0))});
    }
    std::mt19937_64 random(20240229);
    using Bits = std::conditional_t<sizeof(T) == 8, std::uint64_t,
                 std::conditional_t<sizeof(T) == 4, std::uint32_t,
                 std::conditional_t<sizeof(T) == 2, std::uint16_t, std::uint8_t>>>;
    for (int k = 0; k < 2000; ++k) s.push_back(std::bit_cast<T>(static_cast<Bits>(random())));
    return s;
}

template <VARTYPE type>
void RoundTrip(const char* locale) {
    using T = varion::detail::NumericT<type>;
    for (const T x : Samples<T>()) {
        CVarion v(Raw(type, x));
        ASSERT_EQ(v.SetType(VT_BSTR), RC_OK) << type;
        const std::string text = StringOf(v);
        const std::string what = text + " as type " + std::to_string(type) + " under " + locale;
        // Decimal texts above 2^63 - 1 are refused for VT_UI8 (such values
        // are read from hexadecimal, octal or binary texts).
        const bool refused = std::is_same_v<T, std::uint64_t> && static_cast<long double>(x) > 9223372036854775807.0L;
        ExpectChange(v, type, refused ? RC_NOT_CONVERTIBLE : RC_OK, what);
        if (refused) continue;
        const T back = FieldOf<T>(v);
        if constexpr (std::is_floating_point_v<T>) {
            if (std::isnan(x)) {
                EXPECT_TRUE(std::isnan(back)) << what;
            } else if (std::isinf(x) || std::isinf(back) || std::fabs(x) >= (sizeof(T) == 4 ? T(1e-6) : T(16))) {
                // Wide enough values have no digits beyond the fifteenth
                // decimal to lose: they read back exactly.
                EXPECT_EQ(back, x) << what;
            } else {
                // The text holds x rounded to fifteen decimals; reading it
                // back rounds once more to the type.
                const long double tolerance = 5e-16L + std::fabs(static_cast<long double>(x)) * std::numeric_limits<T>::epsilon();
                EXPECT_LE(std::fabs(static_cast<long double>(back) - x), tolerance) << what;
            }
        } else {
            EXPECT_EQ(back, x) << what;
        }
    }
}

TEST(RoundTrip, EveryNumericTypeUnderPointAndCommaLocales) {
    for (const char* locale : {"C", "de_DE.UTF-8"}) {
        ScopedCLocale scoped(locale);
        ForEachNumericType([&]<VARTYPE VT>() {
            if constexpr (VT != VT_BOOL) RoundTrip<VT>(locale);
        });
    }
}

TEST(RoundTrip, ByteArrays) {
    std::mt19937 random(7);
    for (int n = 0; n < 300; ++n) {
        std::string bytes(static_cast<std::size_t>(n % 40), '\0');
        for (char& b : bytes) b = static_cast<char>(random());
        CVarion v = ByteArray(bytes);
        ASSERT_EQ(v.SetType(VT_BSTR), RC_OK);
        const std::string text = StringOf(v);
        ASSERT_EQ(v.SetType(VT_ARRAY | VT_UI1), RC_OK) << text;
        EXPECT_EQ(ArrayBytes(v), bytes) << text;
    }
}

}  // namespace
