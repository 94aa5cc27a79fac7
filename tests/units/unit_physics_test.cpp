// Conversions checked against values known independently of the table:
// exact definitions of the units (worked out here, not read from the table)
// and published reference values.
#include <varion/varion.h>

#include <gtest/gtest.h>

#include <cmath>

namespace {

// Definitions (exact unless noted).
constexpr double kInch = 0.0254;              // m
constexpr double kFoot = 12 * kInch;          // m
constexpr double kPound = 0.45359237;         // kg
constexpr double kGravity = 9.80665;          // m/s²
constexpr double kPsi = kPound * kGravity / (kInch * kInch);  // Pa
constexpr double kGallon = 231 * kInch * kInch * kInch;       // m³
constexpr double kCalorie = 4.184;            // J
constexpr double kPi = 3.14159265358979323846;

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
    {"1 bar in psi",               1, 1137, 1141, 14.503773773,              1e-10},
    {"1 atm in Pa",                1, 1140, 1130, 101325,                    kExact},
    {"760 torr in atm",          760, 1139, 1140, 1,                         kExact},
    {"1 kgf/cm² in kPa",           1, 1145, 1133, 98.0665,                   kExact},
    {"1 mmHg in Pa",               1, 1157, 1130, 133.322387415,             1e-12},
    {"1 inHg in Pa",               1, 1155, 1130, 3386.389,                  1e-6},
    {"1 inH2O in Pa",              1, 1146, 1130, kInch * 1000 * kGravity,   kExact},
    {"1 inH2O (4 °C) in Pa",       1, 1147, 1130, 249.082,                   kMeasured},
    {"1 MPa g in bar",             1, 1615, 1137, 10,                        kExact},
    // Pressure, HART (psi is held rounded there)
    {"1 bar in psi, HART",         1,    7,    6, 14.503773773,              kPinned},
    {"1 psi in kPa, HART",         1,    6,   12, 6.894757293168,            kPinned},
    {"1 bar in psia, HART",        1,    7, 16815, 14.503773773,             1e-10},
    {"1 atm in torr, HART",        1,   14,   13, 760,                       kExact},
    {"1 inH2O (4 °C) in mmH2O (4 °C)", 1, 238, 239, 25.4,                    kExact},
    {"1 mH2O (4 °C) in Pa",        1, 16811, 11, 9806.38,                    kMeasured},
    // Length, area, volume
    {"1 mile in km",               1, 1021, 1011, 1.609344,                  kExact},
    {"1 nautical mile in m",       1, 1022, 1010, 1852,                      kExact},
    {"1 in in mm, HART",           1,   47,   49, 25.4,                      kExact},
    {"1 yd² in m²",                1, 1032, 1023, 0.83612736,                kExact},
    {"1 US gal in L",              1, 1048, 1038, 3.785411784,               kExact},
    {"1 bbl in US gal",            1, 1051, 1048, 42,                        kExact},
    {"1 ft³ in L",                 1, 1043, 1038, 28.316846592,              kExact},
    {"1 acre foot in m³",          1, 1572, 1034, 1233.48183754752,         kExact},
    // Mass and mass flow
    {"1 lb in kg",                 1, 1094, 1088, kPound,                    kExact},
    {"1 long ton in kg",           1, 1096, 1088, 1016.0469088,              kExact},
    {"1 kg/s in lb/h, HART",       1,   73,   82, 3600 / kPound,             kExact},
    {"1 short ton/h in kg/min",    1, 1336, 1323, 2000 * kPound / 60,        kExact},
    // Volume flow
    {"1 m³/h in L/min",            1, 1349, 1352, 1000.0 / 60,               kExact},
    {"1 US gal/min in m³/h",       1, 1363, 1349, kGallon * 60,              kExact},
    {"1 m³/s in US gal/min, HART", 1,   28,   16, 60 / kGallon,              kExact},
    {"1 Nm³/s in Nm³/h, HART",     1, 17079, 121, 3600,                      kExact},
    // Velocity, time, angle
    {"1 knot in km/h",             1, 1065, 1064, 1.852,                     kExact},
    {"1 mph in m/s",               1, 1075, 1061, 0.44704,                   kExact},
    {"1 revolution in degrees",    1, 1009, 1005, 360,                       kExact},
    {"1 rad in degrees",           1, 1004, 1005, 180 / kPi,                 kExact},
    {"1 rev/s in rad/s",           1, 1084, 1086, 2 * kPi,                   kExact},
    // Energy and power
    {"1 kWh in MJ",                1, 1179, 1172, 3.6,                       kExact},
    {"1 kcal in kJ",               1, 1181, 1173, kCalorie,                  kExact},
    {"1 thermochemical Btu in J",  1, 1183, 1167, kCalorie * 1000 * kPound * 5 / 9, kExact},
    {"1 ft·lbf in J",              1, 1185, 1167, kFoot * kPound * kGravity, kExact},
    {"1 hp in W",                  1, 1198, 1186, 745.69987158227022,        1e-13},
    {"1 kW in hp, HART",           1,  127,  129, 1.3410220895950279,        1e-13},
    // Others
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
