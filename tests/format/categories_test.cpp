// Display formats on the scalar path: every category on every scalar type,
// the finishing steps of hexadecimal, octal and binary, the plain text, the
// decimal separator and the formats the formatter cannot use.
#include "support/test_support.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <limits>
#include <string>

using varion::test::ScopedCLocale;
using varion::test::ScopedEnv;
using varion::test::ScopedUserLocale;
using varion::test::Utf8;

namespace {

std::string Show(const CVarion& v, const char* format, short ddType = 0) {
    return Utf8(v.GetStringWithDisplayFormat(CString(format), ddType));
}

const std::string kOnes64(64, '1');
const std::string kOnes32(32, '1');

struct Row {
    const char* name;
    CVarion value;
    const char* d;      // %d
    const char* u;      // %u
    const char* f;      // %.1f
    const char* s;      // %s
    const char* x;      // %x
    const char* o;      // %o
    std::string b;      // %b
    const char* plain;  // empty format
};

TEST(DisplayCategories, EveryCategoryOnEveryScalarType) {
    // The C library and the user (en-US) both write "." here.
    ScopedUserLocale user("en_US.UTF-8");
    VARION_REQUIRE_USER_LOCALE(user);
    const Row rows[] = {
        {"VT_I1 -1", CVarion(static_cast<char>(-1)), "-1", "0", "-1.0", "-1", "0xff", "0377", "0b11111111", "-1"},
        {"VT_UI1 255", CVarion(static_cast<unsigned char>(255)), "255", "255", "255.0", "255", "0xff", "0377",
         "0b11111111", "255"},
        {"VT_I2 -1", CVarion(static_cast<short>(-1)), "-1", "0", "-1.0", "-1", "0xffff", "0177777",
         "0b1111111111111111", "-1"},
        {"VT_UI2 65535", CVarion(static_cast<unsigned short>(65535)), "65535", "65535", "65535.0", "65535", "0xffff",
         "0177777", "0b1111111111111111", "65535"},
        {"VT_I4 -5", CVarion(-5), "-5", "0", "-5.0", "-5", "0xfffffffb", "037777777773",
         "0b11111111111111111111111111111011", "-5"},
        // %d reads the low 32 bits of the 64-bit reading: 4294967295 shows as -1.
        {"VT_UI4 max", CVarion(4294967295U), "-1", "4294967295", "4294967295.0", "4294967295", "0xffffffff",
         "037777777777", "0b" + kOnes32, "4294967295"},
        {"VT_I8 -1", CVarion(-1LL), "-1", "0", "-1.0", "-1", "0xffffffffffffffff", "01777777777777777777777",
         "0b" + kOnes64, "-1"},
        // The signed reading of the largest VT_UI8 fails and reads 0; %u keeps the low 32 bits.
        {"VT_UI8 max", CVarion(std::numeric_limits<ULONGLONG>::max()), "0", "4294967295",
         "18446744073709551616.0", "18446744073709551615", "0xffffffffffffffff", "01777777777777777777777",
         "0b" + kOnes64, "18446744073709551615"},
        // Floating values are rounded half away from zero when read as integers.
        {"VT_R4 2.5", CVarion(2.5f), "3", "3", "2.5", "2.5", "0x3", "03", "0b11", "2.5"},
        {"VT_R8 -2.5", CVarion(-2.5), "-3", "0", "-2.5", "-2.5", "0xfffffffffffffffd", "01777777777777777777775",
         "0b" + kOnes64.substr(2) + "01", "-2.5"},
        // No row in the hexadecimal and binary tables: no digits before the finishing step.
        {"VT_BOOL true", CVarion(true), "1", "1", "1.0", "true", "0x", "0", "0b", "true"},
        {"VT_BOOL false", CVarion(false), "0", "0", "0.0", "false", "0x", "0", "0b", "false"},
        {"VT_EMPTY", CVarion(), "0", "0", "0.0", "", "0x", "0", "0b", ""},
    };
    for (const Row& r : rows) {
        EXPECT_EQ(Show(r.value, "%d"), r.d) << r.name;
        EXPECT_EQ(Show(r.value, "%i"), r.d) << r.name;
        EXPECT_EQ(Show(r.value, "%u"), r.u) << r.name;
        EXPECT_EQ(Show(r.value, "%.1f"), r.f) << r.name;
        EXPECT_EQ(Show(r.value, "%.1lf"), r.f) << r.name;
        EXPECT_EQ(Show(r.value, "%s"), r.s) << r.name;
        EXPECT_EQ(Show(r.value, "%S"), r.s) << r.name;
        EXPECT_EQ(Show(r.value, "%x"), r.x) << r.name;
        EXPECT_EQ(Show(r.value, "%o"), r.o) << r.name;
        EXPECT_EQ(Show(r.value, "%b"), r.b) << r.name;
        EXPECT_EQ(Show(r.value, ""), r.plain) << r.name;
        EXPECT_EQ(Show(r.value, "#.##"), r.plain) << r.name;
    }
}

struct Case {
    CVarion value;
    const char* format;
    std::string expected;
};

TEST(DisplayCategories, HexadecimalFinishing) {
    const Case cases[] = {
        {CVarion(31), "%X", "0x1F"},
        {CVarion(31), "%Xh", "1Fh"},
        {CVarion(31), "%XH", "0x1FH"},        // only a lower-case h at the end keeps the digits bare
        {CVarion(31), "%#x", "0x1f"},         // already begins with 0x
        {CVarion(31), "%#X", "0X1F"},         // in any letter case
        {CVarion(31), "%04X", "0x001F"},
        {CVarion(31), "%5X", "0x   1F"},      // the prefix goes before the padding
        {CVarion(31), "val %X", "0xval 1F"},  // and before any text in front of the digits
        {CVarion(0), "%X", "0x0"},
        {CVarion(0), "%#x", "0x0"},           // %#x writes no 0x for zero
        {CVarion(255), "%x", "0xff"},         // two characters: the prefix is always added
        {CVarion(static_cast<short>(-1)), "%x", "0xffff"},
        {CVarion(static_cast<unsigned char>(255)), "%x", "0xff"},
        {CVarion(static_cast<char>(-1)), "%X", "0xFF"},
        {CVarion(-1LL), "%X", "0xFFFFFFFFFFFFFFFF"},
        {CVarion(3.7), "%X", "0x4"},          // a VT_R8 reads as a rounded 64-bit integer
        {CVarion(3.7f), "%X", "0x4"},         // a VT_R4 as a rounded 32-bit integer
        {CVarion(true), "%x", "0x"},
        {CVarion(OLESTR("not hex")), "%x", "not hex"},  // strings are never formatted
        {CVarion(static_cast<short>(-1)), "%lX", "0x"},  // "h" inserted after "l": unusable, no digits
        {CVarion(31), "%100X", "0x"},          // beyond 99 characters: no digits
    };
    for (const Case& c : cases) EXPECT_EQ(Show(c.value, c.format), c.expected) << c.format;
}

TEST(DisplayCategories, OctalFinishing) {
    const Case cases[] = {
        {CVarion(8), "%o", "010"},
        {CVarion(8), "%#o", "010"},
        {CVarion(0), "%o", "0"},
        {CVarion(8), "%5o", "0   10"},
        {CVarion(8), "%-5o|", "010   |"},
        {CVarion(static_cast<short>(-2)), "%o", "0177776"},
        {CVarion(true), "%o", "0"},
    };
    for (const Case& c : cases) EXPECT_EQ(Show(c.value, c.format), c.expected) << c.format;
}

TEST(DisplayCategories, BinaryDigitsWithoutTheFormatter) {
    const Case cases[] = {
        {CVarion(5), "%b", "0b101"},
        {CVarion(5), "%bb", "101b"},
        {CVarion(5), "%b and b", "101b"},
        {CVarion(5), "%8b", "0b101"},          // width and flags are not shown
        {CVarion(5), "value: %b", "0b101"},    // nor the text around
        {CVarion(5), "b", "0b101"},            // "%" put in front
        {CVarion(0), "%b", "0b0"},
        {CVarion(static_cast<unsigned short>(5)), "%b", "0b101"},
        {CVarion(static_cast<char>(-1)), "%b", "0b11111111"},
        {CVarion(static_cast<short>(-32768)), "%b", "0b1000000000000000"},
        {CVarion(static_cast<unsigned char>(128)), "%b", "0b10000000"},
        {CVarion(-1.0f), "%b", "0b11111111111111111111111111111111"},
        {CVarion(OLESTR("5")), "%b", "5"},
    };
    for (const Case& c : cases) EXPECT_EQ(Show(c.value, c.format), c.expected) << c.format;
}

TEST(DisplayCategories, FloatingValuesAndTheirNonNumbers) {
    ScopedUserLocale user("en_US.UTF-8");
    VARION_REQUIRE_USER_LOCALE(user);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    const Case cases[] = {
        {CVarion(3.14159), "%5.2f", " 3.14"},
        {CVarion(3.14159), "5.2f", " 3.14"},
        {CVarion(12.5), "Speed: %5.1f km/h", "Speed:  12.5 km/h"},
        {CVarion(1.5), "%e", "1.500000e+000"},
        {CVarion(1e-5), "%g", "1e-005"},
        {CVarion(1.5f), "%G", "1.5"},
        {CVarion(42), "%.2f", "42.00"},
        {CVarion(nan), "%f", "< Not a Number (NaN) >"},
        {CVarion(nan), "", "< Not a Number (NaN) >"},
        {CVarion(inf), "%5.2f", "< +/- Infinity >"},
        {CVarion(-inf), "%e", "< +/- Infinity >"},
        {CVarion(static_cast<float>(inf)), "%g", "< +/- Infinity >"},
        {CVarion(static_cast<float>(nan)), "", "< Not a Number (NaN) >"},
        {CVarion(nan), "%d", "0"},  // NaN has no integer reading
        {CVarion(2.5), "%s", "2.5"},
        {CVarion(2.0), "%s", "2.0"},
        {CVarion(2.5), "[%6s]", "[   2.5]"},
    };
    for (const Case& c : cases) EXPECT_EQ(Show(c.value, c.format), c.expected) << c.format;
}

TEST(DisplayCategories, SignedAndUnsignedConversions) {
    const Case cases[] = {
        {CVarion(-5), "%d", "-5"},
        {CVarion(-5), "d", "-5"},
        {CVarion(42), "%+05d", "+0042"},
        {CVarion(42), "%-5i|", "42   |"},
        {CVarion(-5), "%u", "0"},  // -5 has no unsigned reading
        {CVarion(65), "%c", "A"},
        {CVarion(0x263A), "%C", "\u263A"},
        {CVarion(0), "[%c]", "["},  // the text ends at the character 0, as the platform's buffer does
        {CVarion(1LL << 40), "%d", "0"},  // the low 32 bits
        {CVarion(1LL << 40), "%I64d", "1099511627776"},
        {CVarion(1LL << 40), "%lld", "1099511627776"},
        {CVarion(70000), "%hd", "4464"},
        {CVarion(OLESTR("12")), "%d", "12"},  // a string shows itself
    };
    for (const Case& c : cases) EXPECT_EQ(Show(c.value, c.format), c.expected) << c.format;
}

TEST(DisplayCategories, FormatsWithoutAUsableConversion) {
    ScopedUserLocale user("en_US.UTF-8");
    VARION_REQUIRE_USER_LOCALE(user);
    const Case cases[] = {
        {CVarion(42), "", "42"},
        {CVarion(42), "%n", "42"},           // none of the conversion characters: plain text
        {CVarion(42), "%p", "42"},
        {CVarion(2.5), "#.##", "2.5"},
        {CVarion(true), "", "true"},
        {CVarion(42), "%%", "42"},
        {CVarion(42), "%*d", ""},            // a conversion the formatter cannot use: empty
        {CVarion(42), "%d and %d", ""},      // a second conversion
        {CVarion(42), "%.*f", ""},
        {CVarion(42), "%I32d", ""},
        {CVarion(42), "%Lf", ""},
        {CVarion(42), "%5", "42"},           // "%5" holds no conversion character
        {CVarion(42), "%1000d", ""},
        {CVarion(42), "%99d", std::string(97, ' ') + "42"},
        {CVarion(42), "%100d", ""},
        {CVarion(42), "%%d", "%d"},          // the first conversion character follows "%%"
    };
    for (const Case& c : cases) EXPECT_EQ(Show(c.value, c.format), c.expected) << c.format;
}

TEST(DisplayCategories, UserDecimalSeparator) {
    int skipped = 0;
    if (ScopedUserLocale user("de_DE.UTF-8"); !user.Active()) {
        ++skipped;
    } else {
        // The C library writes "." and the user writes ",": the first "." becomes ",".
        EXPECT_EQ(Show(CVarion(3.14159), "%5.2f"), " 3,14");
        EXPECT_EQ(Show(CVarion(2.5), "%s"), "2,5");
        EXPECT_EQ(Show(CVarion(2.5), ""), "2,5");
        EXPECT_EQ(Show(CVarion(1.5), "%e"), "1,500000e+000");
        EXPECT_EQ(Show(CVarion(1.5), "%.1f and %.1f"), "");
        EXPECT_EQ(Show(CVarion(1.5), "%.1f."), "1,5.");  // only the first "." changes
    }
    if (ScopedUserLocale user("de_DE.UTF-8"); !user.Active()) {
        ++skipped;
    } else {
        // Both write ",": nothing to change.
        ScopedCLocale runtime("de_DE.UTF-8", LC_NUMERIC);
        ASSERT_TRUE(runtime.ok());
        EXPECT_EQ(Show(CVarion(3.14159), "%5.2f"), " 3,14");
        EXPECT_EQ(Show(CVarion(2.5), ""), "2,5");
    }
    if (ScopedUserLocale user("en_US.UTF-8"); !user.Active()) {
        ++skipped;
    } else {
        // The C library writes "," and the user ".": the first "," becomes ".".
        ScopedCLocale runtime("de_DE.UTF-8", LC_NUMERIC);
        ASSERT_TRUE(runtime.ok());
        EXPECT_EQ(Show(CVarion(3.14159), "%5.2f"), " 3.14");
        EXPECT_EQ(Show(CVarion(3.14159), "%5.2f, %%"), " 3.14, %");
    }
    if (skipped > 0) GTEST_SKIP() << skipped << " parts need a user locale the system does not have";
}

}  // namespace
