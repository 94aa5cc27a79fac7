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

// Whether WriteTrimmedFixed writes "%.15f" of x as std::to_chars does, its
// trailing zeros removed and one put back after a bare point.
bool FixedTextMatches(double x) {
    char buffer[kFixedTextMax];
    const auto r = std::to_chars(buffer, buffer + sizeof buffer, x, std::chars_format::fixed, 15);
    std::string reference(buffer, r.ptr);
    while (!reference.empty() && reference.back() == '0') reference.pop_back();
    if (!reference.empty() && reference.back() == '.') reference.push_back('0');
    return std::string(buffer, varion::detail::WriteTrimmedFixed(x, buffer)) == reference;
}

TEST(NumberFastPaths, FixedTextMatchesToChars) {
    using L = std::numeric_limits<double>;
    // Carries into the whole part, the smallest decimals, the ends of the
    // integer arithmetic (2^53, 2^64) and what lies beyond it.
    const double edges[] = {
        0.0, -0.0, 1e-15, 5e-16, 4.9999999999999996e-16, 9.5e-16, 0.9999999999999995, 0.99999999999999956,
        999999.9999999999, std::ldexp(1.0, -50), std::ldexp(1.0, 53) - 1, std::ldexp(1.0, 53), std::ldexp(1.0, 63),
        std::ldexp(1.0, 64) - 2048, std::ldexp(1.0, 64), -std::ldexp(1.0, 64), 1e20, 1e300, L::max(), L::min(),
        L::denorm_min(), 4503599627370495.5, L::infinity(), -L::infinity(), L::quiet_NaN()};
    for (const double x : edges) EXPECT_TRUE(FixedTextMatches(x)) << x;

    int failures = 0;
    // Random doubles from 2^-80 to 2^80, both signs: the whole range the
    // integer arithmetic covers and some of what it hands on.
    std::mt19937_64 random(20261123);
    for (int n = 0; n < 300000 && failures < 10; ++n) {
        const std::uint64_t bits = (random() & 0x800FFFFFFFFFFFFFULL) | ((1023 - 80 + random() % 161) << 52);
        double x = 0;
        std::memcpy(&x, &bits, sizeof x);
        if (!FixedTextMatches(x) && ++failures) ADD_FAILURE() << "bits " << std::hex << bits;
    }
    // Odd multiples of 2^-16 lie halfway between two texts of fifteen
    // decimals: the even last digit wins.
    for (std::uint64_t a = 1; a < 200000 && failures < 10; a += 2)
        if (!FixedTextMatches(std::ldexp(static_cast<double>(a), -16)) && ++failures) ADD_FAILURE() << a << " / 2^16";
}

// Random decimal texts: short ones over an alphabet of number characters,
// and long ones of up to 45 characters, mostly digits, sometimes with a code
// unit next to the digits ('/', ':', U+0130, U+3031, U+FF10) or a separator
// or exponent in an odd place. Whenever the shortcut on the UTF-16 text
// reads one, the full rule (std::from_chars on the prepared text) must give
// the same answer.
TEST(NumberFastPaths, ShortcutAndFullRuleAgreeOnRandomTexts) {
    std::mt19937 random(4242);
    const char alphabet[] = "0123456789+-.,eE x";
    const OLECHAR odd[] = {OLESTR('/'), OLESTR(':'), OLECHAR(0x0130), OLECHAR(0x3031), OLECHAR(0xFF10),
                           OLESTR('.'), OLESTR(','), OLESTR('e'),     OLESTR('-'),     OLESTR(' ')};
    const auto digits = [&](OleString& text, std::size_t count) {
        for (std::size_t k = 0; k < count; ++k) text += static_cast<OLECHAR>('0' + random() % 10);
    };
    int read = 0;
    for (int n = 0; n < 120000; ++n) {
        OleString text;
        if (n % 6 == 0) {
            for (std::size_t k = 1 + random() % 12; k > 0; --k) text += OLECHAR(alphabet[random() % (sizeof alphabet - 1)]);
        } else {
            if (random() % 4 == 0) text += OLESTR('-');
            digits(text, random() % 22);
            if (random() % 3 != 0) {
                text += random() % 2 ? OLESTR('.') : OLESTR(',');
                digits(text, random() % 22);
            }
            if (random() % 3 == 0) {
                text += random() % 2 ? OLESTR("E-") : OLESTR("E");
                text += CString(std::to_string(random() % 40).c_str()).View();
            }
            if (!text.empty() && random() % 5 == 0) text[random() % text.size()] = odd[random() % std::size(odd)];
        }
        const OleStringView trimmed = varion::detail::TrimmedView(text);
        for (const VARTYPE type : {VT_R4, VT_R8}) {
            VARIANT viaShortcut{};
            long shortcutCode = RC_OK;
            if (!varion::detail::PlainDecimalFromText(trimmed, type, viaShortcut, shortcutCode)) continue;
            ++read;
            varion::detail::NarrowText prepared;
            ASSERT_TRUE(prepared.Assign(text));
            VARIANT viaRule{};
            const long ruleCode = varion::detail::FloatingFromText(prepared.Data(), prepared.Size(), type, viaRule);
            const std::string what = CString(text.c_str()).ToUtf8();
            ASSERT_EQ(shortcutCode, ruleCode) << what;
            if (ruleCode == RC_OK) {
                ASSERT_EQ(viaShortcut.vt, viaRule.vt) << what;
                ASSERT_EQ(viaShortcut.llVal, viaRule.llVal) << what;
            }
        }
    }
    EXPECT_GT(read, 50000);  // the generator does reach the shortcut
}

}  // namespace
