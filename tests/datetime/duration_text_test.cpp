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
    struct Row {
        double value;
        const char* format;
        const char* text;
    };
    const double fiveQuarter = DurationFromFields(0, 0, 0, 5.25);
    const Row rows[] = {
        {1.5, "", "1 12:00:00"},
        {0.5, "", "12:00:00"},
        {45.0 / 86400, "", "00:00:45"},
        {kMs, "", "00:00:00.001"},
        {DurationFromFields(0, 1, 30, 5.25), "", "01:30:05.250"},
        {DurationFromFields(0, 0, 0, 0, 500, 16), "", "00:00: 0.500500"},
        {DurationFromFields(0, 0, 0, 59, 999, 31), "", "00:00:59.999969"},
        {DurationFromFields(0, 2, 5, 0, 0, 0), "%H h %M min", "02 h 05 min"},
        {DurationFromFields(0, 1, 2, 3, 500, 0), "%#H:%#M:%#S", "1:2:3"},  // %#S stays whole
        {fiveQuarter, "%S s, %S again", "05.250 s, 05.250 again"},
        {DurationFromFields(3, 6, 0, 0, 0, 0), "%D days %H:%M", "3 days 06:00"},
        {DurationFromFields(3, 6, 0, 0, 0, 0), "%#D|%H", "3|06"},
        {1.5, "%H", "12"},  // hours within the day
        {DurationFromFields(123456, 0, 0, 0, 0, 0), "%D", "123456"},
        {0.0, "100%% %Q %#Q %", "100% %Q %#Q %"},  // unknown directives are copied
        {0.0, "%#", "%#"},
        {fiveQuarter, "%%S", "%S"},
        {0.999999, "", "23:59:59.913594"},  // 913 ms and 19 fractions
        {1e-15, "", "00:00:00"},
        // Negative durations: "-" and the text of the magnitude.
        {-30.0 / 1440, "", "-00:30:00"},
        {-1.5, "", "-1 12:00:00"},
        {-kMs, "", "-00:00:00.001"},
        {-fiveQuarter, "%#S s", "-5 s"},
        {-1e-15, "", "00:00:00"},  // nothing to show: no sign either
    };
    for (const Row& r : rows) EXPECT_EQ(Utf8(FormatDuration(r.value, CString(r.format))), r.text) << r.format;

    // The seconds take the runtime's decimal separator.
    varion::test::ScopedCLocale comma("de_DE.UTF-8");
    EXPECT_EQ(Utf8(FormatDuration(fiveQuarter, CString())), "00:00:05,250");
    EXPECT_EQ(Utf8(FormatDuration(DurationFromFields(0, 0, 0, 0, 500, 16), CString())), "00:00: 0,500500");
}

TEST(DurationText, FormatIsoDuration) {
    struct Row {
        double value;
        const char* text;
    };
    const Row rows[] = {
        {90.5 / 86400, "PT90.5S"}, {-1.25 / 86400, "-PT1.25S"}, {0.0, "PT0S"},     {-0.0, "PT0S"},
        {1.0, "PT86400S"},         {kMs, "PT0.001S"},           {10 * kMs, "PT0.01S"}, {-0.25, "-PT21600S"},
        {0.9999 * kMs, "PT0.001S"}, {1e300, "PT9223372036854775.807S"},
    };
    for (const Row& r : rows) EXPECT_EQ(Utf8(FormatIsoDuration(r.value)), r.text) << r.value;
}

// Durations of -10 to +10 years in milliseconds: written as the independent
// text and read back to the same double and count.
TEST(DurationText, IsoRoundTripOverTwentyYears) {
    std::mt19937_64 random(7);
    const long long span = 3653LL * 86400000;
    std::uniform_int_distribution<long long> count(-span, span);
    std::vector<long long> counts = {0, 1, -1, 999, -999, 1000, 86400000, -86400000, span, -span};
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
}

