// The integer rule at every type's bounds, in every base and with every sign
// placement, against the fit rule computed in 128-bit arithmetic.
#include "convert_test_util.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

using namespace varion::test;

namespace {

__extension__ typedef __int128 Int128;
constexpr Int128 kTwo64 = static_cast<Int128>(1) << 64;

struct IntegerType {
    VARTYPE type;
    int bits;
    bool isSigned;
};

constexpr IntegerType kTypes[] = {
    {VT_I1, 8, true},   {VT_UI1, 8, false},  {VT_I2, 16, true}, {VT_UI2, 16, false},
    {VT_I4, 32, true},  {VT_UI4, 32, false}, {VT_I8, 64, true}, {VT_UI8, 64, false},
};

// The text of `magnitude` in `base`, its prefix and the sign after it.
std::string Text(Int128 magnitude, int base, const char* sign) {
    std::string digits;
    do digits.insert(digits.begin(), "0123456789ABCDEF"[static_cast<int>(magnitude % base)]);
    while ((magnitude /= base) > 0);
    const char* prefix = base == 2 ? "0b" : base == 8 ? "0" : base == 16 ? "0x" : "";
    return prefix + (sign + digits);
}

// What the integer rule stores for the exact value x of a text in `base`,
// as the two's complement pattern of the type's width; nullopt when refused.
std::optional<Int128> Expected(const IntegerType& t, Int128 x, int base) {
    const Int128 span = static_cast<Int128>(1) << t.bits;
    const Int128 lo = t.isSigned ? -(span / 2) : 0;
    const Int128 hi = t.isSigned ? span / 2 - 1 : span - 1;
    if (t.type == VT_UI8) {
        if (x < 0) return std::nullopt;
        if (base == 10) return x <= (kTwo64 / 2 - 1) ? std::optional<Int128>(x) : std::nullopt;
        return x < kTwo64 ? x : kTwo64 - 1;  // saturated
    }
    if (x >= lo && x <= hi) return x;
    const bool patternBase = t.type == VT_I8 ? (base == 2 || base == 16) : base != 10;
    if (t.isSigned && patternBase && x > hi && x < span) return x - span;
    return std::nullopt;
}

TEST(IntegerRule, EveryBaseAndSignAtEveryBound) {
    int checked = 0;
    for (const IntegerType& t : kTypes) {
        const Int128 span = static_cast<Int128>(1) << t.bits;
        // Magnitudes around both bounds of this type and of the widest types.
        const Int128 around[] = {0,    1,        span / 2 - 1,   span / 2,   span / 2 + 1,   span - 1,
                                 span, span + 1, kTwo64 / 2 - 1, kTwo64 / 2, kTwo64 / 2 + 1, kTwo64 - 1,
                                 kTwo64, kTwo64 * 16};
        for (const Int128 magnitude : around) {
            for (const int base : {2, 8, 10, 16}) {
                for (const char* sign : {"", "+", "-"}) {
                    const std::string text = Text(magnitude, base, sign);
                    const auto expected = Expected(t, *sign == '-' ? -magnitude : magnitude, base);
                    CVarion v(text.c_str());
                    const long code = v.SetType(t.type);
                    ++checked;
                    if (!expected) {
                        EXPECT_EQ(code, RC_NOT_CONVERTIBLE) << text << " to " << t.type;
                        EXPECT_EQ(v.GetType(), VT_BSTR);
                        continue;
                    }
                    ASSERT_EQ(code, RC_OK) << text << " to " << t.type;
                    ASSERT_EQ(v.GetType(), t.type);
                    EXPECT_EQ(NumberOf(v), static_cast<long double>(*expected)) << text << " to " << t.type;
                }
            }
        }
    }
    EXPECT_EQ(checked, 8 * 14 * 4 * 3);
}

}  // namespace
