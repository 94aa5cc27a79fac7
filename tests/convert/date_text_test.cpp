// Dates and durations as text: each date type reaches its own producer and
// parser, date-time texts come back as VT_DATE, and what is written reads
// back to the millisecond.
#include "convert_test_util.h"

#include "datetime/datetime.h"

#include <gtest/gtest.h>

using namespace varion::test;

namespace {

constexpr double kMs = 1.0 / 86400000.0;
constexpr double kNoon17March2023 = 45002.5;

TEST(DateText, EachTypeWritesItsOwnForm) {
    ScopedUserLocale user("de_DE.UTF-8");  // the user's locale for date texts
    VARION_REQUIRE_USER_LOCALE(user);
    const std::string noon = LocaleText("17.03.2023 12:00:00", kNoon17March2023);
    const struct { VARTYPE type; double days; std::string text; } cases[] = {
        {VT_DATE, kNoon17March2023, noon},
        {VTX_DATETIME_ALT, kNoon17March2023 + 250 * kMs, noon + ",250"},
        {VTX_ISO_DATETIME, kNoon17March2023 + 250 * kMs, "2023-03-17T12:00:00.25"},
        {VTX_DURATION, 1.5, "1 12:00:00"},
        {VTX_DURATION_MSF, 0.5, "12:00:00"},
        {VTX_ISO_DURATION, -0.25, "-PT21600S"},
    };
    for (const auto& c : cases) {
        CVarion v = Raw(c.type, c.days);
        ASSERT_EQ(v.SetType(VT_BSTR), RC_OK) << c.text;
        EXPECT_EQ(StringOf(v), c.text);
    }
}

// The parsers' own rules are checked with the date services; here: that the
// text is trimmed and upper-cased, reaches the parser of the type asked for,
// and that a refusal leaves the string as it was.
TEST(DateText, EachTypeReadsWithItsOwnParser) {
    ScopedUserLocale user("de_DE.UTF-8");
    VARION_REQUIRE_USER_LOCALE(user);
    // Each text, the type asked for, the result code, the type and day count of the result.
    const struct { const char* text; VARTYPE target; long code; VARTYPE type; double days; } cases[] = {
        {" 17.03.2023 12:00:00 ", VTX_DATETIME, 0, VT_DATE, kNoon17March2023},
        {"pt90.5s", VTX_ISO_DURATION, 0, VTX_ISO_DURATION, 90500 * kMs},
        {"not a date", VT_DATE, -2, VT_BSTR, 0},
    };
    for (const auto& c : cases) {
        CVarion v(c.text);
        ExpectChange(v, c.target, c.code, c.text);
        EXPECT_EQ(v.GetType(), c.type) << c.text;
        if (c.code == RC_OK) { EXPECT_NEAR(FieldOf<double>(v), c.days, 1e-9 * kMs) << c.text; }
    }
}

TEST(DateText, WrittenTextsReadBackToTheMillisecond) {
    const VARTYPE types[] = {VT_DATE, VTX_DATETIME_ALT, VTX_DATETIME, VTX_ISO_DATETIME,
                             VTX_DURATION, VTX_DURATION_MSF, VTX_ISO_DURATION};
    const double days[] = {2.0, kNoon17March2023, kNoon17March2023 + 999 * kMs, 0.75 + 1 * kMs,
                           36526.0 + 7 * kMs, 2958465.0 + 0.5};
    for (const char* locale : ChoosableUserLocales()) {
        ScopedUserLocale user(locale);
        const std::string under = std::string(" under ") + (locale == nullptr ? "the system's locale" : locale);
        for (const VARTYPE type : types) {
            for (const double d : days) {
                CVarion v = Raw(type, d);
                ASSERT_EQ(v.SetType(VT_BSTR), RC_OK) << type << " " << d;
                const std::string what = std::to_string(type) + " " + StringOf(v) + under;
                ASSERT_EQ(v.SetType(type), RC_OK) << what;
                const bool dateTime = CVarion::IsDateTimeType(type);
                EXPECT_EQ(v.GetType(), dateTime && type != VTX_ISO_DATETIME ? VARTYPE(VT_DATE) : type) << what;
                EXPECT_EQ(varion::detail::RoundedCount(FieldOf<double>(v), 86400000.0),
                          varion::detail::RoundedCount(d, 86400000.0)) << what;
            }
        }
    }
}

}  // namespace
