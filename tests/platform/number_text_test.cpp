// The runtime's number readers and VariantChangeType's number texts.
#include <varion/platform/automation.h>

#include "platform/runtime_number.h"
#include "support/test_support.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>

using varion::detail::ReadDouble;
using varion::detail::ReadLong;
using varion::test::Utf8;

namespace {

TEST(RuntimeNumber, ReadDoubleWithTheGivenSeparators) {
    const double inf = std::numeric_limits<double>::infinity();
    const std::string longDigits(300, '1');  // beyond the stack buffer
    const struct { std::string text; const OLECHAR* separators; std::size_t consumed; double value; } rows[] = {
        {"5,25", OLESTR(","), 4, 5.25},   {"5.25", OLESTR(","), 1, 5.0},  // "." is no separator in German
        {"5.25", OLESTR(".,"), 4, 5.25},  {"  -1,5e2", OLESTR(","), 8, -150.0}, {"+,5", OLESTR(","), 3, 0.5},
        {"5,", OLESTR(","), 2, 5.0},      {",", OLESTR(","), 0, 0.0},     {"1e+", OLESTR(","), 1, 1.0},
        {"1E-2x", OLESTR(","), 4, 0.01},  {"-1e999", OLESTR("."), 6, -inf}, {"0,001e310", OLESTR(","), 9, 1e307},
        {"0,00001e400", OLESTR(","), 11, inf},  // beyond the range through the exponent
        {"-1000e-400", OLESTR(","), 10, -0.0},  // below it
        {"inf", OLESTR("."), 0, 0.0},     {"0x10", OLESTR("."), 1, 0.0},
        {longDigits + ",5", OLESTR(","), 302, 1.1111111111111111e299},
    };
    for (const auto& r : rows) {
        double value = -7.0;
        const CString text(r.text.c_str());
        EXPECT_EQ(ReadDouble(text.View(), r.separators, value), r.consumed) << r.text;
        if (std::isinf(r.value) || r.value == 0.0) EXPECT_EQ(std::memcmp(&value, &r.value, sizeof value), 0) << r.text;
        else EXPECT_DOUBLE_EQ(value, r.value) << r.text;
    }
}

TEST(RuntimeNumber, ReadLongAsWcstol) {
    const struct { const char* text; std::size_t consumed; long value; } rows[] = {
        {"  +12x", 5, 12}, {"-38+01", 3, -38}, {"-", 0, 0}, {"x1", 0, 0},
        {"99999999999", 11, 2147483647}, {"-99999999999999999999", 21, -2147483647 - 1},
    };
    for (const auto& r : rows) {
        long value = -7;
        EXPECT_EQ(ReadLong(CString(r.text).View(), value), r.consumed) << r.text;
        EXPECT_EQ(value, r.value) << r.text;
    }
}

// A VARIANT of type `vt` whose value field holds the bytes of `x`.
template <class T>
VARIANT Of(VARTYPE vt, T x) {
    VARIANT v{};
    v.vt = vt;
    std::memcpy(&v.llVal, &x, sizeof x);
    return v;
}

TEST(VariantChangeType, NumbersBecomeTextWithTheUserSeparator) {
    const char* const de = "de_DE.UTF-8";
    const char* const us = "en_US.UTF-8";
    const struct { const char* locale; VARIANT source; const char* text; } rows[] = {
        {de, Of(VT_R4, 1.5f), "1,5"},  {us, Of(VT_R4, 1.5f), "1.5"},  {"fr_FR.UTF-8", Of(VT_R8, -0.25), "-0,25"},
        {us, Of(VT_R4, 0.1f), "0.1"},  // seven significant digits of the single, fifteen of the double
        {us, Of(VT_R8, 1.0 / 3.0), "0.333333333333333"}, {de, Of(VT_R8, 1e20), "1E+20"}, {us, Of(VT_R8, 1e-5), "1E-05"},
        {us, Of(VT_I1, std::int8_t{-128}), "-128"},       {us, Of(VT_UI1, std::uint8_t{255}), "255"},
        {us, Of(VT_I2, std::int16_t{-32768}), "-32768"},  {us, Of(VT_UI2, std::uint16_t{65535}), "65535"},
        {de, Of(VT_I4, std::int32_t{-42}), "-42"},        {us, Of(VT_UI4, std::uint32_t{4294967295u}), "4294967295"},
        {us, Of(VT_I8, std::int64_t{-9007199254740992}), "-9007199254740992"},
        {us, Of(VT_UI8, std::uint64_t{18446744073709549568u}), "18446744073709549568"},
        {de, Of(VT_DATE, 46343.5), "17.11.2026 12:00:00"}, {us, Of(VT_EMPTY, 0), ""},
        {us, Of(VT_BOOL, VARIANT_TRUE), "-1"},  // no VARIANT_ALPHABOOL
    };
    int skipped = 0;
    for (const auto& r : rows) {
        varion::test::ScopedUserLocale user(r.locale);
        if (!user.Active()) {
            ++skipped;
            continue;
        }
        VARIANT result{};
        ASSERT_EQ(VariantChangeType(&result, &r.source, 0, VT_BSTR), S_OK) << r.text;
        ASSERT_EQ(result.vt, VT_BSTR);
        EXPECT_EQ(Utf8(result.bstrVal), r.text) << r.locale << " " << r.source.vt;
        VariantClear(&result);
    }
    if (skipped > 0) GTEST_SKIP() << skipped << " rows need a user locale the system does not have";
}

TEST(VariantChangeType, InPlaceCopyAndRefusals) {
    varion::test::ScopedUserLocale user("de_DE.UTF-8");
    VARION_REQUIRE_USER_LOCALE(user);
    VARIANT v = Of(VT_R4, 1.5f);
    ASSERT_EQ(VariantChangeType(&v, &v, 0, VT_BSTR), S_OK);  // source and destination alike
    EXPECT_EQ(Utf8(v.bstrVal), "1,5");
    VARIANT copy{};
    ASSERT_EQ(VariantChangeType(&copy, &v, 0, VT_BSTR), S_OK);  // same type: a copy
    EXPECT_NE(copy.bstrVal, v.bstrVal);
    EXPECT_EQ(Utf8(copy.bstrVal), "1,5");
    VariantClear(&copy);
    VARIANT untouched = Of(VT_I4, 7);
    // The stand-in changes types only into text; the system also parses.
    VARION_STANDIN_ONLY(EXPECT_EQ(VariantChangeType(&untouched, &v, 0, VT_I4), DISP_E_TYPEMISMATCH));
    const VARIANT badDate = Of(VT_DATE, 1e10);
    EXPECT_EQ(VariantChangeType(&untouched, &badDate, 0, VT_BSTR), E_INVALIDARG);
    VARION_STANDIN_ONLY(EXPECT_EQ(VariantChangeType(nullptr, &v, 0, VT_BSTR), E_INVALIDARG));
    VARION_STANDIN_ONLY(EXPECT_EQ(VariantChangeType(&untouched, nullptr, 0, VT_BSTR), E_INVALIDARG));
    EXPECT_EQ(untouched.vt, VT_I4);  // every refusal left it alone
    EXPECT_EQ(untouched.lVal, 7);
    VariantClear(&v);
}

}  // namespace
