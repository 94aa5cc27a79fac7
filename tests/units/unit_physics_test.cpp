// Conversions checked against values known independently of the table:
// exact definitions of the units (worked out here, not read from the table)
// and published reference values.
#include <varion/varion.h>

#include <gtest/gtest.h>

#include <cmath>

namespace {

// Definitions (exact unless noted).
constexpr double kInch = 0.0254;              // m
constexpr double kPound = 0.45359237;         // kg
constexpr double kGravity = 9.80665;          // m/s²
constexpr double kPsi = kPound * kGravity / (kInch * kInch);  // Pa
constexpr double kGallon = 231 * kInch * kInch * kInch;       // m³
constexpr double kCalorie = 4.184;            // J

constexpr double kExact = 1e-13;   // relative: the arithmetic's own rounding
constexpr double kPinned = 1e-7;   // relative: rows fixed at a rounded value
constexpr double kMeasured = 2e-5; // relative: published values of a few digits

struct Check {
    const char* what;
    double value;
    short from, to;
    double expected;
    double tolerance;  // relative
};

// clang-format off
const Check kChecks[] = {
    // Pressure, fieldbus
    {"1 psi in Pa, definition",    1, 1141, 1130, kPsi,                      kExact},
    {"1 atm in Pa",                1, 1140, 1130, 101325,                    kExact},
    {"1 inH2O in Pa",              1, 1146, 1130, kInch * 1000 * kGravity,   kExact},
    // Pressure, HART (psi is held rounded there)
    {"1 bar in psi, HART",         1,    7,    6, 14.503773773,              kPinned},
    {"1 psi in kPa, HART",         1,    6,   12, 6.894757293168,            kPinned},
    {"1 mH2O (4 °C) in Pa",        1, 16811, 11, 9806.38,                    kMeasured},
    // Length, area, volume, mass, flows
    {"1 mile in km",               1, 1021, 1011, 1.609344,                  kExact},
    {"1 lb in kg",                 1, 1094, 1088, kPound,                    kExact},
    {"1 kg/s in lb/h, HART",       1,   73,   82, 3600 / kPound,             kExact},
    {"1 US gal/min in m³/h",       1, 1363, 1349, kGallon * 60,              kExact},
    {"1 m³/s in US gal/min, HART", 1,   28,   16, 60 / kGallon,              kExact},
    // Velocity, angle, energy, power and others
    {"1 revolution in degrees",    1, 1009, 1005, 360,                       kExact},
    {"1 kcal in kJ",               1, 1181, 1173, kCalorie,                  kExact},
    {"1 hp in W",                  1, 1198, 1186, 745.69987158227022,        1e-13},
    {"1 g/cm³ in lb/ft³",          1, 1100, 1107, 62.427960576144606,        1e-13},
    {"1 S/m in mS/cm",             1, 1299, 1302, 10,                        kExact},
};
// clang-format on

// Each conversion agrees with the known value, and converting back returns the value.
TEST(UnitPhysics, ConversionsAgreeWithKnownValuesAndRoundTrip) {
    for (const Check& c : kChecks) {
        CVarion there;
        CVarion back;
        ASSERT_EQ(CVarion(c.value).UnitConvert(c.from, c.to, &there), RC_OK) << c.what;
        ASSERT_EQ(there.GetType(), VT_R8) << c.what;
        EXPECT_NEAR(static_cast<double>(there), c.expected, std::abs(c.expected) * c.tolerance) << c.what;
        ASSERT_EQ(there.UnitConvert(c.to, c.from, &back), RC_OK) << c.what;
        EXPECT_NEAR(static_cast<double>(back), c.value, std::abs(c.value) * 1e-12 + 1e-12) << c.what;
    }
}

}  // namespace
