// Dates and durations as text: each date type reaches its own producer and
// parser, date-time texts come back as VT_DATE, and what is written reads
// back to the millisecond.
#include "convert_test_util.h"

#include "datetime/datetime.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace varion::test;

namespace {

constexpr double kMs = 1.0 / 86400000.0;
constexpr double kNoon17March2023 = 45002.5;

struct WriteCase {
    VARTYPE type;
    double days;
    std::string text;
};

TEST(DateText, EachTypeWritesItsOwnForm) {
    varion::test::ScopedUserLocale user("de_DE.UTF-8");  // the user's locale for date texts
    VARION_REQUIRE_USER_LOCALE(user);
    const std::string noon = varion::test::LocaleText("17.03.2023 12:00:00", kNoon17March2023);
    const WriteCase cases[] = {
        {VT_DATE, kNoon17March2023, noon},
        {VTX_DATETIME, kNoon17March2023, noon},
        {VTX_DATETIME_ALT, kNoon17March2023 + 250 * kMs, noon + ",250"},
        {VTX_ISO_DATETIME, kNoon17March2023 + 250 * kMs, "2023-03-17T12:00:00.25"},
        {VTX_DURATION, 1.5, "1 12:00:00"},
        {VTX_DURATION_MSF, 0.5, "12:00:00"},
        {VTX_ISO_DURATION, 1.5, "PT129600S"},
        {VTX_ISO_DURATION, -0.25, "-PT21600S"},
    };
    for (const WriteCase& c : cases) {
        CVarion v = Raw(c.type, c.days);
        ASSERT_EQ(v.SetType(VT_BSTR), RC_OK) << c.text;
        EXPECT_EQ(StringOf(v), c.text);
    }
}

struct ReadCase {
    const char* text;
    VARTYPE target;
    long code;
    VARTYPE type;  // of the result
    double days;
};

TEST(DateText, EachTypeReadsWithItsOwnParser) {
    varion::test::ScopedUserLocale user("de_DE.UTF-8");
    VARION_REQUIRE_USER_LOCALE(user);
    double isoDay = 0;
    ASSERT_EQ(varion::detail::DateFromFields(2026, 11, 17, 20, 18, 38, 250, isoDay), 0);
    const ReadCase cases[] = {
        {" 17.03.2023 12:00:00 ", VTX_DATETIME, 0, VT_DATE, kNoon17March2023},
        {"17.03.2023 12:00:00,250", VTX_DATETIME, 0, VT_DATE, kNoon17March2023 + 0.25 / 86400},
        {"1 12:00:00", VTX_DURATION_MSF, 0, VTX_DURATION_MSF, 1.5},
        {"00:00:05.25", VTX_DURATION, 0, VTX_DURATION, 5.25 / 86400},
        {"pt90.5s", VTX_ISO_DURATION, 0, VTX_ISO_DURATION, 90500 * kMs},  // upper-cased before parsing
        {"-PT1S", VTX_ISO_DURATION, 0, VTX_ISO_DURATION, -1000 * kMs},
        {"2026-11-17t20:18:38.25", VTX_ISO_DATETIME, 0, VTX_ISO_DATETIME, isoDay},
        {"not a date", VT_DATE, -2, VT_BSTR, 0},
        {"-1:00", VTX_DURATION, -2, VT_BSTR, 0},
        {"12", VTX_DURATION_MSF, -2, VT_BSTR, 0},
        {"P1D", VTX_ISO_DURATION, -2, VT_BSTR, 0},
        {"2026-02-30", VTX_ISO_DATETIME, -2, VT_BSTR, 0},
        {"17.03.2023 12:00:00,2x", VT_DATE, -2, VT_BSTR, 0},
    };
    for (const ReadCase& c : cases) {
        CVarion v(c.text);
        const auto before = Bytes(v);
        EXPECT_EQ(v.SetType(c.target), c.code) << c.text;
        EXPECT_EQ(v.GetType(), c.type) << c.text;
        if (c.code == RC_OK) {
            EXPECT_NEAR(FieldOf<double>(v), c.days, 1e-9 * kMs) << c.text;
        } else {
            EXPECT_EQ(Bytes(v), before) << c.text;
        }
    }
}

TEST(DateText, WrittenTextsReadBackToTheMillisecond) {
    const VARTYPE types[] = {VT_DATE, VTX_DATETIME_ALT, VTX_DATETIME, VTX_ISO_DATETIME,
                             VTX_DURATION, VTX_DURATION_MSF, VTX_ISO_DURATION};
    const double days[] = {2.0, kNoon17March2023, kNoon17March2023 + 999 * kMs, 0.75 + 1 * kMs,
                           36526.0 + 7 * kMs, 2958465.0 + 0.5};
    for (const char* locale : varion::test::ChoosableUserLocales()) {
        varion::test::ScopedUserLocale user(locale);
        if (locale == nullptr) locale = "the system's locale";
        for (const VARTYPE type : types) {
            for (const double d : days) {
                CVarion v = Raw(type, d);
                ASSERT_EQ(v.SetType(VT_BSTR), RC_OK) << type << " " << d;
                const std::string text = StringOf(v);
                ASSERT_EQ(v.SetType(type), RC_OK) << type << " " << text << " under " << locale;
                const bool dateTime = CVarion::IsDateTimeType(type);
                EXPECT_EQ(v.GetType(), dateTime && type != VTX_ISO_DATETIME ? VARTYPE(VT_DATE) : type) << text;
                const double back = FieldOf<double>(v);
                EXPECT_EQ(varion::detail::RoundedCount(back, 86400000.0), varion::detail::RoundedCount(d, 86400000.0))
                    << type << " " << text << " under " << locale;
            }
        }
    }
}

}  // namespace
