// Date-time texts: the locale form with milliseconds, ISO 8601, and
// GetISO8601DateTimeString with the zone offset.
#include "datetime/datetime.h"
#include "support/test_support.h"
#include "value/access.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <random>
#include <string>

using namespace varion::detail;
using varion::test::ScopedEnv;
using varion::test::ScopedUserLocale;
using varion::test::Utf8;

namespace {

const double kMs = 1.0 / 86400000.0;
constexpr LCID kGerman = 0x0407;

double Date(long y, long mo, long d, long h = 0, long mi = 0, long s = 0, long ms = 0) {
    double value = -1;
    EXPECT_EQ(DateFromFields(y, mo, d, h, mi, s, ms, value), 0);
    return value;
}

using Instant = std::array<long, 7>;  // year, month, day, hour, minute, second, millisecond

Instant Fields(double value) {
    DateTimeFieldSet f;
    EXPECT_TRUE(DateTimeFields(value, f)) << value;
    return {f.year, f.month, f.day, f.hour, f.minute, f.second, f.millisecond};
}

// The ends of the range, both sides of day 0 and random instants;
// milliseconds only from 1900 on, where the text carries them.
std::vector<Instant> Spread(unsigned seed, int count) {
    std::mt19937 random(seed);
    std::vector<Instant> instants = {
        {100, 1, 1, 0, 0, 0, 0},     {9999, 12, 31, 23, 59, 59, 999}, {1899, 12, 30, 0, 0, 0, 0},
        {1899, 12, 30, 12, 0, 0, 1}, {1899, 12, 29, 23, 59, 59, 0},   {2026, 11, 17, 0, 0, 0, 5},
        {2026, 11, 17, 12, 0, 0, 0}, {2000, 2, 29, 23, 59, 59, 999},
    };
    const long limits[7][2] = {{100, 9999}, {1, 12}, {1, 28}, {0, 23}, {0, 59}, {0, 59}, {0, 999}};
    for (int i = 0; i < count; ++i) {
        Instant t;
        for (std::size_t k = 0; k < 7; ++k) t[k] = std::uniform_int_distribution<long>(limits[k][0], limits[k][1])(random);
        if (t[0] < 1900) t[6] = 0;
        instants.push_back(t);
    }
    return instants;
}

double Date(const Instant& t) { return Date(t[0], t[1], t[2], t[3], t[4], t[5], t[6]); }

}  // namespace

// Every text FormatDateTime writes, in every user locale the test can choose,
// parses back to the same instant: as written, upper-cased (as text
// conversion prepares it), and with "." instead of "," before the
// milliseconds.
TEST(DateTimeText, EveryLocaleReadsItsOwnTextsBack) {
    for (const char* name : varion::test::ChoosableUserLocales()) {
        ScopedUserLocale user(name);
        for (const Instant& t : Spread(17, 1000)) {
            const double value = Date(t);
            CString text = FormatDateTime(value);
            const std::string shown = Utf8(text) + " in " + (name != nullptr ? name : "the system's locale");
            ASSERT_EQ(text.Find(','), t[6] > 0 ? text.GetLength() - 4 : -1) << shown;
            for (int form = 0; form < 3; ++form) {
                if (form == 1) text.MakeUpper();
                if (form == 2 && !(t[6] > 0 && text.Find(':') >= 0)) break;
                if (form == 2) text.SetAt(text.GetLength() - 4, '.');
                double back = -1;
                ASSERT_EQ(ParseDateTimeText(text, 0, 0, back), RC_OK) << shown;
                ASSERT_EQ(Fields(back), t) << shown;
            }
        }
    }
}

