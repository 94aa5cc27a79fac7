// The printf-like formatter: generated matrices checked against the C
// library's snprintf (after its two-digit exponents and its length prefixes
// are adjusted), the conventions where the two differ, malformed formats and
// the buffer limits.
#include "guarded.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

using varion::FormatArg;
using varion::detail::FormatOne;
using varion::detail::FormatStatus;
using varion::detail::kFormatBufferSize;
using varion::test::Guarded;
using varion::test::Outcome;

namespace {

Outcome Format(const std::string& format, const FormatArg& arg, std::size_t capacity = kFormatBufferSize) {
    return Guarded(capacity, format, [&](OLECHAR* out) {
        return FormatOne(OleString(format.begin(), format.end()), arg, out, capacity);
    });
}

// The C library's text for a format it is given verbatim.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
template <class T>
std::string Reference(const std::string& format, T value) {
    char buffer[2048];
    const int n = std::snprintf(buffer, sizeof buffer, format.c_str(), value);
    return n < 0 ? std::string("<error>") : std::string(buffer, static_cast<std::size_t>(n));
}
#pragma GCC diagnostic pop

// What the formatter should write where the C library writes a two-digit
// exponent: one more exponent digit, with the field one narrower so that the
// padding stays the same width.
std::string ThreeDigitExponent(const std::string& head, int width, const std::string& tail, double value) {
    std::string text = Reference(head + (width > 0 ? std::to_string(width) : "") + tail, value);
    const std::size_t e = text.find_last_of("eE");
    if (e == std::string::npos || e + 1 >= text.size() || (text[e + 1] != '+' && text[e + 1] != '-')) return text;
    std::size_t digits = 0;
    while (e + 2 + digits < text.size() && std::isdigit(static_cast<unsigned char>(text[e + 2 + digits]))) ++digits;
    if (digits >= 3) return text;
    text = Reference(head + (width > 1 ? std::to_string(width - 1) : "") + tail, value);
    return text.insert(text.find_last_of("eE") + 2, "0");
}

// The fields the matrices combine with each conversion: every combination
// of the five flags, five widths and six precisions.
struct Field {
    std::string flags;
    int width;
    std::string precision;
    std::string Text() const { return "%" + flags + (width ? std::to_string(width) : "") + precision; }
};
const std::vector<Field> kFields = [] {
    std::vector<Field> fields;
    for (unsigned mask = 0; mask < 32; ++mask) {
        std::string flags;
        for (unsigned i = 0; i < 5; ++i)
            if (mask & (1U << i)) flags += "-+ #0"[i];
        for (const int width : {0, 1, 4, 12, 30})
            for (const char* precision : {"", ".", ".0", ".1", ".5", ".17"}) fields.push_back({flags, width, precision});
    }
    return fields;
}();

// Texts longer than 99 characters must overflow to the empty text.
void ExpectMatch(const std::string& format, const FormatArg& arg, const std::string& expected, int& failures) {
    const Outcome got = Format(format, arg);
    const bool fits = expected.size() <= 99;
    const bool ok = fits ? (got.status == FormatStatus::Ok && got.text == expected)
                         : (got.status == FormatStatus::Overflow && got.text.empty());
    if (!ok && ++failures <= 20)
        ADD_FAILURE() << "format \"" << format << "\": got \"" << got.text << "\", expected \""
                      << (fits ? expected : "<overflow>") << "\"";
}

TEST(FormatMatrix, IntegersMatchSnprintfForEveryFlagWidthPrecisionAndPrefix) {
    VARION_REQUIRE_GLIBC_ORACLE();
    // Zero, one and the edges of every width the prefixes select.
    const std::int64_t values[] = {0, 1, -1, 127, 128, 255, 256, 32767, -32768, 65535, 65536, 2147483647,
                                   -2147483647 - 1, 4294967295LL, 4294967296LL + 5, -4294967296LL - 5,
                                   std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::max()};
    // Our prefix, the C library's prefix, and whether the value keeps 64 bits (else its low 32).
    const struct { const char* ours; const char* theirs; bool wide; } prefixes[] = {
        {"", "", false}, {"l", "", false}, {"h", "h", false}, {"hh", "hh", false}, {"ll", "ll", true}, {"I64", "ll", true}};
    int failures = 0;
    for (const char conv : std::string("diouxX"))
        for (const auto& p : prefixes)
            for (const Field& spec : kFields)
                for (const std::int64_t v : values) {
                    const std::string theirs = spec.Text() + p.theirs + conv;
                    const auto low = static_cast<std::uint32_t>(v);
                    const bool isSigned = conv == 'd' || conv == 'i';
                    const std::string expected =
                        p.wide ? (isSigned ? Reference(theirs, static_cast<long long>(v))
                                           : Reference(theirs, static_cast<unsigned long long>(v)))
                               : (isSigned ? Reference(theirs, static_cast<std::int32_t>(low)) : Reference(theirs, low));
                    const FormatArg arg = isSigned ? FormatArg(static_cast<long long>(v))
                                                   : FormatArg(static_cast<unsigned long long>(v));
                    ExpectMatch(spec.Text() + p.ours + conv, arg, expected, failures);
                }
    EXPECT_EQ(failures, 0);
}

// Every floating conversion against snprintf; "l" changes nothing on them.
void CheckFloats() {
    const double inf = std::numeric_limits<double>::infinity();
    // Signed zeros, ties, carries into a new digit or exponent, the edges of
    // the "%g" styles (1e-5, 1e-4; precision 17 against 1e16) and the range.
    const double values[] = {0.0, -0.0, 1.0, 0.1, 0.5, 2.5, -2.5, 0.05, -123.456, 9.9999995, 99999.5, 999999.5,
                             1e-5, 0.0001, 1e16, 1e21, -1e-100, 5e-324, std::numeric_limits<double>::max(), inf,
                             -inf, std::numeric_limits<double>::quiet_NaN()};
    int failures = 0;
    for (const char conv : std::string("eEfgG"))
        for (const Field& spec : kFields)
            for (const double v : values) {
                const std::string head = "%" + spec.flags;
                std::string expected = ThreeDigitExponent(head, spec.width, spec.precision + conv, v);
                // The C library drops the zeros of "%#g" when rounding carries into a new
                // exponent (999999.5 gives 1.e+06). By definition "%#g" in its exponent
                // style is "%#e" with one digit less of precision.
                if ((conv == 'g' || conv == 'G') && spec.flags.find('#') != std::string::npos &&
                    expected.find_first_of("eE") != std::string::npos && std::isfinite(v)) {
                    const int p = spec.precision.empty() ? 6 : std::max(1, std::atoi(spec.precision.c_str() + 1));
                    const std::string tail = "." + std::to_string(p - 1) + (conv == 'g' ? 'e' : 'E');
                    expected = ThreeDigitExponent(head, spec.width, tail, v);
                }
                ExpectMatch(spec.Text() + conv, FormatArg(v), expected, failures);
                ExpectMatch(spec.Text() + "l" + conv, FormatArg(v), expected, failures);
            }
    EXPECT_EQ(failures, 0);
}

TEST(FormatMatrix, FloatsMatchSnprintfWithThreeDigitExponents) {
    VARION_REQUIRE_GLIBC_ORACLE();
    CheckFloats();
}

TEST(FormatMatrix, FloatsUseTheCLibraryDecimalSeparator) {
    VARION_REQUIRE_GLIBC_ORACLE();
    varion::test::ScopedCLocale comma("de_DE.UTF-8", LC_NUMERIC);
    ASSERT_TRUE(comma.ok());
    ASSERT_EQ(Reference("%.1f", 1.5), "1,5");  // the C library itself writes the comma
    CheckFloats();
}

TEST(FormatMatrix, CharactersAndTextsMatchSnprintf) {
    int failures = 0;
    for (const Field& field : kFields)
        for (const char* prefix : {"", "h", "l"})
            for (const char conv : {'c', 'C', 's', 'S'}) {
                const std::string spec = field.Text(), ours = spec + prefix + conv;
                if (conv == 'c' || conv == 'C')
                    for (const int code : {32, 48, 65, 122, 126})
                        ExpectMatch(ours, FormatArg(code), Reference(spec + "c", code), failures);
                else
                    for (const std::string text : {"", "a", "hello", "a text of exactly twenty-nine"}) {
                        const OleString wide(text.begin(), text.end());
                        ExpectMatch(ours, FormatArg(OleStringView(wide)), Reference(spec + "s", text.c_str()), failures);
                    }
            }
    EXPECT_EQ(failures, 0);
}

TEST(FormatMatrix, FixedPointMatchesSnprintfOnRandomValuesAndTies) {
    std::uint64_t state = 0x9E3779B97F4A7C15ULL;
    auto next = [&state] {  // xorshift64
        state ^= state << 13;
        state ^= state >> 7;
        return state ^= state << 17;
    };
    std::vector<double> values;
    for (int i = 0; i < 20000; ++i) {
        // Random bit patterns over the whole range, and values of display size.
        const std::uint64_t bits = next() & 0x7FFFFFFFFFFFFFFFULL;
        double x = 0;
        std::memcpy(&x, &bits, sizeof x);
        if (std::isfinite(x)) values.push_back(x);
        values.push_back(static_cast<double>(next() % 2000000000) / static_cast<double>(1ULL << (next() % 60)));
    }
    // Exact ties at every precision: k + 0.5 units of the last digit.
    for (int p = 0; p <= 15; ++p)
        for (const double t : {0.5, 1.5, 2.5, 0.125, 0.375, 1.0625, 1023.5, 4503599627370495.5, 4503599627370496.5})
            values.push_back(t / std::pow(10.0, p));
    int failures = 0;
    for (const double v : values)
        for (int p = 0; p <= 16; ++p) {
            const std::string spec = "%." + std::to_string(p) + "f";
            ExpectMatch(spec, FormatArg(v), Reference(spec, v), failures);
            ExpectMatch(spec, FormatArg(-v), Reference(spec, -v), failures);
        }
    EXPECT_EQ(failures, 0);
}

struct Case {
    const char* format;
    FormatArg arg;
    const char* expected;
};

// The conventions of the display formats, where they differ from C99's
// (the matrices above decide the rest for every flag, width and precision).
TEST(FormatConventions, TableOfPlatformConventions) {
    const Case cases[] = {
        // One row each for the conventions the matrices decide against the C
        // library: three exponent digits, and "l" is 32-bit.
        {"%e", FormatArg(1.5), "1.500000e+000"}, {"%ld", FormatArg(4294967296LL + 5), "5"},
        // Characters are UTF-16 code units (padding and precision, which do not
        // look at the units, the text matrix decides).
        {"%c", FormatArg(0x263A), "\u263A"}, {"%hc", FormatArg(0x141), "A"}, {"%c", FormatArg(0x10041), "A"},
        // An integer for a floating conversion is converted; unsigned stays unsigned.
        {"%.1f", FormatArg(-3), "-3.0"}, {"%.0f", FormatArg(std::numeric_limits<unsigned long long>::max()), "18446744073709551616"},
        // Text around the conversion, and %%.
        {"Speed: %5.1f km/h", FormatArg(12.5), "Speed:  12.5 km/h"}, {"%d%%", FormatArg(42), "42%"},
        {"", FormatArg(1), ""}, {"%s", FormatArg(static_cast<const OLECHAR*>(nullptr)), "(null)"},
    };
    for (const Case& c : cases) {
        const Outcome got = Format(c.format, c.arg);
        EXPECT_EQ(got.status, FormatStatus::Ok) << c.format;
        EXPECT_EQ(got.text, c.expected) << c.format;
    }
    // The format ends at its first NUL; a character code 0 is written and counted.
    const OLECHAR format[] = {'%', 'd', 0, '%', 'd', 0};
    OLECHAR out[kFormatBufferSize];
    EXPECT_EQ(FormatOne(OleStringView(format, 5), FormatArg(7), out, kFormatBufferSize).status, FormatStatus::Ok);
    EXPECT_EQ(varion::test::Utf8(CString(out)), "7");
    const auto zero = FormatOne(OLESTR("%2c|"), FormatArg(0), out, kFormatBufferSize);
    EXPECT_EQ(OleString(out, zero.length), OleString(OLESTR(" \0|"), 3));
}

// Formats the formatter cannot use: the empty text, never an argument read.
// One row per way of failing: flags and counts, length prefixes, the
// conversion, the argument's kind and the number of conversions.
TEST(FormatMalformed, UnusableFormatsGiveTheEmptyText) {
    const FormatArg i(1), d(1.0), s(OLESTR("a"));
    const Case cases[] = {
        {"%n", i, ""},    {"%*d", i, ""},   {"%.*d", i, ""},   {"%Lf", d, ""},    {"%hf", d, ""},  {"%llf", d, ""},
        {"%I6d", i, ""},  {"%I65d", i, ""}, {"%I", i, ""},     {"%llc", i, ""},   {"%hhs", s, ""}, {"%5%", i, ""},
        {"%", i, ""},     {"%-+ #0", i, ""}, {"%5", i, ""},    {"%.", i, ""},     {"%l", i, ""},   {"%d and %d", i, ""},
        {"%1000d", i, ""}, {"%.1000f", d, ""}, {"%99999999999999999999d", i, ""}, {"%s", i, ""},   {"%c", d, ""},
        {"%d", FormatArg(1.5), ""}, {"%f", FormatArg(OLESTR("1")), ""},
    };
    for (const Case& c : cases) {
        const Outcome got = Format(c.format, c.arg);
        EXPECT_EQ(got.status, FormatStatus::Malformed) << c.format;
        EXPECT_EQ(got.text, "") << c.format;
    }
}

TEST(FormatLimits, NinetyNineCharactersFitAndOneMoreDoesNot) {
    const std::string text98(98, 'x');
    const struct { std::string format; FormatArg arg; std::size_t length; } limits[] = {
        {"%99d", FormatArg(1), 99},          {"%100d", FormatArg(1), 100},        {"%.97f", FormatArg(0.5), 99},
        {"%.98f", FormatArg(0.5), 100},      {text98 + "%d", FormatArg(7), 99},   {text98 + "%d", FormatArg(17), 100},
        {text98 + "%%", FormatArg(1), 99},   {text98 + "ab", FormatArg(1), 100},  {"%.0f", FormatArg(1.5e99), 100},
        {"%f", FormatArg(std::numeric_limits<double>::max()), 316}, {"%#999.999g", FormatArg(5e-324), 999},
    };
    for (const auto& l : limits) {
        const Outcome got = Format(l.format, l.arg);
        EXPECT_EQ(got.status, l.length <= 99 ? FormatStatus::Ok : FormatStatus::Overflow) << l.format;
        EXPECT_EQ(got.text.size(), l.length <= 99 ? l.length : 0) << l.format;
    }
    // The caller's capacity: never exceeded, the terminator included.
    for (std::size_t capacity = 1; capacity <= 8; ++capacity)
        EXPECT_EQ(Format("%5.2f", FormatArg(3.14159), capacity).text, capacity > 5 ? " 3.14" : "") << capacity;
    EXPECT_EQ(Format("%5.2f", FormatArg(3.14159), 5).status, FormatStatus::Overflow);
    EXPECT_EQ(Format("", FormatArg(1), 1).status, FormatStatus::Ok);
    EXPECT_EQ(FormatOne(OLESTR(""), FormatArg(1), nullptr, 10).status, FormatStatus::Overflow);
    EXPECT_EQ(Format("x", FormatArg(1), 0).status, FormatStatus::Overflow);  // the guard checks nothing was written
}

// Several arguments: each conversion of CString::Format takes the next one.
TEST(FormatList, EachConversionTakesTheNextArgument) {
    CString s;
    s.Format(OLESTR("%04d-%02d-%02dT%02d:%02d:%02d"), 2026, 11L, static_cast<short>(17), 20U, 18ULL, 38);
    EXPECT_EQ(varion::test::Utf8(s), "2026-11-17T20:18:38");
    s.Format(OLESTR("%s: %.1f %s (%c%%)"), OLESTR("Speed"), 12.25f, CString(OLESTR("km/h")), OLECHAR('x'));
    EXPECT_EQ(varion::test::Utf8(s), "Speed: 12.2 km/h (x%)");
    s.Format(OLESTR("%s|%300d"), CString(std::string(500, 'y').c_str()), 1);
    EXPECT_EQ(s.GetLength(), 500 + 1 + 300);  // CString::Format has no 99-character limit
    s.Format(OLESTR("%d"), 1, 2, 3);  // extra arguments are ignored
    EXPECT_EQ(varion::test::Utf8(s), "1");
    s = OLESTR("<%s>");
    s.Format(s, s);  // the format may be the text itself
    EXPECT_EQ(varion::test::Utf8(s), "<<%s>>");
    // Formats that do not fit the arguments empty the text.
    s = OLESTR("previous");
    s.Format(OLESTR("%d %d"), 1);
    EXPECT_TRUE(s.IsEmpty());
    s = OLESTR("previous");
    s.FormatV(OLESTR("%d"), nullptr, 3);
    EXPECT_TRUE(s.IsEmpty());
}

}  // namespace
