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

TEST(UnitConvert, BadCallsLeaveTheResultUntouched) {
    const struct { CVarion source; short from, to; bool nullResult; } cases[] = {
        {CVarion(), 1010, 1013, false}, {CVarion(2.5), 1010, 1013, true}, {CVarion(2.5), -1, 1013, false},
        {CVarion(2.5), -1, -1, false},  {CVarion(2.5), -1, 0, false},
    };
    for (const auto& c : cases) {
        CVarion result(short(77));
        const auto before = Bytes(result);
        EXPECT_EQ(c.source.UnitConvert(c.from, c.to, c.nullResult ? nullptr : &result), RC_NOT_CONVERTIBLE) << c.from;
        EXPECT_EQ(Bytes(result), before) << c.from << " -> " << c.to;
    }
}

// Exits before both codes are found hand the unconverted number on as VT_R8;
// mismatches after that keep it in the source's type.
TEST(UnitConvert, UnconvertedResults) {
    const struct { short from, to; long code; VARTYPE type; } cases[] = {
        // the same code, known or not; no target; unknown codes
        {11, 11, RC_OK, VT_R8}, {9999, 9999, RC_OK, VT_R8}, {1010, 0, RC_UNIT_NO_TARGET, VT_R8},
        {11, 9999, RC_UNIT_NOT_CONVERTIBLE, VT_R8}, {-5, 11, RC_UNIT_NOT_CONVERTIBLE, VT_R8},
        // HART to fieldbus, pressure to length, a mirror temperature without a formula, two groups of one kind
        {7, 1137, RC_UNIT_NOT_CONVERTIBLE, VT_I4}, {7, 45, RC_UNIT_NOT_CONVERTIBLE, VT_I4},
        {16416, 32, RC_UNIT_NOT_CONVERTIBLE, VT_I4}, {90, 92, RC_UNIT_NOT_CONVERTIBLE, VT_I4},
    };
    for (const auto& c : cases) {
        CVarion result(CString("previous"));  // owned content is released (leak-checked)
        EXPECT_EQ(CVarion(int(20)).UnitConvert(c.from, c.to, &result), c.code) << c.from << " -> " << c.to;
        EXPECT_EQ(result.GetType(), c.type) << c.from << " -> " << c.to;
        EXPECT_EQ(static_cast<double>(result), 20.0) << c.from << " -> " << c.to;
    }
}

TEST(UnitConvert, ConvertsIntoTheSourceType) {
    CVarion self(2.5);  // the result may be the source itself
    const struct { CVarion source; short from, to; VARTYPE type; double value; } cases[] = {
        {CVarion(int(20)), 32, 35, VT_I4, 293.0},  // 293.15 rounded
        {CVarion(short(-3)), 1011, 1010, VT_I2, -3000.0},
        {CVarion(float(12.5f)), 1137, 1130, VT_R4, 1250000.0},
        // 200 °C is 473.15 K, which a VT_UI1 cannot hold: the result stays VT_R8.
        {CVarion(static_cast<unsigned char>(200)), 32, 35, VT_R8, 473.15},
        {CVarion(VT_I4, 3, 0), 1010, 1013, VT_R8, 0.0},  // no number reads as 0; an array cannot take it back
        {CVarion(std::numeric_limits<double>::quiet_NaN()), 32, 33, VT_R8, std::numeric_limits<double>::quiet_NaN()},
    };
    for (const auto& c : cases) {
        CVarion result;
        EXPECT_EQ(c.source.UnitConvert(c.from, c.to, &result), RC_OK) << c.from << " -> " << c.to;
        EXPECT_EQ(result.GetType(), c.type) << c.from << " -> " << c.to;
        const double got = static_cast<double>(result);
        EXPECT_TRUE(got == c.value || std::abs(got - c.value) < 1e-9 || (std::isnan(got) && std::isnan(c.value)))
            << c.from << " -> " << c.to << ": " << got;
    }
    EXPECT_TRUE(self.UnitConvert(1010, 1013, &self) == RC_OK && static_cast<double>(self) == 2500.0);
}

// Fixed points of the four scales, in order kelvin, Celsius, Fahrenheit, Rankine.
TEST(UnitConvert, TemperaturesMeetAtKnownPoints) {
    const double points[][4] = {
        {273.15, 0.0, 32.0, 491.67},     // ice point
        {373.15, 100.0, 212.0, 671.67},  // steam point
        {233.15, -40.0, -40.0, 419.67},  // where Celsius and Fahrenheit meet
        {0.0, -273.15, -459.67, 0.0},    // absolute zero
    };
    const short scales[2][4] = {{35, 32, 33, 34}, {1000, 1001, 1002, 1003}};  // HART, fieldbus
    for (const auto& codes : scales)
        for (const auto& p : points)
            for (int a = 0; a < 4; ++a)
                for (int b = 0; b < 4; ++b) {
                    CVarion result;
                    ASSERT_EQ(CVarion(p[a]).UnitConvert(codes[a], codes[b], &result), RC_OK);
                    EXPECT_NEAR(static_cast<double>(result), p[b], 1e-9) << codes[a] << "->" << codes[b] << " " << p[a];
                }
}

TEST(UnitConvert, FactorsMustBeAboveZero) {
    using varion::detail::ConvertBetweenRows;
    using varion::detail::UnitRow;
    const UnitRow good{500, 500, 3, 2.0};
    const UnitRow bad[] = {{501, 500, 3, 0.0},
                           {502, 500, 3, -1.0},
                           {503, 500, 3, std::numeric_limits<double>::quiet_NaN()},
                           {16419, 35, varion::detail::kTemperatureKind, 1.0}};  // a temperature without a formula
    for (const UnitRow& b : bad) {
        const UnitRow from = b.kind == varion::detail::kTemperatureKind ? UnitRow{35, 35, b.kind, 1.0} : good;
        double v = 7.0;
        EXPECT_EQ(ConvertBetweenRows(from, b, v), RC_UNIT_NOT_CONVERTIBLE) << b.code;
        EXPECT_EQ(ConvertBetweenRows(b, from, v), RC_UNIT_NOT_CONVERTIBLE) << b.code;
        EXPECT_EQ(v, 7.0) << b.code;
    }
    double v = 7.0;
    EXPECT_EQ(ConvertBetweenRows(good, UnitRow{504, 500, 3, 8.0}, v), RC_OK);
    EXPECT_EQ(v, 28.0);  // 7 / 2 * 8
}

TEST(UnitConvert, AllocatesNothing) {
    const CVarion sources[] = {CVarion(2.5), CVarion(int(20)), CVarion(float(1.5f))};
    const short pairs[][2] = {{1010, 1013}, {32, 33}, {7, 1137}, {11, 9999}, {11, 0}, {11, 11}, {16416, 32}};
    CVarion result(1.0);
    const long before = AllocationCount();
    long sum = 0;
    for (const CVarion& s : sources)
        for (const auto& p : pairs) sum += s.UnitConvert(p[0], p[1], &result);
    EXPECT_EQ(AllocationCount(), before);
    EXPECT_GT(sum, 0);  // the loop ran and met its failures too
}

}  // namespace
