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

constexpr const char* kLocales[] = {"C", "en_US.UTF-8", "de_DE.UTF-8"};

// Bounds, small values, powers of two and ten (and their neighbours), and
// random bit patterns of T.
template <class T>
std::vector<T> Samples() {
    using L = std::numeric_limits<T>;
    std::vector<T> s = {L::min(), L::max(), L::lowest(), T(0), T(1)};
    if constexpr (std::is_signed_v<T>) s.push_back(T(-1));
    if constexpr (std::is_floating_point_v<T>) {
        s.insert(s.end(), {L::denorm_min(), -L::denorm_min(), L::epsilon(), T(-0.0), T(0.1), T(2.5), T(-2.5),
                           L::infinity(), -L::infinity(), L::quiet_NaN()});
        for (int e = L::min_exponent - 1; e <= L::max_exponent - 1; ++e)
            for (const T sign : {T(1), T(-1)}) s.push_back(sign * std::ldexp(T(1), e));
        for (T p = 1; std::isfinite(p); p *= 10) s.insert(s.end(), {p, -p, T(1) / p, std::nextafter(p, T(0))});
    } else {
        for (int b = 0; b < L::digits; ++b) {
            const T p = static_cast<T>(T(1) << b);
            s.insert(s.end(), {p, static_cast<T>(p - 1), static_cast<T>(p + 1)});
            if constexpr (std::is_signed_v<T>) s.push_back(static_cast<T>(-p));
        }
        for (T p = 1; p <= L::max() / 10; p = static_cast<T>(p * 10)) s.insert(s.end(), {p, static_cast<T>(p + 1)});
    }
    std::mt19937_64 random(20240229);
    using Bits = std::conditional_t<sizeof(T) == 8, std::uint64_t,
                                    std::conditional_t<sizeof(T) == 4, std::uint32_t,
                                                       std::conditional_t<sizeof(T) == 2, std::uint16_t, std::uint8_t>>>;
    for (int k = 0; k < 2000; ++k) s.push_back(std::bit_cast<T>(static_cast<Bits>(random())));
    return s;
}

template <class T>
bool BackIsSame(T x, T back) {
    if constexpr (std::is_floating_point_v<T>) {
        if (std::isnan(x)) return std::isnan(back);
        if (std::isinf(x) || std::isinf(back)) return x == back;
        // The text holds x rounded to fifteen decimals; reading it back
        // rounds once more to the type.
        const long double tolerance = 5e-16L + std::fabs(static_cast<long double>(x)) * std::numeric_limits<T>::epsilon();
        return std::fabs(static_cast<long double>(back) - static_cast<long double>(x)) <= tolerance;
    } else {
        return x == back;
    }
}

template <class T>
void RoundTrip(VARTYPE type) {
    for (const char* locale : kLocales) {
        ScopedCLocale scoped(locale);
        for (const T x : Samples<T>()) {
            CVarion v(varion::test::Raw(type, x));
            ASSERT_EQ(v.SetType(VT_BSTR), RC_OK) << type;
            const std::string text = StringOf(v);
            if constexpr (std::is_same_v<T, std::uint64_t>) {
                // Decimal texts above 2^63 - 1 are refused for VT_UI8 (such
                // values are read from hexadecimal, octal or binary texts).
                if (x > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) {
                    EXPECT_EQ(v.SetType(type), RC_NOT_CONVERTIBLE) << text;
                    EXPECT_EQ(StringOf(v), text);
                    continue;
                }
            }
            ASSERT_EQ(v.SetType(type), RC_OK) << text << " under " << locale;
            const T back = FieldOf<T>(v);
            EXPECT_TRUE(BackIsSame(x, back)) << text << " under " << locale << " read back as " << +back;
            // Wide enough values have no digits beyond the fifteenth decimal
            // to lose: they read back exactly.
            if constexpr (std::is_floating_point_v<T>) {
                if (std::isfinite(x) && std::fabs(x) >= (sizeof(T) == 4 ? T(1e-6) : T(16))) {
                    EXPECT_EQ(back, x) << text;
                }
            }
        }
    }
}

TEST(RoundTrip, I1) { RoundTrip<std::int8_t>(VT_I1); }
TEST(RoundTrip, UI1) { RoundTrip<std::uint8_t>(VT_UI1); }
TEST(RoundTrip, I2) { RoundTrip<std::int16_t>(VT_I2); }
TEST(RoundTrip, UI2) { RoundTrip<std::uint16_t>(VT_UI2); }
TEST(RoundTrip, I4) { RoundTrip<std::int32_t>(VT_I4); }
TEST(RoundTrip, UI4) { RoundTrip<std::uint32_t>(VT_UI4); }
TEST(RoundTrip, I8) { RoundTrip<std::int64_t>(VT_I8); }
TEST(RoundTrip, UI8) { RoundTrip<std::uint64_t>(VT_UI8); }
TEST(RoundTrip, R4) { RoundTrip<float>(VT_R4); }
TEST(RoundTrip, R8) { RoundTrip<double>(VT_R8); }

TEST(RoundTrip, CommaLocaleReallyWritesAComma) {
    ScopedCLocale scoped("de_DE.UTF-8");
    CVarion v(0.75);
    ASSERT_EQ(v.SetType(VT_BSTR), RC_OK);
    EXPECT_EQ(StringOf(v), "0,75");
}

TEST(RoundTrip, BooleanTextsBothReadAsTrue) {
    // Only an empty text is false, so the text "false" reads back as true.
    for (const bool b : {true, false}) {
        CVarion v(b);
        ASSERT_EQ(v.SetType(VT_BSTR), RC_OK);
        ASSERT_EQ(v.SetType(VT_BOOL), RC_OK);
        EXPECT_EQ(FieldOf<std::uint8_t>(v), 1);
    }
}

TEST(RoundTrip, ByteArrays) {
    std::mt19937 random(7);
    for (int n = 0; n < 300; ++n) {
        std::string bytes(static_cast<std::size_t>(n % 40), '\0');
        for (char& b : bytes) b = static_cast<char>(random());
        CVarion v(static_cast<unsigned short>(VT_UI1), 0L, 0L);
        for (std::size_t i = 0; i < bytes.size(); ++i) v.SetElementValue(&bytes[i], static_cast<long>(i));
        ASSERT_EQ(v.SetType(VT_BSTR), RC_OK);
        const std::string text = StringOf(v);
        ASSERT_EQ(v.SetType(VT_ARRAY | VT_UI1), RC_OK) << text;
        EXPECT_EQ(ArrayBytes(v), bytes) << text;
    }
}

}  // namespace
