// The strftime-style pattern renderer: every directive against the C
// library's strftime in the "C" locale over many dates, the cases the two
// treat differently, unusable patterns and the 255-character limit.
#include "platform/strftime.h"
#include "support/test_support.h"

#include <gtest/gtest.h>

#include <clocale>
#include <ctime>
#include <string>
#include <vector>

using varion::detail::FormatStatus;
using varion::detail::FormatTime;
using varion::detail::kTimeBufferSize;

namespace {

struct Outcome {
    FormatStatus status;
    std::string text;
};

Outcome Render(const std::string& pattern, const std::tm& t, std::size_t capacity = kTimeBufferSize) {
    std::vector<OLECHAR> buffer(capacity + 4, OLECHAR(0xBEEF));
    const OleString wide(pattern.begin(), pattern.end());
    const auto result = FormatTime(wide, t, buffer.data(), capacity);
    for (std::size_t i = capacity; i < buffer.size(); ++i)
        EXPECT_EQ(buffer[i], OLECHAR(0xBEEF)) << "wrote beyond the capacity for " << pattern;
    return {result.status, varion::test::Utf8(CString(OleStringView(buffer.data(), result.length)))};
}

// The broken-down UTC time of a day count since 1970-01-01 and a second of the day.
std::tm At(long long days, int second) {
    const std::time_t when = static_cast<std::time_t>(days * 86400 + second);
    const std::tm* t = std::gmtime(&when);
    return t != nullptr ? *t : std::tm{};
}

// Days since 1970-01-01 of a civil date (proleptic Gregorian).
long long DaysFromCivil(long long y, unsigned m, unsigned d) {
    y -= m <= 2;
    const long long era = (y >= 0 ? y : y - 399) / 400;
    const auto yoe = static_cast<unsigned>(y - era * 400);
    const unsigned doy = (153 * (m > 2 ? m - 3 : m + 9) + 2) / 5 + d - 1;
    const unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + static_cast<long long>(doe) - 719468;
}

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
std::string Reference(const std::string& pattern, const std::tm& t) {
    char buffer[512];
    const std::size_t n = std::strftime(buffer, sizeof buffer, pattern.c_str(), &t);
    return std::string(buffer, n);
}
#pragma GCC diagnostic pop

TEST(FormatTime, EveryDirectiveMatchesTheCLibraryInTheCLocale) {
    VARION_REQUIRE_GLIBC_ORACLE();
    ASSERT_STREQ(std::setlocale(LC_TIME, nullptr), "C");
    // Every directive the two share, with and without the E and O modifiers
    // (%C is left to the table below: the C library drops its leading zero).
    const std::vector<std::string> directives = {
        "a", "A", "b", "B", "c", "d", "D", "e", "F", "g", "G", "h", "H", "I", "j", "m", "M", "n", "p",
        "r", "R", "S", "t", "T", "u", "U", "V", "w", "W", "x", "X", "y", "Y", "%",
        "Ec", "Ex", "EX", "Ey", "EY", "Od", "Oe", "OH", "OI", "Om", "OM", "OS", "Ou", "OU", "OV", "Ow", "OW", "Oy"};
    std::string all;
    for (const std::string& d : directives) all += "[%" + d + "]";

    std::vector<std::tm> dates;
    // A spread over the whole range the pattern path meets, at varied times of day.
    for (long long days = DaysFromCivil(1000, 1, 1); days < DaysFromCivil(9999, 12, 31); days += 997)
        dates.push_back(At(days, static_cast<int>((days * 7919) % 86400)));
    // The turn of every year from 1995 to 2035, where the week numbers change.
    for (long long year = 1995; year <= 2035; ++year)
        for (long long day = DaysFromCivil(year, 12, 24); day <= DaysFromCivil(year + 1, 1, 8); ++day)
            dates.push_back(At(day, static_cast<int>(day % 24) * 3600 + 59));
    // Every hour of one day (12-hour clock and AM/PM).
    for (int hour = 0; hour < 24; ++hour) dates.push_back(At(DaysFromCivil(2026, 11, 17), hour * 3600 + 61));

    int failures = 0;
    for (const std::tm& t : dates) {
        const std::string expected = Reference(all, t);
        const Outcome got = Render(all, t, 4096);
        if ((got.status != FormatStatus::Ok || got.text != expected) && ++failures <= 10)
            ADD_FAILURE() << "got      " << got.text << "\nexpected " << expected;
    }
    EXPECT_EQ(failures, 0);
    EXPECT_GT(dates.size(), 3500U);
}

TEST(FormatTime, TableOfPatterns) {
    const std::tm evening = At(DaysFromCivil(2026, 11, 17), 20 * 3600 + 18 * 60 + 38);  // a Tuesday
    const std::tm midnight = At(DaysFromCivil(2026, 1, 1), 0);                          // a Thursday
    const std::tm noon = At(DaysFromCivil(2027, 1, 3), 12 * 3600);                      // Sunday of ISO week 53 of 2026
    std::tm early = At(DaysFromCivil(1970, 1, 1), 0);
    early.tm_year = 105 - 1900;  // the year 105
    struct Case { const char* pattern; const std::tm* t; const char* expected; };
    const Case cases[] = {
        {"%d.%m.%Y", &evening, "17.11.2026"},
        {"%Y-%m-%dT%H:%M:%S", &evening, "2026-11-17T20:18:38"},
        {"%A, %d %B %Y", &evening, "Tuesday, 17 November 2026"},
        {"%a %b %e", &midnight, "Thu Jan  1"},
        {"%I:%M %p", &midnight, "12:00 AM"},
        {"%I:%M %p", &noon, "12:00 PM"},
        {"%r", &evening, "08:18:38 PM"},
        {"%c", &evening, "Tue Nov 17 20:18:38 2026"},
        {"%x %X", &evening, "11/17/26 20:18:38"},
        {"%j %U %W %V %G %g %u %w", &noon, "003 01 00 53 2026 26 7 0"},
        {"%C %y", &evening, "20 26"},
        {"%C %y %Y", &early, "01 05 105"},
        {"%z%Z", &evening, ""},
        {"100%% at %H", &evening, "100% at 20"},
        {"no directive", &evening, "no directive"},
        {"", &evening, ""},
    };
    for (const Case& c : cases) {
        const Outcome got = Render(c.pattern, *c.t);
        EXPECT_EQ(got.status, FormatStatus::Ok) << c.pattern;
        EXPECT_EQ(got.text, c.expected) << c.pattern;
    }
}

TEST(FormatTime, UnusablePatternsGiveTheEmptyText) {
    const std::tm t = At(DaysFromCivil(2026, 11, 17), 0);
    for (const char* pattern : {"%Q", "%", "abc%", "%E", "%Ek", "%Ed", "%O", "%OY", "%-d", "%_d", "%10Y", "%#d",
                                "%+Y", "%s", "%k", "%l", "%P", "%L", "%d %q"}) {
        const Outcome got = Render(pattern, t);
        EXPECT_EQ(got.status, FormatStatus::Malformed) << pattern;
        EXPECT_EQ(got.text, "") << pattern;
    }
}

TEST(FormatTime, TheTextEndsAtTheFirstNulOfThePattern) {
    const std::tm t = At(DaysFromCivil(2026, 11, 17), 0);
    const OLECHAR pattern[] = {'%', 'd', 0, '%', 'Q'};
    OLECHAR out[kTimeBufferSize];
    const auto result = FormatTime(OleStringView(pattern, 5), t, out, kTimeBufferSize);
    EXPECT_EQ(result.status, FormatStatus::Ok);
    EXPECT_EQ(varion::test::Utf8(CString(out)), "17");
}

TEST(FormatTime, TwoHundredFiftyFiveCharactersFitAndOneMoreDoesNot) {
    const std::tm t = At(DaysFromCivil(2026, 11, 17), 0);  // Tuesday: 7 characters
    struct Limit { std::string pattern; std::size_t length; };
    const Limit limits[] = {
        {std::string(255, 'x'), 255},
        {std::string(256, 'x'), 256},
        {std::string(248, 'x') + "%A", 255},
        {std::string(249, 'x') + "%A", 256},
        {std::string(253, 'x') + "%%%%", 255},
        {[] { std::string s; for (int i = 0; i < 31; ++i) s += "%c|"; return s; }(), 31 * 25},
    };
    for (const Limit& l : limits) {
        const Outcome got = Render(l.pattern, t);
        if (l.length <= 255) {
            EXPECT_EQ(got.status, FormatStatus::Ok) << l.length;
            EXPECT_EQ(got.text.size(), l.length);
        } else {
            EXPECT_EQ(got.status, FormatStatus::Overflow) << l.length;
            EXPECT_EQ(got.text, "");
        }
    }
    OLECHAR one = OLECHAR(0xBEEF);
    EXPECT_EQ(FormatTime(OLESTR("%Y"), t, &one, 0).status, FormatStatus::Overflow);
    EXPECT_EQ(one, OLECHAR(0xBEEF));
    EXPECT_EQ(FormatTime(OLESTR("%Y"), t, nullptr, 10).status, FormatStatus::Overflow);
}

TEST(FormatTime, FieldsOutOfRangeShowWithoutCrashing) {
    std::tm t{};
    t.tm_mon = 12;
    t.tm_wday = -1;
    t.tm_mday = 123;
    t.tm_hour = -5;
    t.tm_year = 2147483647;
    t.tm_yday = -400;
    const Outcome got = Render("%b|%B|%a|%A|%d|%H|%I|%Y|%C|%y|%j|%U|%V|%G", t);
    EXPECT_EQ(got.status, FormatStatus::Ok);
    EXPECT_EQ(got.text.substr(0, 29), "?|?|?|?|123|-05|07|2147485547");
}

}  // namespace
