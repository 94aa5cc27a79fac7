// Text to value: the rules of every target type, read from the texts a user
// or a device description hands in.
#include "convert_test_util.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>

using namespace varion::test;

namespace {

constexpr long double kInf = std::numeric_limits<long double>::infinity();
constexpr long double kNaN = std::numeric_limits<long double>::quiet_NaN();
constexpr VARTYPE kBytes = VT_ARRAY | VT_UI1;
const std::nullopt_t kRefused = std::nullopt;  // the text is refused with -2

const std::string kZeros(5000, '0');  // long texts are read whole

struct ParseCase {
    std::string text;
    VARTYPE target;
    std::optional<long double> value;  // of the result, whose type is the target
};

// clang-format off
const ParseCase kNumberCases[] = {
    // Booleans: only an empty or blank text is false.
    {" \t ", VT_BOOL, 0}, {"false", VT_BOOL, 1}, {"0", VT_BOOL, 1},
    // Integers: prefixes in either case, misplaced signs, white space (the
    // bases and bounds themselves are swept elsewhere).
    {" 42 ", VT_I4, 42}, {"0X1f", VT_I4, 31}, {"0B101", VT_UI1, 5}, {"08", VT_I4, kRefused}, {"0x", VT_I4, 0},
    {"-0x1F", VT_I4, kRefused}, {"-", VT_I4, kRefused}, {"   ", VT_UI2, kRefused}, {"12abc", VT_I4, kRefused},
    {"0x1G", VT_I4, kRefused}, {"0x00000000000000000000001", VT_I8, 1},
    // Integers from decimal texts: read as a double, then converted (a NaN
    // passes the range check and gives 0).
    {"1,5", VT_I2, 2}, {".5", VT_I4, 1}, {"1e10", VT_I4, kRefused}, {"nan", VT_I4, 0}, {"inf", VT_I4, kRefused},
    {"0.5", VT_I4, kRefused},  // an octal text: "0" then ".5"
    // Floating values: the platform's names of the non-numbers, either separator, bases.
    {"1.#INF", VT_R8, kInf}, {"x-yINF", VT_R8, -kInf}, {"nan", VT_R4, kNaN}, {"blind", VT_R8, kNaN},
    {"", VT_R8, 0}, {"1e999", VT_R8, kInf}, {"1e-999", VT_R8, 0}, {" 12,5 ", VT_R4, 12.5},
    {"1.000,5", VT_R8, kRefused}, {"1,5,", VT_R8, kRefused}, {"0x10", VT_R8, 16}, {"010", VT_R8, 8},
    {"08.5", VT_R8, 8.5}, {"0xFFFFFFFFFFFFFFFF", VT_R8, -1}, {"5.", VT_R8, 5}, {"-.5E1", VT_R8, -5},
    {"+2,5e-1", VT_R8, 0.25}, {"1E+", VT_R8, kRefused}, {",", VT_R8, kRefused}, {"1 5", VT_R8, kRefused},
    {"0x1p3", VT_R8, kRefused}, {"1e39", VT_R4, kRefused},
    {"\xEF\xBC\x91", VT_R8, kRefused},  // a full-width digit one is not a digit
    // Long texts: underflow, a long mantissa, leading zeros (octal), overflow.
    {"0," + kZeros + "15", VT_R8, 0}, {"1" + kZeros + "e-5000", VT_R8, 1}, {kZeros + "12", VT_I4, 10},
    {"   " + std::string(400, '9') + ",5   ", VT_R8, kInf},
    // Types that no text converts to.
    {"5", VT_CY, kRefused}, {"5", VT_ARRAY | VT_I4, kRefused},
};

const struct {
    std::string text;
    std::optional<std::string> bytes;
} kByteCases[] = {
    {"1,,2", "\x01\x02"}, {"  ab ,Cd", "\xAB\xCD"}, {"0x01," + std::string(3000, ',') + kZeros + "2", "\x01\x02"},
    {"0x", std::string(1, '\0')}, {"7z, 0x1q", "\x07\x01"}, {"00000000FF", "\xFF"}, {"", ""}, {",,", ""},
    {"100", kRefused}, {"zz", kRefused}, {"1, ,2", kRefused}, {"+1", kRefused}, {" , ,", kRefused},
};
// clang-format on

TEST(TextToValue, EveryRuleOnItsTexts) {
    for (const char* locale : {"C", "de_DE.UTF-8"}) {
        ScopedCLocale scoped(locale);  // reading never depends on the locale
        for (const ParseCase& c : kNumberCases) {
            CVarion v(c.text.c_str());
            const std::string what = '"' + c.text.substr(0, 40) + "\" to " + std::to_string(c.target);
            ExpectChange(v, c.target, c.value ? RC_OK : RC_NOT_CONVERTIBLE, what);
            if (!c.value) continue;
            ASSERT_EQ(v.GetType(), c.target) << what;
            const long double got = NumberOf(v);
            if (std::isnan(*c.value)) {
                EXPECT_TRUE(std::isnan(got)) << what;
            } else {
                EXPECT_EQ(got, *c.value) << what;
                EXPECT_EQ(std::signbit(got), std::signbit(*c.value)) << what;
            }
        }
        for (const auto& c : kByteCases) {
            CVarion v(c.text.c_str());
            ExpectChange(v, kBytes, c.bytes ? RC_OK : RC_NOT_CONVERTIBLE, c.text.substr(0, 40));
            if (c.bytes) { EXPECT_EQ(ArrayBytes(v), *c.bytes) << c.text.substr(0, 40); }
        }
    }
}

// A string value is read up to its first zero code unit (a null string is
// the empty text), by SetType and by the conversion operator.
TEST(TextToValue, AStringIsReadUpToItsFirstZero) {
    // A text of nullopt is a null string; a refused text has the value 0.
    const struct { std::optional<OleString> text; VARTYPE target; double value; bool converts; } cases[] = {
        {std::nullopt, VT_R8, 0.0, true}, {OleString(OLESTR("12.5\0" "7"), 6), VT_R8, 12.5, true},
        {OleString(OLESTR("\0" "12"), 3), VT_R8, 0.0, true}, {OleString(OLESTR("x\0" "12"), 4), VT_R8, 0.0, false},
        {OleString(OLESTR("12\0" "3"), 4), VT_I4, 12.0, true},
    };
    for (const auto& c : cases) {
        CVarion v;
        VARIANT& var = varion::detail::Access::Var(v);
        var.bstrVal = c.text ? SysAllocStringLen(c.text->data(), static_cast<UINT>(c.text->size())) : nullptr;
        var.vt = VT_BSTR;
        if (c.target == VT_R8) { EXPECT_EQ(static_cast<double>(v), c.value); }
        ExpectChange(v, c.target, c.converts ? RC_OK : RC_NOT_CONVERTIBLE, Utf8(var.bstrVal));
        if (c.converts) { EXPECT_EQ(NumberOf(v), c.value); }
    }
}

}  // namespace
