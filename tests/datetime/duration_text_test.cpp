// Duration texts: the directive format, ISO 8601 seconds and their parsers.
#include "datetime/datetime.h"
#include "support/test_support.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

using namespace varion::detail;
using varion::test::Utf8;

namespace {

const double kMs = 1.0 / 86400000.0;

TEST(DurationText, FormatDurationDirectives) {
    struct Row { double value; const char* format; const char* text; };
    const double fiveQuarter = DurationFromFields(0, 0, 0, 5.25);
    const Row rows[] = {
        {1.5, "", "1 12:00:00"},                     {kMs, "", "00:00:00.001"},
        {DurationFromFields(0, 0, 0, 0, 500, 16), "", "00:00: 0.500500"},
        {DurationFromFields(0, 0, 0, 59, 999, 31), "", "00:00:59.999969"},
        {0.999999, "", "23:59:59.913594"},  // 913 ms and 19 fractions
        {DurationFromFields(0, 1, 2, 3, 500, 0), "%#H:%#M:%#S", "1:2:3"},  // %#S stays whole
        {fiveQuarter, "%S s, %S again", "05.250 s, 05.250 again"},
        {DurationFromFields(3, 6, 5, 0, 0, 0), "%D days %H:%M|%#D", "3 days 06:05|3"},
        {0.0, "100%% %Q %#Q %", "100% %Q %#Q %"},  // unknown directives are copied
        {0.0, "%#", "%#"},
        // Negative durations: "-" and the text of the magnitude.
        {-1.5, "", "-1 12:00:00"},                   {-fiveQuarter, "%#S s", "-5 s"},
        {-1e-15, "", "00:00:00"},  // nothing to show: no sign either
    };
    for (const Row& r : rows) EXPECT_EQ(Utf8(FormatDuration(r.value, CString(r.format))), r.text) << r.format;
    // The seconds take the runtime's decimal separator.
    varion::test::ScopedCLocale comma("de_DE.UTF-8");
    EXPECT_EQ(Utf8(FormatDuration(DurationFromFields(0, 0, 0, 0, 500, 16), CString())), "00:00: 0,500500");
}

// Durations of -10 to +10 years in milliseconds: written as the independent
// text and read back to the same double and count; then the doubles that are
// no whole count of milliseconds.
TEST(DurationText, IsoRoundTripOverTwentyYears) {
    std::mt19937_64 random(7);
    const long long span = 3653LL * 86400000;
    std::uniform_int_distribution<long long> count(-span, span);
    std::vector<long long> counts = {0, 1, -1, 1000, 10, span, -span};
    for (int i = 0; i < 20000; ++i) counts.push_back(count(random));
    for (long long n : counts) {
        const double value = DurationFromMilliseconds(n);
        const unsigned long long m = n < 0 ? 0ULL - static_cast<unsigned long long>(n) : static_cast<unsigned long long>(n);
        std::string text = (n < 0 ? "-PT" : "PT") + std::to_string(m / 1000);
        if (m % 1000 != 0) {
            std::string ms = std::to_string(m % 1000 + 1000).substr(1);
            while (ms.back() == '0') ms.pop_back();
            text += "." + ms;
        }
        text += "S";
        const CString written = FormatIsoDuration(value);
        ASSERT_EQ(Utf8(written), text);
        double back = 0;
        ASSERT_EQ(ParseIsoDuration(written, back), RC_OK) << text;
        ASSERT_EQ(back, value) << text;
        ASSERT_EQ(DurationFields(back).totalMilliseconds, n) << text;
    }
    EXPECT_EQ(Utf8(FormatIsoDuration(-0.0)), "PT0S");
    EXPECT_EQ(Utf8(FormatIsoDuration(0.9999 * kMs)), "PT0.001S");
    EXPECT_EQ(Utf8(FormatIsoDuration(1e300)), "PT9223372036854775.807S");
}

// The parsers: what each reads, and the texts each refuses with the result
// code of the shape (not a duration of this form) or of the number.
TEST(DurationText, ParseShapes) {
    struct Row { const char* text; double value; };
    const auto ms = [](long long n) { return DurationFromMilliseconds(n); };
    const Row iso[] = {
        {"+PT0S", 0.0}, {"PT.5S", ms(500)}, {"PT5.1234S", ms(5123)}, {"PT1E3S", ms(1000000)}, {"PT 5S", ms(5000)},
    };
    const Row plain[] = {
        {" 12:30 ", DurationFromFields(0, 12, 30, 0.0)},      {":", 0.0},
        {"::5", DurationFromFields(0, 5, 0, 0.0)},            {"2  1:00", DurationFromFields(2, 1, 0, 0.0)},
        {"1 00:00: 5,25", DurationFromFields(1, 0, 0, 5.25)}, {"1:-30", DurationFromFields(0, 1, -30, 0.0)},
        {"1:2:3:4", DurationFromFields(0, 1, 2, 3.0)},  // anything after the seconds is ignored
    };
    using Texts = std::vector<const char*>;
    const Texts isoNotApplicable = {"P1D", "PT1H30M", "pt5s", "5S", "XPT5S", ""};
    const Texts isoNotConvertible = {"PT1H30S", "PTxS", "PT1.5xS", "PT1e999S", "PT1e16S", "PTINFS"};
    const Texts plainNotApplicable = {"12:30 5", "12", "-1:00", "1 x:00", "x 1:00", "1:2:3x", "1:2:3.4.5", "1:2:1e999", ""};
    const auto check = [](long (*parse)(const CString&, double&) noexcept, const auto& rows, const Texts& shapes,
                          const Texts& numbers) {
        for (const Row& r : rows) {
            double value = -1;
            ASSERT_EQ(parse(CString(r.text), value), RC_OK) << r.text;
            EXPECT_EQ(value, r.value) << r.text;
        }
        double scratch = 0;
        for (const char* text : shapes) EXPECT_EQ(parse(CString(text), scratch), RC_NOT_APPLICABLE) << text;
        for (const char* text : numbers) EXPECT_EQ(parse(CString(text), scratch), RC_NOT_CONVERTIBLE) << text;
    };
    check(&ParseIsoDuration, iso, isoNotApplicable, isoNotConvertible);
    check(&ParseDuration, plain, plainNotApplicable, {});
    // What FormatDuration writes for a positive duration reads back.
    for (double v : {1.5, DurationFromFields(3, 0, 0, 0, 7, 0), DurationFromFields(2, 0, 0, 59, 999, 31)}) {
        double back = -1;
        ASSERT_EQ(ParseDuration(FormatDuration(v, CString()), back), RC_OK);
        EXPECT_EQ(DurationFields(back).totalMilliseconds, DurationFields(v).totalMilliseconds);
    }
    const CString text("1 12:30:05,25");
    const CString isoText("-PT90.5S");
    double value = 0;
    const long before = varion::test::AllocationCount();
    EXPECT_EQ(ParseDuration(text, value), RC_OK);
    EXPECT_EQ(ParseIsoDuration(isoText, value), RC_OK);
    EXPECT_EQ(varion::test::AllocationCount() - before, 0) << "parsing allocates nothing";
}

}  // namespace
