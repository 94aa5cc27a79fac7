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

std::string Digits(Int128 magnitude, int base) {
    if (magnitude == 0) return "0";
    std::string s;
    for (; magnitude > 0; magnitude /= base) s.insert(s.begin(), "0123456789ABCDEF"[static_cast<int>(magnitude % base)]);
    return s;
}

std::string Prefix(int base) {
    switch (base) {
    case 2: return "0b";
    case 8: return "0";
    case 16: return "0x";
    default: return "";
    }
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

Int128 Stored(const CVarion& v) {
    switch (v.GetType()) {
    case VT_I1: return FieldOf<std::int8_t>(v);
    case VT_UI1: return FieldOf<std::uint8_t>(v);
    case VT_I2: return FieldOf<std::int16_t>(v);
    case VT_UI2: return FieldOf<std::uint16_t>(v);
    case VT_I4: return FieldOf<std::int32_t>(v);
    case VT_UI4: return FieldOf<std::uint32_t>(v);
    case VT_I8: return FieldOf<std::int64_t>(v);
    default: return FieldOf<std::uint64_t>(v);
    }
}

TEST(IntegerRule, EveryBaseAndSignAtEveryBound) {
    int checked = 0;
    for (const IntegerType& t : kTypes) {
        const Int128 span = static_cast<Int128>(1) << t.bits;
        // Magnitudes around both bounds of this type and of the widest types.
        const Int128 around[] = {0,        1,        span / 2 - 1, span / 2,      span / 2 + 1,  span - 1,
                                 span,     span + 1, kTwo64 / 2 - 1, kTwo64 / 2, kTwo64 / 2 + 1, kTwo64 - 1,
                                 kTwo64,   kTwo64 * 16};
        for (const Int128 magnitude : around) {
            for (const int base : {2, 8, 10, 16}) {
                for (const char* sign : {"", "+", "-"}) {
                    const std::string text = Prefix(base) + sign + Digits(magnitude, base);
                    const Int128 x = *sign == '-' ? -magnitude : magnitude;
                    const auto expected = Expected(t, x, base);
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
                    EXPECT_TRUE(Stored(v) == *expected)
                        << text << " to " << t.type << " stored " << static_cast<long long>(Stored(v));
                }
            }
        }
    }
    EXPECT_EQ(checked, 8 * 14 * 4 * 3);
}

TEST(IntegerRule, LowerCaseAndUpperCasePrefixesAndDigitsAgree) {
    const char* pairs[][2] = {{"0xabcdef", "0XABCDEF"}, {"0b1010", "0B1010"}, {"0x7fFf", "0X7FFF"}};
    for (const auto& pair : pairs) {
        CVarion lower(pair[0]);
        CVarion upper(pair[1]);
        ASSERT_EQ(lower.SetType(VT_I8), RC_OK);
        ASSERT_EQ(upper.SetType(VT_I8), RC_OK);
        EXPECT_EQ(FieldOf<std::int64_t>(lower), FieldOf<std::int64_t>(upper)) << pair[0];
    }
}

}  // namespace
