// The runtime's number readers and VariantChangeType's number texts.
#include <varion/platform/automation.h>

#include "platform/runtime_number.h"
#include "support/test_support.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

using varion::detail::ReadDouble;
using varion::detail::ReadLong;
using varion::test::ScopedEnv;
using varion::test::Utf8;

namespace {

TEST(RuntimeNumber, ReadDoubleWithTheGivenSeparators) {
    struct Row {
        const char* text;
        const OLECHAR* separators;
        std::size_t consumed;
        double value;
    };
    const double inf = std::numeric_limits<double>::infinity();
    const Row rows[] = {
        {"5,25", OLESTR(","), 4, 5.25},
        {"5.25", OLESTR(","), 1, 5.0},  // "." is no separator in German
        {"5.25", OLESTR(".,"), 4, 5.25},
        {"5,25", OLESTR("."), 1, 5.0},
        {"  -1,5e2", OLESTR(","), 8, -150.0},
        {"+,5", OLESTR(","), 3, 0.5},
        {"5,", OLESTR(","), 2, 5.0},
        {",", OLESTR(","), 0, 0.0},
        {"", OLESTR(","), 0, 0.0},
        {"-", OLESTR(","), 0, 0.0},
        {"e5", OLESTR(","), 0, 0.0},
        {"1e", OLESTR(","), 1, 1.0},
        {"1e+", OLESTR(","), 1, 1.0},
        {"1E-2x", OLESTR(","), 4, 0.01},
        {"0,250e1", OLESTR(","), 7, 2.5},
        {"1,2,3", OLESTR(","), 3, 1.2},
        {"1e999", OLESTR("."), 5, inf},
        {"-1e999", OLESTR("."), 6, -inf},
        {"1e-999", OLESTR("."), 6, 0.0},
        {"0,001e310", OLESTR(","), 9, 1e307},
        {"0,00001e400", OLESTR(","), 11, inf},  // beyond the range through the exponent
        {"-1000e-400", OLESTR(","), 10, -0.0},  // below it
        {"inf", OLESTR("."), 0, 0.0},
        {"nan", OLESTR("."), 0, 0.0},
        {"0x10", OLESTR("."), 1, 0.0},
    };
    for (const Row& r : rows) {
        double value = -7.0;
        const CString text(r.text);
        EXPECT_EQ(ReadDouble(text.View(), r.separators, value), r.consumed) << r.text;
        if (std::isinf(r.value)) EXPECT_EQ(value, r.value) << r.text;
        else EXPECT_DOUBLE_EQ(value, r.value) << r.text;
    }
}

TEST(RuntimeNumber, ReadDoubleOfLongTexts) {
    std::string digits(300, '1');  // beyond the stack buffer
    double value = 0;
    const CString text((digits + ",5").c_str());
    EXPECT_EQ(ReadDouble(text.View(), OLESTR(","), value), digits.size() + 2);
    EXPECT_DOUBLE_EQ(value, 1.1111111111111111e299);
    const CString fraction(("0," + std::string(400, '0') + "1").c_str());
    EXPECT_EQ(ReadDouble(fraction.View(), OLESTR(","), value), 403u);
    EXPECT_EQ(value, 0.0);
}

TEST(RuntimeNumber, ReadLongAsWcstol) {
    struct Row {
        const char* text;
        std::size_t consumed;
        long value;
    };
    const Row rows[] = {
        {"2026", 4, 2026},  {"  +12x", 5, 12},          {"-38+01", 3, -38},         {"", 0, 0},
        {"-", 0, 0},        {"x1", 0, 0},               {"99999999999", 11, 2147483647},
        {"-99999999999999999999", 21, -2147483647 - 1}, {"007", 3, 7},
    };
    for (const Row& r : rows) {
        long value = -7;
        const CString text(r.text);
        EXPECT_EQ(ReadLong(text.View(), value), r.consumed) << r.text;
        EXPECT_EQ(value, r.value) << r.text;
    }
}

VARIANT Number(VARTYPE vt, double x) {
    VARIANT v{};
    v.vt = vt;
    switch (vt) {
    case VT_R4: v.fltVal = static_cast<float>(x); break;
    case VT_R8: v.dblVal = x; break;
    case VT_I1: v.cVal = static_cast<CHAR>(x); break;
    case VT_UI1: v.bVal = static_cast<BYTE>(x); break;
    case VT_I2: v.iVal = static_cast<SHORT>(x); break;
    case VT_UI2: v.uiVal = static_cast<USHORT>(x); break;
    case VT_I4: v.lVal = static_cast<LONG>(x); break;
    case VT_UI4: v.ulVal = static_cast<ULONG>(x); break;
    case VT_I8: v.llVal = static_cast<LONGLONG>(x); break;
    case VT_UI8: v.ullVal = static_cast<ULONGLONG>(x); break;
    case VT_DATE: v.date = x; break;
    default: break;
    }
    return v;
}

TEST(VariantChangeType, NumbersBecomeTextWithTheUserSeparator) {
    struct Row {
        const char* locale;
        VARTYPE vt;
        double value;
        const char* text;
    };
    const Row rows[] = {
        {"de_DE.UTF-8", VT_R4, 1.5, "1,5"},
        {"en_US.UTF-8", VT_R4, 1.5, "1.5"},
        {"de_CH.UTF-8", VT_R4, 1.5, "1.5"},
        {"fr_FR.UTF-8", VT_R8, -0.25, "-0,25"},
        {"en_US.UTF-8", VT_R4, 0.1, "0.1"},  // seven significant digits of the single
        {"en_US.UTF-8", VT_R8, 0.1, "0.1"},
        {"en_US.UTF-8", VT_R8, 1.0 / 3.0, "0.333333333333333"},
        {"de_DE.UTF-8", VT_R8, 1e20, "1E+20"},
        {"en_US.UTF-8", VT_R4, 123456789.0, "1.234568E+08"},
        {"en_US.UTF-8", VT_R8, 1e-5, "1E-05"},
        {"en_US.UTF-8", VT_I1, -128, "-128"},
        {"en_US.UTF-8", VT_UI1, 255, "255"},
        {"en_US.UTF-8", VT_I2, -32768, "-32768"},
        {"en_US.UTF-8", VT_UI2, 65535, "65535"},
        {"de_DE.UTF-8", VT_I4, -42, "-42"},
        {"en_US.UTF-8", VT_UI4, 4294967295.0, "4294967295"},
        {"en_US.UTF-8", VT_I8, -9007199254740992.0, "-9007199254740992"},
        {"en_US.UTF-8", VT_UI8, 18446744073709549568.0, "18446744073709549568"},
        {"de_DE.UTF-8", VT_DATE, 46343.5, "17.11.2026 12:00:00"},
        {"en_US.UTF-8", VT_EMPTY, 0, ""},
    };
    int skipped = 0;
    for (const Row& r : rows) {
        varion::test::ScopedUserLocale user(r.locale);
        if (!user.Active()) {
            ++skipped;
            continue;
        }
        VARIANT source = Number(r.vt, r.value);
        VARIANT result{};
        ASSERT_EQ(VariantChangeType(&result, &source, 0, VT_BSTR), S_OK) << r.text;
        ASSERT_EQ(result.vt, VT_BSTR);
        EXPECT_EQ(Utf8(result.bstrVal), r.text) << r.locale << " " << r.vt;
        VariantClear(&result);
    }
    if (skipped > 0) GTEST_SKIP() << skipped << " rows need a user locale the system does not have";
}

TEST(VariantChangeType, InPlaceCopyAndRefusals) {
    varion::test::ScopedUserLocale user("de_DE.UTF-8");
    VARION_REQUIRE_USER_LOCALE(user);
    VARIANT v = Number(VT_R4, 1.5);
    ASSERT_EQ(VariantChangeType(&v, &v, 0, VT_BSTR), S_OK);  // source and destination alike
    EXPECT_EQ(Utf8(v.bstrVal), "1,5");
    VARIANT copy{};
    ASSERT_EQ(VariantChangeType(&copy, &v, 0, VT_BSTR), S_OK);  // same type: a copy
    EXPECT_NE(copy.bstrVal, v.bstrVal);
    EXPECT_EQ(Utf8(copy.bstrVal), "1,5");
    VariantClear(&copy);

    // A Boolean becomes -1 or 0 (no VARIANT_ALPHABOOL).
    for (const VARIANT_BOOL b : {VARIANT_TRUE, VARIANT_FALSE}) {
        VARIANT boolean{};
        boolean.vt = VT_BOOL;
        boolean.boolVal = b;
        VARIANT text{};
        ASSERT_EQ(VariantChangeType(&text, &boolean, 0, VT_BSTR), S_OK);
        EXPECT_EQ(Utf8(text.bstrVal), b ? "-1" : "0");
        VariantClear(&text);
    }

    VARIANT untouched = Number(VT_I4, 7);
    // The stand-in changes types only into text; the system also parses.
    VARION_STANDIN_ONLY(EXPECT_EQ(VariantChangeType(&untouched, &v, 0, VT_I4), DISP_E_TYPEMISMATCH));
    EXPECT_EQ(untouched.vt, VT_I4);
    EXPECT_EQ(untouched.lVal, 7);
    VARIANT badDate = Number(VT_DATE, 1e10);
    EXPECT_EQ(VariantChangeType(&untouched, &badDate, 0, VT_BSTR), E_INVALIDARG);
    VARION_STANDIN_ONLY(EXPECT_EQ(VariantChangeType(nullptr, &v, 0, VT_BSTR), E_INVALIDARG));
    VARION_STANDIN_ONLY(EXPECT_EQ(VariantChangeType(&untouched, nullptr, 0, VT_BSTR), E_INVALIDARG));
    EXPECT_EQ(untouched.lVal, 7);
    VariantClear(&v);
}

}  // namespace
