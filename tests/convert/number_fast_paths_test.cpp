// The exact fast paths of the number texts against the standard library:
// doubles written as "%.15f" by integer arithmetic, decimal texts read with
// one correctly rounded operation and four UTF-16 digits at a time. Each
// must give what std::to_chars / std::from_chars give, for every input.
#include "convert/number_text.h"

#include "convert_test_util.h"

#include <gtest/gtest.h>

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <string>

namespace {

using varion::detail::kFixedTextMax;
using varion::detail::WriteTrimmedFixed;

// "%.15f" by std::to_chars, its trailing zeros removed and one put back
// after a bare point.
std::string TrimmedReference(double x) {
    char buffer[kFixedTextMax];
    const auto r = std::to_chars(buffer, buffer + sizeof buffer, x, std::chars_format::fixed, 15);
    std::string text(buffer, r.ptr);
    while (!text.empty() && text.back() == '0') text.pop_back();
    if (!text.empty() && text.back() == '.') text.push_back('0');
    return text;
}

std::string Written(double x) {
    char buffer[kFixedTextMax];
    return std::string(buffer, WriteTrimmedFixed(x, buffer));
}

double FromBits(std::uint64_t bits) {
    double x = 0;
    std::memcpy(&x, &bits, sizeof x);
    return x;
}

TEST(NumberFastPaths, FixedTextMatchesToCharsAtTheEdges) {
    const double edges[] = {
        0.0, -0.0, 1.0, -1.0, 0.5, 0.1, 0.2, 0.3, 1e-15, 5e-16, 4.9999999999999996e-16, 1.5e-15, 9.5e-16,
        0.9999999999999995, 0.99999999999999956, 0.9999999999999994, 999999.9999999999, 12.5, 1234567.891, 1e-7,
        std::ldexp(1.0, -16), 3 * std::ldexp(1.0, -16), std::ldexp(1.0, -17), std::ldexp(1.0, -50),
        std::ldexp(1.0, 52), std::ldexp(1.0, 53) - 1, std::ldexp(1.0, 53), std::ldexp(1.0, 63),
        std::ldexp(1.0, 64) - 2048, std::ldexp(1.0, 64), -std::ldexp(1.0, 64), 1e19, 1.8446744073709552e19, 1e20,
        1e300, std::numeric_limits<double>::max(), std::numeric_limits<double>::min(),
        std::numeric_limits<double>::denorm_min(), -std::numeric_limits<double>::denorm_min(), 2.220446049250313e-16,
        123456789.123456789, 0.000123456789012345, 4503599627370495.5, 4503599627370496.5,
        std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
        std::numeric_limits<double>::quiet_NaN()};
    for (const double x : edges) EXPECT_EQ(Written(x), TrimmedReference(x)) << x;
}

TEST(NumberFastPaths, FixedTextMatchesToCharsOnRandomValuesAndTies) {
    std::mt19937_64 random(20261123);
    int failures = 0;
    for (int n = 0; n < 300000 && failures < 10; ++n) {
        // Exponents from 2^-80 to 2^80, both signs: the whole range the
        // integer arithmetic covers and some of what it hands on.
        const std::uint64_t exponent = 1023 - 80 + random() % 161;
        const std::uint64_t bits = (random() & 0x800FFFFFFFFFFFFFULL) | (exponent << 52);
        const double x = FromBits(bits);
        if (Written(x) != TrimmedReference(x)) {
            ++failures;
            ADD_FAILURE() << "bits " << std::hex << bits;
        }
    }
    // Odd multiples of 2^-16 lie halfway between two texts of fifteen
    // decimals: the even last digit wins.
    for (std::uint64_t a = 1; a < 200000 && failures < 10; a += 2) {
        const double x = std::ldexp(static_cast<double>(a), -16);
        if (Written(x) != TrimmedReference(x)) {
            ++failures;
            ADD_FAILURE() << a << " / 2^16";
        }
    }
    EXPECT_EQ(failures, 0);
}

// Decimal texts of up to 45 characters, mostly digits, sometimes with a code
// unit next to the digits ('/', ':', U+0130, U+3031, U+FF10) or a separator
// or exponent in an odd place. Whenever the shortcut reads one, the full rule
// (std::from_chars on the prepared text) must read the same double.
TEST(NumberFastPaths, LongDecimalTextsMatchTheFullRule) {
    std::mt19937 random(4242);
    const OLECHAR odd[] = {OLESTR('/'), OLESTR(':'), OLECHAR(0x0130), OLECHAR(0x3031), OLECHAR(0xFF10),
                           OLESTR('.'), OLESTR(','), OLESTR('e'), OLESTR('-'), OLESTR(' ')};
    int read = 0;
    for (int n = 0; n < 100000; ++n) {
        OleString text;
        if (random() % 4 == 0) text += OLESTR('-');
        const std::size_t whole = random() % 22;
        for (std::size_t k = 0; k < whole; ++k) text += static_cast<OLECHAR>('0' + random() % 10);
        if (random() % 3 != 0) {
            text += random() % 2 ? OLESTR('.') : OLESTR(',');
            const std::size_t decimals = random() % 22;
            for (std::size_t k = 0; k < decimals; ++k) text += static_cast<OLECHAR>('0' + random() % 10);
        }
        if (random() % 3 == 0) {
            text += OLESTR('E');
            if (random() % 2) text += OLESTR('-');
            text += CString(std::to_string(random() % 40).c_str()).View();
        }
        if (!text.empty() && random() % 5 == 0) text[random() % text.size()] = odd[random() % std::size(odd)];
        for (const VARTYPE type : {VT_R4, VT_R8}) {
            VARIANT viaShortcut{};
            long shortcutCode = RC_OK;
            if (!varion::detail::PlainDecimalFromText(text, type, viaShortcut, shortcutCode)) continue;
            ++read;
            varion::detail::NarrowText prepared;
            ASSERT_TRUE(prepared.Assign(text));
            VARIANT viaRule{};
            const long ruleCode = varion::detail::FloatingFromText(prepared.Data(), prepared.Size(), type, viaRule);
            ASSERT_EQ(shortcutCode, ruleCode) << CString(text.c_str()).ToUtf8();
            if (ruleCode == RC_OK) {
                ASSERT_EQ(viaShortcut.vt, viaRule.vt);
                ASSERT_EQ(viaShortcut.llVal, viaRule.llVal) << CString(text.c_str()).ToUtf8();
            }
        }
    }
    EXPECT_GT(read, 50000);  // the generator does reach the shortcut
}

// A string value is read up to its first zero code unit, also now that a
// plain number is first looked for in the whole string.
TEST(NumberFastPaths, AStringValueIsReadUpToItsFirstZero) {
    const struct {
        OleString text;
        double value;
        bool converts;
    } cases[] = {
        {OleString(OLESTR("12.5")), 12.5, true},
        {OleString(OLESTR("12.5\0" "7"), 6), 12.5, true},
        {OleString(OLESTR(" 1,25 \0x"), 8), 1.25, true},
        {OleString(OLESTR("\0" "12"), 3), 0.0, true},  // the empty text reads as 0.0
        {OleString(OLESTR("12\0" ".5"), 5), 12.0, true},
        {OleString(OLESTR("x\0" "12"), 4), 0.0, false},
    };
    for (const auto& c : cases) {
        CVarion v;
        VARIANT& var = varion::detail::Access::Var(v);
        var.bstrVal = SysAllocStringLen(c.text.data(), static_cast<UINT>(c.text.size()));
        var.vt = VT_BSTR;
        EXPECT_EQ(static_cast<double>(v), c.value) << c.text.size();
        EXPECT_EQ(v.SetType(VT_R8) == RC_OK, c.converts) << c.text.size();
        if (c.converts) {
            EXPECT_EQ(varion::test::FieldOf<double>(v), c.value);
        }
    }
}

}  // namespace