TEST(DurationText, ParseIsoDurationShapes) {
    struct Row {
        const char* text;
        long rc;
        long long milliseconds;
    };
    const Row rows[] = {
        {"PT90.5S", RC_OK, 90500},
        {"-PT1.25S", RC_OK, -1250},
        {"+PT0S", RC_OK, 0},
        {"PT.5S", RC_OK, 500},
        {"PT5.1234S", RC_OK, 5123},
        {"-PT1S", RC_OK, -1000},
        {"PT1E3S", RC_OK, 1000000},
        {"PT5.S", RC_OK, 5000},
        {"PT 5S", RC_OK, 5000},
        {"P1D", RC_NOT_APPLICABLE, 0},
        {"P10D", RC_NOT_APPLICABLE, 0},
        {"PT1H30M", RC_NOT_APPLICABLE, 0},
        {"pt5s", RC_NOT_APPLICABLE, 0},
        {"5S", RC_NOT_APPLICABLE, 0},
        {"XPT5S", RC_NOT_APPLICABLE, 0},
        {"", RC_NOT_APPLICABLE, 0},
        {"PT1H30S", RC_NOT_CONVERTIBLE, 0},
        {"PTxS", RC_NOT_CONVERTIBLE, 0},
        {"PT1.5xS", RC_NOT_CONVERTIBLE, 0},
        {"PT1e999S", RC_NOT_CONVERTIBLE, 0},
        {"PT1e16S", RC_NOT_CONVERTIBLE, 0},
        {"PTINFS", RC_NOT_CONVERTIBLE, 0},
    };
    for (const Row& r : rows) {
        double value = -1;
        ASSERT_EQ(ParseIsoDuration(CString(r.text), value), r.rc) << r.text;
        if (r.rc == RC_OK) {
            EXPECT_EQ(value, DurationFromMilliseconds(r.milliseconds)) << r.text;
        }
    }
}

TEST(DurationText, ParseDurationShapes) {
    struct Row {
        const char* text;
        long rc;
        double value;
    };
    const Row rows[] = {
        {"12:30", RC_OK, DurationFromFields(0, 12, 30, 0.0)},
        {" 12:30 ", RC_OK, DurationFromFields(0, 12, 30, 0.0)},
        {"1 12:00:00", RC_OK, 1.5},
        {"00:00:05.25", RC_OK, DurationFromFields(0, 0, 0, 5.25)},
        {"00:00:05,25", RC_OK, DurationFromFields(0, 0, 0, 5.25)},
        {"0:90", RC_OK, DurationFromFields(0, 0, 90, 0.0)},
        {":", RC_OK, 0.0},
        {"1:2:3:4", RC_OK, DurationFromFields(0, 1, 2, 3.0)},  // anything after the seconds is ignored
        {"::5", RC_OK, DurationFromFields(0, 5, 0, 0.0)},
        {"2  1:00", RC_OK, DurationFromFields(2, 1, 0, 0.0)},
        {"00:00: 0.500500", RC_OK, DurationFromFields(0, 0, 0, 0.5005)},  // FormatDuration's padding
        {"1 00:00: 5,25", RC_OK, DurationFromFields(1, 0, 0, 5.25)},
        {"12:30 5", RC_NOT_APPLICABLE, 0},
        {"1:-30", RC_OK, DurationFromFields(0, 1, -30, 0.0)},
        {"12", RC_NOT_APPLICABLE, 0},
        {"-1:00", RC_NOT_APPLICABLE, 0},
        {"1 x:00", RC_NOT_APPLICABLE, 0},
        {"x 1:00", RC_NOT_APPLICABLE, 0},
        {"1:2:3x", RC_NOT_APPLICABLE, 0},
        {"1:2:3.4.5", RC_NOT_APPLICABLE, 0},
        {"1:2:1e999", RC_NOT_APPLICABLE, 0},
        {"", RC_NOT_APPLICABLE, 0},
    };
    for (const Row& r : rows) {
        double value = -1;
        ASSERT_EQ(ParseDuration(CString(r.text), value), r.rc) << r.text;
        if (r.rc == RC_OK) {
            EXPECT_EQ(value, r.value) << r.text;
        }
    }
    // What FormatDuration writes for a positive duration reads back.
    for (double v : {1.5, 0.5, DurationFromFields(0, 1, 30, 5.25), DurationFromFields(3, 0, 0, 0, 7, 0),
                     DurationFromFields(0, 0, 0, 5, 2, 16), DurationFromFields(2, 0, 0, 59, 999, 31)}) {
        double back = -1;
        ASSERT_EQ(ParseDuration(FormatDuration(v, CString()), back), RC_OK);
        EXPECT_EQ(DurationFields(back).totalMilliseconds, DurationFields(v).totalMilliseconds);
    }
}

TEST(DurationText, ParsingAllocatesNothing) {
    const CString text("1 12:30:05,25");
    const CString iso("-PT90.5S");
    double value = 0;
    const long before = varion::test::AllocationCount();
    EXPECT_EQ(ParseDuration(text, value), RC_OK);
    EXPECT_EQ(ParseIsoDuration(iso, value), RC_OK);
    EXPECT_EQ(varion::test::AllocationCount() - before, 0);
}

}  // namespace
