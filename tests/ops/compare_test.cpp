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

CVarion WithType(VARTYPE t, double days) {
    CVarion v(days);
    Access::Var(v).vt = t;
    return v;
}

// The six relational operators as a string "== != < <= > >=" of 1s and 0s.
std::string All(const CVarion& a, const CVarion& b) {
    std::string s;
    for (int r : {a == b, a != b, a < b, a <= b, a > b, a >= b}) s += static_cast<char>('0' + r);
    return s;
}

CVarion Array(VARTYPE t, std::initializer_list<double> values) {
    CVarion v(t, 0, 0);
    long i = 0;
    for (double x : values) {
        CVarion element(x);
        element.SetType(t);
        if (t == VT_BOOL) {
            const bool b = x != 0;
            v.SetElementValue(&b, i++);
        } else {
            v.SetElementValue(i++, 0, &Access::Var(element).llVal);
        }
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

TEST(Compare, RelationsAcrossClasses) {
    struct Case {
        CVarion a, b;
        const char* relations;  // == != < <= > >=
    };
    const Case cases[] = {
        {CVarion(5), CVarion(5.0000049), "101111"},  // tolerant: within a millionth of b
        {CVarion(5), CVarion(5.0000051), "011100"},
        {CVarion(5.0), CVarion(5.0000049), "011100"},  // double class: absolute 2^-52
        {CVarion(1e-17), CVarion(0.0), "100011"},  // equal within 2^-52, yet ordered exactly
        {CVarion(5), CVarion(5.0), "101111"},
        {CVarion(5), CVarion(5), "100101"},
        {CVarion(), CVarion(), "101111"},
        {CVarion(), CVarion(0), "010000"},
        {CVarion(0), CVarion(), "010000"},
        {CVarion(true), CVarion(1), "100101"},
        {CVarion(true), CVarion(2), "011100"},
        {CVarion(~0ULL), CVarion(~0ULL), "100101"},
        {CVarion(~0ULL), CVarion(-1LL), "010011"},  // the tolerant class reads 1.8e19 against -1
        {CVarion(kNaN), CVarion(kNaN), "100000"},
        {CVarion(kInf), CVarion(kInf), "100101"},
        {CVarion(kInf), CVarion(-kInf), "010011"},
        {CVarion(std::numeric_limits<float>::quiet_NaN()), CVarion(std::numeric_limits<float>::quiet_NaN()),
         "010000"},
        {CVarion(std::numeric_limits<float>::infinity()), CVarion(std::numeric_limits<float>::infinity()),
         "010101"},  // the single class subtracts: inf - inf is NaN
        {CVarion(1.5f), CVarion(1.5f), "100101"},
        {CVarion(-5), CVarion(-5.0000049), "101111"},  // a negative b gives a positive tolerance
    };
    for (const Case& c : cases) {
        const auto a = Bytes(c.a);
        const auto b = Bytes(c.b);
        EXPECT_EQ(All(c.a, c.b), c.relations) << static_cast<double>(c.a) << " vs " << static_cast<double>(c.b);
        EXPECT_EQ(Bytes(c.a), a);
        EXPECT_EQ(Bytes(c.b), b);
    }
}

TEST(Compare, DatesAndDurationsOnlyMeetTheirOwnKind) {
    const CVarion date = WithType(VT_DATE, 45002.5);
    EXPECT_EQ(All(date, CVarion(45002.5)), "010000");
    EXPECT_EQ(All(CVarion(45002.5), date), "010000");
    EXPECT_EQ(All(date, WithType(VTX_DATETIME, 45002.5)), "100101");
    EXPECT_EQ(All(date, WithType(VTX_ISO_DATETIME, 45003.0)), "011100");
    EXPECT_EQ(All(date, WithType(VTX_DURATION, 45002.5)), "010000");
    EXPECT_EQ(All(WithType(VTX_DURATION, 1.0), WithType(VTX_DURATION_MSF, 1.0)), "100101");
    EXPECT_EQ(All(WithType(VTX_DURATION, 1.0), WithType(VTX_DURATION, 1.0000000001)), "100101");
    EXPECT_EQ(All(WithType(VTX_DURATION, 1.0), WithType(VTX_DURATION, 1.0000000002)), "011100");
    EXPECT_EQ(All(WithType(VTX_DURATION, 1.0), CVarion(1.0)), "010000");
}

TEST(Compare, StringsOrdinallyAndAgainstNumbers) {
    EXPECT_EQ(All(CVarion(OLESTR("abc")), CVarion(OLESTR("ABC"))), "010011");
    EXPECT_EQ(CVarion(OLESTR("B")) < CVarion(OLESTR("a")), 1);
    EXPECT_EQ(CVarion(OLESTR("10")) < CVarion(OLESTR("9")), 1);
    EXPECT_EQ(CVarion::LittleThen(CVarion(OLESTR("10")), CVarion(OLESTR("9"))), 0);
    EXPECT_EQ(All(CVarion(OLESTR("ab")), CVarion(OLESTR("abc"))), "011100");
    EXPECT_EQ(All(CVarion(OLESTR("42")), CVarion(42)), "100101");
    EXPECT_EQ(All(CVarion(42), CVarion(OLESTR("42"))), "100101");
    EXPECT_EQ(All(CVarion(OLESTR("abc")), CVarion(0)), "010000");
    EXPECT_EQ(All(CVarion(0), CVarion(OLESTR("abc"))), "010000");
    EXPECT_EQ(All(CVarion(OLESTR("300")), CVarion(static_cast<unsigned char>(1))), "010000");  // does not fit
}

TEST(Compare, Arrays) {
    EXPECT_EQ(Array(VT_UI1, {1, 2, 3}) == Array(VT_I4, {1, 2, 3}), 1);
    EXPECT_EQ(Array(VT_UI1, {1, 2, 3}) == Array(VT_I4, {1, 2, 4}), 0);
    EXPECT_EQ(Array(VT_UI1, {1, 2}) == Array(VT_UI1, {1, 2, 3}), 0);
    EXPECT_EQ(Array(VT_R8, {}) == Array(VT_I2, {}), 1);
    EXPECT_EQ(Array(VT_BOOL, {1, 0}) == Array(VT_I4, {1, 0}), 1);
    const CVarion twoD(VT_I4, 2, 2);
    EXPECT_EQ(twoD == twoD, 0);
    EXPECT_EQ(Strings({"a", "b"}) == Strings({"a", "b"}), 1);
    EXPECT_EQ(Strings({"a"}) == Strings({"A"}), 0);
    EXPECT_EQ(Strings({"1"}) == Array(VT_I4, {1}), 1);
    EXPECT_EQ(Array(VT_I4, {1}) == CVarion(0), 1);  // the array reads as 0.0
    EXPECT_EQ(Array(VT_I4, {1}) <= CVarion(5), 0);
    EXPECT_EQ(CVarion(0) <= Array(VT_I4, {1}), 1);
    CVarion variants(VT_VARIANT, 2, 0);
    const CVarion text(OLESTR("7"));
    variants.SetElementValue(&text, 0);
    const CVarion seven(7.0);
    variants.SetElementValue(&seven, 1);
    CVarion numbers = Array(VT_I4, {7, 7});
    EXPECT_EQ(variants == numbers, 1);
}

TEST(Compare, NamedComparisonsReadDoubles) {
    const CVarion five(5);
    const CVarion nearly(5.0000049);
    EXPECT_EQ(CVarion::Equal(five, nearly), 0);
    EXPECT_EQ(five.Equal(nearly), 0);
    EXPECT_EQ(five.LittleThen(nearly), 1);
    EXPECT_EQ(CVarion::GreaterEqual(nearly, five), 1);
    EXPECT_EQ(CVarion::Equal(WithType(VT_DATE, 45002.5), CVarion(45000.5)), 1);
    EXPECT_EQ(CVarion::Equal(CVarion(OLESTR("1.0")), CVarion(OLESTR("1"))), 0);  // static: ordinal
    EXPECT_EQ(CVarion::NotEqual(CVarion(OLESTR("1.0")), CVarion(OLESTR("1"))), 1);
    EXPECT_EQ(CVarion(OLESTR("1.0")).Equal(CVarion(OLESTR("1"))), 1);  // member: as numbers
    EXPECT_EQ(CVarion::Equal(CVarion(kNaN), CVarion(kNaN)), 0);
    EXPECT_EQ(CVarion::NotEqual(CVarion(kNaN), CVarion(kNaN)), 1);
    EXPECT_EQ(CVarion::LittleEqual(CVarion(kNaN), CVarion(1.0)), 0);
    EXPECT_EQ(CVarion(2).GreaterThen(CVarion(1)), 1);
}

TEST(Compare, LogicalOperations) {
    EXPECT_EQ(CVarion::OR(CVarion(0.4), CVarion(OLESTR("abc"))), 0);
    EXPECT_EQ(CVarion::OR(CVarion(0.5), CVarion()), 1);
    EXPECT_EQ(CVarion::AND(CVarion(3e9), CVarion(1)), 0);
    EXPECT_EQ(CVarion::AND(CVarion(2), CVarion(1)), 1);
    EXPECT_EQ(CVarion(-1).OR(CVarion(VT_I4, 2, 0)), 1);
    EXPECT_EQ(CVarion(1).AND(CVarion(0)), 0);
}

TEST(Compare, NumericComparisonsDoNotAllocate) {
    const CVarion values[] = {CVarion(5), CVarion(5.5), CVarion(2.5f), CVarion(~0ULL), CVarion(true), CVarion()};
    int sink = 0;
    const long before = varion::test::AllocationCount();
    for (const CVarion& a : values)
        for (const CVarion& b : values) {
            sink += (a == b) + (a != b) + (a < b) + (a <= b) + (a > b) + (a >= b) + CVarion::Equal(a, b);
            CVarion r;
            CVarion::Arithmetic(r, a, b, OP_ADD);
            CVarion::Arithmetic(r, a, b, OP_DIV);
        }
    EXPECT_EQ(varion::test::AllocationCount(), before);
    EXPECT_GT(sink, 0);
}
