// UnitConvert: early exits, result codes, temperature formulas, the result's
// type, and the guard on factors.
#include "support/test_support.h"
#include "units/unit_table.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using varion::test::AllocationCount;
using varion::test::Bytes;

double AsDouble(const CVarion& v) { return static_cast<double>(v); }

TEST(UnitConvert, BadCallsLeaveTheResultUntouched) {
    struct Case {
        const char* what;
        CVarion source;
        short from, to;
        bool nullResult;
    };
    const Case cases[] = {
        {"empty source", CVarion(), 1010, 1013, false},
        {"null result", CVarion(2.5), 1010, 1013, true},
        {"from -1", CVarion(2.5), -1, 1013, false},
        {"from and to -1", CVarion(2.5), -1, -1, false},
        {"from -1, to 0", CVarion(2.5), -1, 0, false},
    };
    for (const Case& c : cases) {
        CVarion result(short(77));
        const auto before = Bytes(result);
        EXPECT_EQ(c.source.UnitConvert(c.from, c.to, c.nullResult ? nullptr : &result), RC_NOT_CONVERTIBLE) << c.what;
        EXPECT_EQ(Bytes(result), before) << c.what;
    }
}

// Early exits hand the unconverted number on as VT_R8, whatever the source type.
TEST(UnitConvert, EarlyExitsGiveTheUnconvertedDouble) {
    struct Case {
        const char* what;
        short from, to;
        long code;
    };
    const Case cases[] = {
        {"same known code", 11, 11, RC_OK},
        {"same unknown code", 9999, 9999, RC_OK},
        {"same code zero", 0, 0, RC_OK},
        {"no target", 1010, 0, RC_UNIT_NO_TARGET},
        {"no target, unknown source", 9999, 0, RC_UNIT_NO_TARGET},
        {"unknown target", 11, 9999, RC_UNIT_NOT_CONVERTIBLE},
        {"unknown source", 9999, 11, RC_UNIT_NOT_CONVERTIBLE},
        {"gap between blocks", 256, 1010, RC_UNIT_NOT_CONVERTIBLE},
        {"gap in the fieldbus block", 1521, 1010, RC_UNIT_NOT_CONVERTIBLE},
        {"negative code", -5, 11, RC_UNIT_NOT_CONVERTIBLE},
        {"above the last code", 11, 23210, RC_UNIT_NOT_CONVERTIBLE},
        {"largest short", 32767, 11, RC_UNIT_NOT_CONVERTIBLE},
    };
    for (const Case& c : cases) {
        const CVarion source(int(20));
        CVarion result(CString("previous"));  // owned content is released (leak-checked)
        EXPECT_EQ(source.UnitConvert(c.from, c.to, &result), c.code) << c.what;
        EXPECT_EQ(result.GetType(), VT_R8) << c.what;
        EXPECT_EQ(AsDouble(result), 20.0) << c.what;
    }
}

// Mismatches after both codes were found keep the number in the source's type.
TEST(UnitConvert, MismatchesGiveTheUnconvertedNumberInTheSourceType) {
    struct Case {
        const char* what;
        short from, to;
    };
    const Case cases[] = {
        {"HART bar to fieldbus bar", 7, 1137},
        {"HART to fieldbus Celsius", 32, 1001},
        {"pressure to length", 7, 45},
        {"mirror temperature has no formula", 16416, 32},
        {"kelvin mirror has no formula", 16419, 35},
        {"to a mirror temperature", 1001, 16417},
        {"pH to percent", 59, 57},
        {"specific gravity to density", 90, 92},
        {"standard to normal volume", 168, 166},
    };
    for (const Case& c : cases) {
        const CVarion source(int(20));
        CVarion result;
        EXPECT_EQ(source.UnitConvert(c.from, c.to, &result), RC_UNIT_NOT_CONVERTIBLE) << c.what;
        EXPECT_EQ(result.GetType(), VT_I4) << c.what;
        EXPECT_EQ(static_cast<long>(result), 20) << c.what;
    }
}

TEST(UnitConvert, ConvertsIntoTheSourceType) {
    struct Case {
        CVarion source;
        short from, to;
        VARTYPE type;
        double value;
    };
    const Case cases[] = {
        {CVarion(2.5), 1010, 1013, VT_R8, 2500.0},
        {CVarion(100000.0), 11, 7, VT_R8, 1.0},
        {CVarion(int(20)), 32, 33, VT_I4, 68.0},
        {CVarion(int(20)), 32, 35, VT_I4, 293.0},           // 293.15 rounded
        {CVarion(int(100)), 33, 32, VT_I4, 38.0},           // 37.78 rounded
        {CVarion(short(-3)), 1011, 1010, VT_I2, -3000.0},
        {CVarion(float(12.5f)), 1137, 1130, VT_R4, 1250000.0},
        {CVarion(ULONGLONG(3)), 1060, 1054, VT_UI8, 259200.0},
        {CVarion(0.0), 1001, 1003, VT_R8, 491.67},
        // 200 °C is 473.15 K, which a VT_UI1 cannot hold: the result stays VT_R8.
        {CVarion(static_cast<unsigned char>(200)), 32, 35, VT_R8, 473.15},
        {CVarion(static_cast<unsigned char>(3)), 1010, 1013, VT_R8, 3000.0},
    };
    for (const Case& c : cases) {
        CVarion result;
        EXPECT_EQ(c.source.UnitConvert(c.from, c.to, &result), RC_OK) << c.from << " -> " << c.to;
        EXPECT_EQ(result.GetType(), c.type) << c.from << " -> " << c.to;
        EXPECT_NEAR(AsDouble(result), c.value, 1e-9) << c.from << " -> " << c.to;
    }
}