TEST(DateTimeText, FormatDateTimeExamples) {
    struct Row { const char* locale; double value; const char* text; };
    const Row rows[] = {
        {"de_DE.UTF-8", Date(2026, 11, 17, 20, 18, 38, 250), "17.11.2026 20:18:38,250"},
        {"de_DE.UTF-8", Date(2026, 11, 17, 0, 0, 0, 5), "17.11.2026,005"},
        {"de_DE.UTF-8", 0.5 + 5 * kMs, "12:00:00,005"},
        {"de_DE.UTF-8", Date(1899, 12, 29, 6, 0, 0, 500), "29.12.1899 06:00:00"},
        {"en_US.UTF-8", Date(2026, 11, 17, 20, 18, 38, 250), "11/17/2026 8:18:38 PM,250"},
        {"en_US.UTF-8", 2958466.0, ""},
    };
    int skipped = 0;
    for (const Row& r : rows) {
        ScopedUserLocale user(r.locale);
        if (!user.Active()) {
            ++skipped;
            continue;
        }
        const long before = varion::test::AllocationCount();
        const CString text = FormatDateTime(r.value);
        EXPECT_LE(varion::test::AllocationCount() - before, 1) << "only the result is allocated";
        EXPECT_EQ(Utf8(text), r.text) << r.value;
    }
    if (skipped > 0) GTEST_SKIP() << skipped << " rows need a user locale the system does not have";
}

TEST(DateTimeText, ParseDateTimeTextRules) {
    struct Row { const char* text; ULONG flags; LCID lcid; long rc; double value; };
    ScopedUserLocale user("en_US.UTF-8");
    VARION_REQUIRE_USER_LOCALE(user);
    const double evening = Date(2026, 11, 17, 20, 18, 38);
    // German texts name their locale: the system reads dotted dates in en-US
    // only as the stand-ins do where they are more lenient.
    const LCID de = kGerman;
    const Row rows[] = {
        {"10:00:05.25", 0, 0, RC_OK, Date(1899, 12, 30, 10, 0, 5, 250)},
        {"17.11.2026 20:18:38,123456", 0, de, RC_OK, evening + 123.456 * kMs},
        {",17.11.2026", 0, de, RC_OK, Date(2026, 11, 17)},  {"17.11.2026,", 0, de, RC_OK, Date(2026, 11, 17)},
        {"11/17/2026 8:18:38 PM,250", 0, 0, RC_OK, evening + 250 * kMs},  // the user's locale
        {"17/11/2026 20:18:38", 0, de, RC_OK, evening},  // the given locale, not the user's
        {"17.11.2026 20:18:38", VAR_DATEVALUEONLY, de, RC_OK, Date(2026, 11, 17)},
        {"", 0, 0, RC_OK, 0.0},  // no date-and-time part: 0.0
        {"abc,5", 0, 0, RC_NOT_CONVERTIBLE, 0},             {"17.11.2026 20:18:38,25x", 0, de, RC_NOT_APPLICABLE, 0},
        {"17.11.2026 20:18:38,250,5", 0, de, RC_NOT_APPLICABLE, 0}, {"17.11.2026 20:18:38,-5", 0, de, RC_NOT_APPLICABLE, 0},
    };
    for (const Row& r : rows) {
        const CString text(r.text);
        double value = -1;
        const long before = varion::test::AllocationCount();
        ASSERT_EQ(ParseDateTimeText(text, r.flags, r.lcid, value), r.rc) << r.text;
        EXPECT_EQ(varion::test::AllocationCount() - before, 0) << r.text << ": parsing allocates nothing";
        if (r.rc == RC_OK) { EXPECT_NEAR(value, r.value, 1e-9) << r.text; }
    }
    // The stand-ins' parser is stricter than the system's: a day first with
    // slashes in en-US, a locale beyond the table.
    double scratch = 0;
    EXPECT_EQ(VarDateFromStr(CString("17.11.2026 20:18:38,250").GetString(), de, 0, &scratch), DISP_E_TYPEMISMATCH);
    if (varion::test::kStandInServices) {
        EXPECT_EQ(ParseDateTimeText(CString("17/11/2026"), 0, 0, scratch), RC_NOT_CONVERTIBLE);
        EXPECT_EQ(ParseDateTimeText(CString("17.11.2026"), 0, 0x0419, scratch), RC_NOT_CONVERTIBLE);
    }
}

// ISO texts of instants all over the range, against snprintf, and read back
// exactly.
TEST(IsoDateTime, RoundTripFromYear100To9999) {
    for (const Instant& t : Spread(29, 20000)) {
        const double value = Date(t);
        char expected[64];
        std::snprintf(expected, sizeof(expected), "%04ld-%02ld-%02ldT%02ld:%02ld:%02ld.%03ld", t[0], t[1], t[2], t[3],
                      t[4], t[5], t[6]);
        std::string text = expected;
        while (text.back() == '0' && t[6] > 0) text.pop_back();
        if (t[6] == 0) text.resize(text.size() - 4);
        const long before = varion::test::AllocationCount();
        const CString written = FormatIsoDateTime(value);
        ASSERT_LE(varion::test::AllocationCount() - before, 1) << "only the result is allocated";
        ASSERT_EQ(Utf8(written), text);
        double back = -1;
        ASSERT_EQ(ParseIsoDateTime(written, back), 0) << text;
        ASSERT_EQ(back, value) << text;
    }
}

