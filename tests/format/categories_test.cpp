// Display formats on the scalar path: every category on every scalar type,
// the finishing steps of hexadecimal, octal and binary, the plain text, the
// decimal separator and the formats the formatter cannot use.
#include "support/test_support.h"

#include <gtest/gtest.h>

#include <clocale>
#include <limits>
#include <string>
#include <utility>

using varion::test::ScopedCLocale;
using varion::test::ScopedUserLocale;
using varion::test::Utf8;

namespace {

std::string Show(const CVarion& v, const char* format) {
    return Utf8(v.GetStringWithDisplayFormat(CString(format), 0));
}

struct Case {
    CVarion value;
    const char* format;
    std::string expected;
};

template <std::size_t N>
void CheckAll(const Case (&cases)[N]) {
    for (const Case& c : cases) EXPECT_EQ(Show(c.value, c.format), c.expected) << c.value.GetType() << " " << c.format;
}

TEST(DisplayCategories, EveryCategoryOnEveryScalarTypeAndFloatingFormats) {
    // The C library and the user (en-US) both write "." here.
    ScopedUserLocale user("en_US.UTF-8");
    VARION_REQUIRE_USER_LOCALE(user);
    const std::string ones32(32, '1'), ones64(64, '1');
    const struct {
        CVarion value;
        const char *d, *u, *f, *s, *x, *o;  // %d, %u, %.1f, %s, %x, %o; %s is also the plain text
        std::string b;                      // %b
    } rows[] = {
        {CVarion(static_cast<char>(-1)), "-1", "0", "-1.0", "-1", "0xff", "0377", "0b11111111"},
        {CVarion(static_cast<unsigned char>(255)), "255", "255", "255.0", "255", "0xff", "0377", "0b11111111"},
        {CVarion(static_cast<short>(-1)), "-1", "0", "-1.0", "-1", "0xffff", "0177777", "0b" + ones32.substr(16)},
        {CVarion(static_cast<unsigned short>(65535)), "65535", "65535", "65535.0", "65535", "0xffff", "0177777",
         "0b" + ones32.substr(16)},
        {CVarion(-5), "-5", "0", "-5.0", "-5", "0xfffffffb", "037777777773", "0b" + ones32.substr(3) + "011"},
        // %d reads the low 32 bits of the 64-bit reading: 4294967295 shows as -1.
        {CVarion(4294967295U), "-1", "4294967295", "4294967295.0", "4294967295", "0xffffffff", "037777777777",
         "0b" + ones32},
        {CVarion(-1LL), "-1", "0", "-1.0", "-1", "0xffffffffffffffff", "01777777777777777777777", "0b" + ones64},
        // The signed reading of the largest VT_UI8 fails and reads 0; %u keeps the low 32 bits.
        {CVarion(std::numeric_limits<ULONGLONG>::max()), "0", "4294967295", "18446744073709551616.0",
         "18446744073709551615", "0xffffffffffffffff", "01777777777777777777777", "0b" + ones64},
        // Floating values are rounded half away from zero when read as integers.
        {CVarion(2.5f), "3", "3", "2.5", "2.5", "0x3", "03", "0b11"},
        {CVarion(-2.5), "-3", "0", "-2.5", "-2.5", "0xfffffffffffffffd", "01777777777777777777775",
         "0b" + ones64.substr(2) + "01"},
        // No row in the hexadecimal and binary tables: no digits before the finishing step.
        {CVarion(true), "1", "1", "1.0", "true", "0x", "0", "0b"},
        {CVarion(false), "0", "0", "0.0", "false", "0x", "0", "0b"},
        {CVarion(), "0", "0", "0.0", "", "0x", "0", "0b"},
    };
    for (const auto& r : rows) {
        // Each conversion character of a category gives the same text.
        const std::pair<const char*, std::string> formats[] = {
            {"%d", r.d},   {"%i", r.d}, {"%u", r.u}, {"%.1f", r.f}, {"%.1lf", r.f}, {"%s", r.s},    {"%S", r.s},
            {"%x", r.x},   {"%o", r.o}, {"%b", r.b}, {"", r.s},     {"#.##", r.s},
        };
        for (const auto& [format, expected] : formats) EXPECT_EQ(Show(r.value, format), expected) << r.s << " " << format;
    }
    // Floating formats and the texts of the non-numbers.
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    const Case cases[] = {
        {CVarion(3.14159), "%5.2f", " 3.14"}, {CVarion(3.14159), "5.2f", " 3.14"},
        {CVarion(12.5), "Speed: %5.1f km/h", "Speed:  12.5 km/h"}, {CVarion(1.5), "%e", "1.500000e+000"},
        {CVarion(1e-5), "%g", "1e-005"}, {CVarion(1.5f), "%G", "1.5"}, {CVarion(42), "%.2f", "42.00"},
        {CVarion(nan), "%f", "< Not a Number (NaN) >"}, {CVarion(nan), "", "< Not a Number (NaN) >"},
        {CVarion(inf), "%5.2f", "< +/- Infinity >"}, {CVarion(-inf), "%e", "< +/- Infinity >"},
        {CVarion(static_cast<float>(inf)), "%g", "< +/- Infinity >"},
        {CVarion(nan), "%d", "0"},  // NaN has no integer reading
        {CVarion(2.0), "%s", "2.0"}, {CVarion(2.5), "[%6s]", "[   2.5]"},
    };
    CheckAll(cases);
}

TEST(DisplayCategories, FinishingStepsAndIntegerConversions) {
    const Case cases[] = {
        // Hexadecimal: "0x" in front unless the text ends in a lower-case h or already begins with 0x.
        {CVarion(31), "%X", "0x1F"}, {CVarion(31), "%Xh", "1Fh"}, {CVarion(31), "%XH", "0x1FH"},
        {CVarion(31), "%#x", "0x1f"}, {CVarion(31), "%#X", "0X1F"}, {CVarion(31), "%04X", "0x001F"},
        {CVarion(31), "%5X", "0x   1F"},      // the prefix goes before the padding
        {CVarion(31), "val %X", "0xval 1F"},  // and before any text in front of the digits
        {CVarion(0), "%X", "0x0"}, {CVarion(0), "%#x", "0x0"},  // %#x writes no 0x for zero
        {CVarion(-1LL), "%X", "0xFFFFFFFFFFFFFFFF"}, {CVarion(3.7f), "%X", "0x4"},
        {CVarion(static_cast<short>(-1)), "%lX", "0x"},  // "h" inserted after "l": unusable, no digits
        {CVarion(31), "%100X", "0x"},                    // beyond 99 characters: no digits
        // Octal: "0" in front unless there already.
        {CVarion(8), "%o", "010"}, {CVarion(8), "%#o", "010"}, {CVarion(0), "%o", "0"}, {CVarion(8), "%5o", "0   10"},
        {CVarion(8), "%-5o|", "010   |"},
        // Binary: the digits alone, "0b" in front or "b" behind when the format holds a later b.
        {CVarion(5), "%b", "0b101"}, {CVarion(5), "%bb", "101b"}, {CVarion(5), "%b and b", "101b"},
        {CVarion(5), "%8b", "0b101"}, {CVarion(5), "value: %b", "0b101"}, {CVarion(5), "b", "0b101"},
        {CVarion(0), "%b", "0b0"}, {CVarion(static_cast<short>(-32768)), "%b", "0b1000000000000000"},
        {CVarion(static_cast<unsigned char>(128)), "%b", "0b10000000"},
        {CVarion(-1.0f), "%b", "0b11111111111111111111111111111111"},
        // Signed and unsigned integers, characters.
        {CVarion(-5), "d", "-5"}, {CVarion(42), "%+05d", "+0042"}, {CVarion(42), "%-5i|", "42   |"},
        {CVarion(65), "%c", "A"}, {CVarion(0x263A), "%C", "\u263A"},
        {CVarion(0), "[%c]", "["},  // the text ends at the character 0, as the platform's buffer does
        {CVarion(1LL << 40), "%d", "0"}, {CVarion(1LL << 40), "%I64d", "1099511627776"},
        {CVarion(1LL << 40), "%lld", "1099511627776"}, {CVarion(70000), "%hd", "4464"},
        // Strings are never formatted.
        {CVarion(OLESTR("not hex")), "%x", "not hex"}, {CVarion(OLESTR("5")), "%b", "5"},
        // Without a conversion character: the plain text; with one the formatter cannot use: empty.
        {CVarion(42), "", "42"}, {CVarion(42), "%n", "42"}, {CVarion(42), "%p", "42"}, {CVarion(42), "%%", "42"},
        {CVarion(42), "%5", "42"}, {CVarion(42), "%*d", ""}, {CVarion(42), "%d and %d", ""}, {CVarion(42), "%.*f", ""},
        {CVarion(42), "%I32d", ""}, {CVarion(42), "%Lf", ""}, {CVarion(42), "%1000d", ""}, {CVarion(42), "%100d", ""},
        {CVarion(42), "%99d", std::string(97, ' ') + "42"},
        {CVarion(42), "%%d", "%d"},  // the first conversion character follows "%%"
    };
    CheckAll(cases);
}

TEST(DisplayCategories, UserDecimalSeparator) {
    const struct {
        const char* user;     // the user's locale
        const char* runtime;  // LC_NUMERIC of the C library
        const char* format;
        double value;
        const char* expected;
    } cases[] = {
        // The C library writes "." and the user writes ",": the first "." becomes ",".
        {"de_DE.UTF-8", "C", "%5.2f", 3.14159, " 3,14"}, {"de_DE.UTF-8", "C", "%s", 2.5, "2,5"},
        {"de_DE.UTF-8", "C", "", 2.5, "2,5"}, {"de_DE.UTF-8", "C", "%e", 1.5, "1,500000e+000"},
        {"de_DE.UTF-8", "C", "%.1f and %.1f", 1.5, ""}, {"de_DE.UTF-8", "C", "%.1f.", 1.5, "1,5."},
        // Both write ",": nothing to change.
        {"de_DE.UTF-8", "de_DE.UTF-8", "%5.2f", 3.14159, " 3,14"}, {"de_DE.UTF-8", "de_DE.UTF-8", "", 2.5, "2,5"},
        // The C library writes "," and the user ".": the first "," becomes ".".
        {"en_US.UTF-8", "de_DE.UTF-8", "%5.2f", 3.14159, " 3.14"},
        {"en_US.UTF-8", "de_DE.UTF-8", "%5.2f, %%", 3.14159, " 3.14, %"},
    };
    int skipped = 0;
    for (const auto& c : cases) {
        ScopedUserLocale user(c.user);
        if (!user.Active() && ++skipped) continue;
        ScopedCLocale runtime(c.runtime, LC_NUMERIC);
        ASSERT_TRUE(runtime.ok());
        EXPECT_EQ(Show(CVarion(c.value), c.format), c.expected) << c.user << " / " << c.runtime << " / " << c.format;
    }
    if (skipped > 0) GTEST_SKIP() << skipped << " rows need a user locale the system does not have";
}

}  // namespace
