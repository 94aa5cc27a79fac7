// Comparison: classes, tolerance, special floating values, dates, durations,
// strings, arrays, the named comparisons and the logical operations.
#include "support/test_support.h"
#include "value/access.h"

#include <gtest/gtest.h>

#include <limits>

using varion::detail::Access;
using varion::test::Bytes;

namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr float kInfF = std::numeric_limits<float>::infinity();
constexpr float kNaNF = std::numeric_limits<float>::quiet_NaN();

CVarion WithType(VARTYPE t, double days) {
    CVarion v(days);
    Access::Var(v).vt = t;
    return v;
}

CVarion Array(VARTYPE t, std::initializer_list<double> values) {
    CVarion v(t, 0, 0);
    long i = 0;
    for (double x : values) {
        CVarion element(x);
        element.SetType(t);
        const bool b = x != 0;
        if (t == VT_BOOL) v.SetElementValue(&b, i++);
        else v.SetElementValue(i++, 0, &Access::Var(element).llVal);
    }
    return v;
}

CVarion Strings(std::initializer_list<const char*> texts) {
    CVarion v(VT_BSTR, 0, 0);
    long i = 0;
    for (const char* t : texts) {
        const CString s(t);
        v.SetElementValue(&s, i++);
    }
    return v;
}

}  // namespace

// The six relational operators, as "== != < <= > >=" in 1s and 0s; neither
// operand changes.
TEST(Compare, RelationalOperators) {
    struct Case { CVarion a, b; const char* relations; };
    const Case cases[] = {
        {CVarion(5), CVarion(5.0000049), "101111"},  // tolerant: within a millionth of b
        {CVarion(5), CVarion(5.0000051), "011100"},
        {CVarion(-5), CVarion(-5.0000049), "101111"},  // a negative b gives a positive tolerance
        {CVarion(5.0), CVarion(5.0000049), "011100"},  // double class: absolute 2^-52
        {CVarion(1e-17), CVarion(0.0), "100011"},  // equal within 2^-52, yet ordered exactly
        {CVarion(), CVarion(), "101111"},
        {CVarion(), CVarion(0), "010000"},                  {CVarion(0), CVarion(), "010000"},
        {CVarion(true), CVarion(1), "100101"},              {CVarion(true), CVarion(2), "011100"},
        {CVarion(kNaN), CVarion(kNaN), "100000"},
        {CVarion(~0ULL), CVarion(-1LL), "010011"},  // the tolerant class reads 1.8e19 against -1
        {CVarion(kInf), CVarion(-kInf), "010011"},          {CVarion(kNaNF), CVarion(kNaNF), "010000"},
        {CVarion(kInfF), CVarion(kInfF), "010101"},  // the single class subtracts: inf - inf is NaN
        {CVarion(1.5f), CVarion(1.5f), "100101"},
        // Dates and durations meet only their own kind.
        {WithType(VT_DATE, 45002.5), CVarion(45002.5), "010000"},
        {CVarion(45002.5), WithType(VT_DATE, 45002.5), "010000"},
        {WithType(VT_DATE, 45002.5), WithType(VTX_DATETIME, 45002.5), "100101"},
        {WithType(VT_DATE, 45002.5), WithType(VTX_ISO_DATETIME, 45003.0), "011100"},
        {WithType(VT_DATE, 45002.5), WithType(VTX_DURATION, 45002.5), "010000"},
        {WithType(VTX_DURATION, 1.0), WithType(VTX_DURATION_MSF, 1.0000000001), "100101"},
        {WithType(VTX_DURATION, 1.0), WithType(VTX_DURATION, 1.0000000002), "011100"},
        // Strings ordinally, and as numbers against numbers.
        {CVarion(OLESTR("abc")), CVarion(OLESTR("ABC")), "010011"},
        {CVarion(OLESTR("10")), CVarion(OLESTR("9")), "011100"},
        {CVarion(OLESTR("ab")), CVarion(OLESTR("abc")), "011100"},
        {CVarion(42), CVarion(OLESTR("42")), "100101"},
        {CVarion(0), CVarion(OLESTR("abc")), "010000"},
        {CVarion(OLESTR("300")), CVarion(static_cast<unsigned char>(1)), "010000"},  // does not fit
    };
    for (const Case& c : cases) {
        const auto a = Bytes(c.a);
        const auto b = Bytes(c.b);
        std::string got;
        for (int r : {c.a == c.b, c.a != c.b, c.a < c.b, c.a <= c.b, c.a > c.b, c.a >= c.b})
            got += static_cast<char>('0' + r);
        EXPECT_EQ(got, c.relations) << static_cast<double>(c.a) << " vs " << static_cast<double>(c.b);
        EXPECT_EQ(Bytes(c.a), a);
        EXPECT_EQ(Bytes(c.b), b);
    }
}