TEST(IsoDateTime, ParseAndFormatRules) {
    struct Row { const char* text; double value; };
    const Row rows[] = {
        {"2026-11-17", Date(2026, 11, 17)},
        {"2026-11-17T20:18", Date(2026, 11, 17, 20, 18)},
        {"2026-11-17T20:18:38.123456", Date(2026, 11, 17, 20, 18, 38, 123)},
        {"2026-11-17T20:18:38+01:00", Date(2026, 11, 17, 20, 18, 38)},  // the zone is not read
    };
    for (const Row& r : rows) {
        const CString text(r.text);
        double value = -1;
        const long before = varion::test::AllocationCount();
        ASSERT_EQ(ParseIsoDateTime(text, value), 0) << r.text;
        EXPECT_EQ(varion::test::AllocationCount() - before, 0) << r.text << ": parsing allocates nothing";
        EXPECT_EQ(value, r.value) << r.text;
    }
    double scratch = 0;
    for (const char* text : {"2026-02-30", "20261117", "2026-11", "", "2026-11-17T24:00:00", "10000-01-01"})
        EXPECT_EQ(ParseIsoDateTime(CString(text), scratch), 1) << text;
    EXPECT_EQ(Utf8(FormatIsoDateTime(2958466.0)), "");
}

TEST(Iso8601String, ZoneOffsetsAndForms) {
    struct Row { const char* tz; bool zone; double value; const char* text; };
    const double evening = Date(2026, 11, 17, 20, 18, 38);
    const Row rows[] = {
        {"CET-1", true, evening, "2026-11-17T20:18:38+01:00"},
        {"CET-1", true, Date(2026, 11, 17), "2026-11-17"},  // a date alone has no zone
        {"CET-1", true, 0.5, "12:00:00+01:00"},
        {"NST3:30", true, evening, "2026-11-17T20:18:38-03:30"},
        {"EST5EDT", true, Date(2026, 7, 1, 12), "2026-07-01T12:00:00-05:00"},  // standard offset only
        {"UTC0", true, evening, "2026-11-17T20:18:38"},
        {"CET-1", true, evening + 0.6 / 86400, "2026-11-17T20:18:39+01:00"},  // nearest second
        {"CET-1", true, 2958466.0, ""},
    };
    for (const Row& r : rows) {
        ScopedEnv tz("TZ", r.tz);
        CVarion date;
        Access::Var(date).vt = VT_DATE;
        Store(Access::Var(date), r.value);
        EXPECT_EQ(Utf8(date.GetISO8601DateTimeString(r.zone)), r.text) << r.tz << " " << r.value;
    }
}

// Strings are read as dates (the user's locale, then German); of the other
// types only VT_DATE has the text.
TEST(Iso8601String, TextsAndOtherTypes) {
    ScopedUserLocale user("en_US.UTF-8");
    VARION_REQUIRE_USER_LOCALE(user);
    ScopedEnv tz("TZ", "CET-1");
    struct Row { CVarion value; const char* text; };
    const Row rows[] = {
        {CVarion("11/17/2026 8:18:38 PM"), "2026-11-17T20:18:38"}, {CVarion("1. März 2026"), "2026-03-01"},  // only the German attempt reads it
        {CVarion("no date"), ""}, {CVarion(46343.5), ""}, {CVarion(2026, 11, 17, 20, 18, 38, 0, VTX_DATETIME), ""},
    };
    for (const Row& r : rows) EXPECT_EQ(Utf8(r.value.GetISO8601DateTimeString(false)), r.text);
    EXPECT_EQ(Utf8(CVarion(2026, 11, 17, 20, 18, 38, 250, VT_DATE).GetISO8601DateTimeString(true)),
              "2026-11-17T20:18:38+01:00");  // no milliseconds in this form
}