// Fixed points of the four scales, in order kelvin, Celsius, Fahrenheit, Rankine.
TEST(UnitConvert, TemperaturesMeetAtKnownPoints) {
    const double points[][4] = {
        {273.15, 0.0, 32.0, 491.67},         // ice point
        {373.15, 100.0, 212.0, 671.67},      // steam point
        {233.15, -40.0, -40.0, 419.67},      // where Celsius and Fahrenheit meet
        {0.0, -273.15, -459.67, 0.0},        // absolute zero
    };
    const short hart[4] = {35, 32, 33, 34};
    const short fieldbus[4] = {1000, 1001, 1002, 1003};
    for (const short* codes : {hart, fieldbus})
        for (const auto& p : points)
            for (int a = 0; a < 4; ++a)
                for (int b = 0; b < 4; ++b) {
                    CVarion result;
                    ASSERT_EQ(CVarion(p[a]).UnitConvert(codes[a], codes[b], &result), RC_OK);
                    EXPECT_NEAR(AsDouble(result), p[b], 1e-9) << codes[a] << " -> " << codes[b] << " at " << p[a];
                }
}

TEST(UnitConvert, ResultMayBeTheSourceItself) {
    CVarion value(2.5);
    EXPECT_EQ(value.UnitConvert(1010, 1013, &value), RC_OK);
    EXPECT_EQ(value.GetType(), VT_R8);
    EXPECT_EQ(AsDouble(value), 2500.0);

    CVarion count(int(20));
    EXPECT_EQ(count.UnitConvert(32, 33, &count), RC_OK);
    EXPECT_EQ(count.GetType(), VT_I4);
    EXPECT_EQ(static_cast<long>(count), 68);
}

TEST(UnitConvert, SourceThatIsNoNumberReadsAsZero) {
    const CVarion array(VT_I4, 3, 0);
    CVarion result;
    EXPECT_EQ(array.UnitConvert(1010, 1013, &result), RC_OK);
    // The array type cannot take the number back: the result stays VT_R8.
    EXPECT_EQ(result.GetType(), VT_R8);
    EXPECT_EQ(AsDouble(result), 0.0);
}

TEST(UnitConvert, FactorsMustBeAboveZero) {
    using varion::detail::ConvertBetweenRows;
    using varion::detail::UnitRow;
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const UnitRow good{500, 500, 3, 2.0};
    const UnitRow bad[] = {{501, 500, 3, 0.0}, {502, 500, 3, -1.0}, {503, 500, 3, nan}};
    for (const UnitRow& b : bad) {
        double v = 7.0;
        EXPECT_EQ(ConvertBetweenRows(good, b, v), RC_UNIT_NOT_CONVERTIBLE) << b.code;
        EXPECT_EQ(ConvertBetweenRows(b, good, v), RC_UNIT_NOT_CONVERTIBLE) << b.code;
        EXPECT_EQ(v, 7.0) << b.code;
    }
    double v = 7.0;
    const UnitRow other{504, 500, 3, 8.0};
    EXPECT_EQ(ConvertBetweenRows(good, other, v), RC_OK);
    EXPECT_EQ(v, 28.0);  // 7 / 2 * 8

    // A temperature row without a formula leaves the number as it was.
    const UnitRow kelvin{35, 35, varion::detail::kTemperatureKind, 1.0};
    const UnitRow noFormula{16419, 35, varion::detail::kTemperatureKind, 1.0};
    v = 7.0;
    EXPECT_EQ(ConvertBetweenRows(kelvin, noFormula, v), RC_UNIT_NOT_CONVERTIBLE);
    EXPECT_EQ(v, 7.0);
}

TEST(UnitConvert, NonFiniteValuesPassThrough) {
    const double inf = std::numeric_limits<double>::infinity();
    CVarion result;
    EXPECT_EQ(CVarion(inf).UnitConvert(1010, 1013, &result), RC_OK);
    EXPECT_EQ(AsDouble(result), inf);
    EXPECT_EQ(CVarion(std::numeric_limits<double>::quiet_NaN()).UnitConvert(32, 33, &result), RC_OK);
    EXPECT_TRUE(std::isnan(AsDouble(result)));
}

TEST(UnitConvert, AllocatesNothing) {
    const CVarion sources[] = {CVarion(2.5), CVarion(int(20)), CVarion(float(1.5f)), CVarion(short(-7)),
                               CVarion(ULONGLONG(9))};
    const short pairs[][2] = {{1010, 1013}, {32, 33}, {1001, 1003}, {7, 1137}, {11, 9999},
                              {11, 0},      {11, 11}, {16641, 6},   {1363, 1349}, {16416, 32}};
    CVarion result(1.0);
    const long before = AllocationCount();
    long sum = 0;
    for (const CVarion& s : sources)
        for (const auto& p : pairs) sum += s.UnitConvert(p[0], p[1], &result);
    EXPECT_EQ(AllocationCount(), before);
    EXPECT_GT(sum, 0);  // the loop ran and met its failures too
}

}  // namespace