// Arrays compare element by element. The named comparisons read both sides
// as doubles (the static Equal and NotEqual compare strings ordinally); OR
// and AND read Booleans.
TEST(Compare, ArraysNamedComparisonsAndLogicalOperations) {
    CVarion variants(VT_VARIANT, 2, 0);
    const CVarion text(OLESTR("7"));
    const CVarion seven(7.0);
    variants.SetElementValue(&text, 0);
    variants.SetElementValue(&seven, 1);
    const CVarion twoD(VT_I4, 2, 2);
    const CVarion five(5);
    const CVarion nearly(5.0000049);
    struct Case { int got, want; };
    const Case cases[] = {
        {Array(VT_UI1, {1, 2, 3}) == Array(VT_I4, {1, 2, 3}), 1}, {Array(VT_UI1, {1, 2, 3}) == Array(VT_I4, {1, 2, 4}), 0},
        {Array(VT_UI1, {1, 2}) == Array(VT_UI1, {1, 2, 3}), 0},   {Array(VT_R8, {}) == Array(VT_I2, {}), 1},
        {Array(VT_BOOL, {1, 0}) == Array(VT_I4, {1, 0}), 1},      {twoD == twoD, 0},
        {Strings({"a", "b"}) == Strings({"a", "b"}), 1},
        {Strings({"1"}) == Array(VT_I4, {1}), 1},                 {variants == Array(VT_I4, {7, 7}), 1},
        {Array(VT_I4, {1}) == CVarion(0), 1},  // against a scalar the array reads as 0.0
        {Array(VT_I4, {1}) <= CVarion(5), 0},                     {CVarion(0) <= Array(VT_I4, {1}), 1},
        {five.Equal(nearly), 0},                {five.LittleThen(nearly), 1},
        {CVarion::GreaterEqual(nearly, five), 1},
        {CVarion(2).GreaterThen(CVarion(1)), 1}, {CVarion::Equal(WithType(VT_DATE, 45002.5), CVarion(45000.5)), 1},
        {CVarion::LittleThen(CVarion(OLESTR("10")), CVarion(OLESTR("9"))), 0},
        {CVarion::Equal(CVarion(OLESTR("1.0")), CVarion(OLESTR("1"))), 0},
        {CVarion::NotEqual(CVarion(OLESTR("1.0")), CVarion(OLESTR("1"))), 1},
        {CVarion(OLESTR("1.0")).Equal(CVarion(OLESTR("1"))), 1},
        {CVarion::Equal(CVarion(kNaN), CVarion(kNaN)), 0},     {CVarion::NotEqual(CVarion(kNaN), CVarion(kNaN)), 1},
        {CVarion::LittleEqual(CVarion(kNaN), CVarion(1.0)), 0}, {CVarion::OR(CVarion(0.4), CVarion(OLESTR("abc"))), 0},
        {CVarion::OR(CVarion(0.5), CVarion()), 1},              {CVarion::AND(CVarion(3e9), CVarion(1)), 0},
        {CVarion::AND(CVarion(2), CVarion(1)), 1},              {CVarion(-1).OR(CVarion(VT_I4, 2, 0)), 1},
        {CVarion(1).AND(CVarion(0)), 0},
    };
    for (std::size_t i = 0; i < std::size(cases); ++i) EXPECT_EQ(cases[i].got, cases[i].want) << "case " << i;
}
