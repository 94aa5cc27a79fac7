// The strftime-style pattern renderer: every directive against the C
// library's strftime in the "C" locale over many dates, the cases the two
// treat differently, unusable patterns and the 255-character limit.
#include "guarded.h"
#include "platform/calendar.h"
#include "platform/strftime.h"

#include <gtest/gtest.h>

#include <clocale>
#include <ctime>
#include <string>
#include <vector>

using varion::detail::DayFromCivil;
using varion::detail::FormatStatus;
using varion::detail::FormatTime;
using varion::detail::kTimeBufferSize;
using varion::test::Guarded;
using varion::test::Outcome;

namespace {

Outcome Render(const std::string& pattern, const std::tm& t, std::size_t capacity = kTimeBufferSize) {
    return Guarded(capacity, pattern, [&](OLECHAR* out) {
        return FormatTime(OleString(pattern.begin(), pattern.end()), t, out, capacity);
    });
}

// The broken-down UTC time of a civil date (a day past the month's end rolls
// on) and a second of the day; day 25569 is 1970-01-01.
std::tm At(long long y, int m, int d, int second = 0) {
    const auto when = static_cast<std::time_t>((DayFromCivil(y, m, 1) + d - 1 - 25569) * 86400 + second);
    const std::tm* t = std::gmtime(&when);
    return t != nullptr ? *t : std::tm{};
}

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
std::string Reference(const std::string& pattern, const std::tm& t) {
    char buffer[512];
    return std::string(buffer, std::strftime(buffer, sizeof buffer, pattern.c_str(), &t));
}
#pragma GCC diagnostic pop

TEST(FormatTime, EveryDirectiveMatchesTheCLibraryInTheCLocale) {
    VARION_REQUIRE_GLIBC_ORACLE();
    ASSERT_STREQ(std::setlocale(LC_TIME, nullptr), "C");
    // Every directive the two share, with and without the E and O modifiers
    // (%C is left to the table below: the C library drops its leading zero).
    std::string all;
    for (const char* d : {"a", "A", "b", "B", "c", "d", "D", "e", "F", "g", "G", "h", "H", "I", "j", "m", "M", "n",
                          "p", "r", "R", "S", "t", "T", "u", "U", "V", "w", "W", "x", "X", "y", "Y", "%", "Ec", "Ex",
                          "EX", "Ey", "EY", "Od", "Oe", "OH", "OI", "Om", "OM", "OS", "Ou", "OU", "OV", "Ow", "OW", "Oy"})
        all += std::string("[%") + d + "]";
    std::vector<std::tm> dates;
    // A spread over the years 1000 to 9999 at varied times of day, the turn
    // of every year from 1995 to 2035 (where the week numbers change) and
    // every hour of one day (12-hour clock and AM/PM).
    for (int day = 0; day < 3287181; day += 997) dates.push_back(At(1000, 1, 1 + day, int(day * 7919LL % 86400)));
    for (int year = 1995; year <= 2035; ++year)
        for (int day = 24; day <= 39; ++day) dates.push_back(At(year, 12, day, day % 24 * 3600 + 59));
    for (int hour = 0; hour < 24; ++hour) dates.push_back(At(2026, 11, 17, hour * 3600 + 61));
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

// What the sweep above leaves out (%C, the zones, refused patterns), and one
// row of names for a platform without the GNU oracle.
TEST(FormatTime, TableOfPatternsAndUnusablePatterns) {
    const std::tm evening = At(2026, 11, 17, 20 * 3600 + 18 * 60 + 38);  // a Tuesday
    std::tm early = evening;
    early.tm_year = 105 - 1900;  // the year 105
    constexpr auto kOk = FormatStatus::Ok, kBad = FormatStatus::Malformed;
    const struct { const char* pattern; const std::tm* t; const char* expected; FormatStatus status = kOk; } cases[] = {
        {"%A %c", &evening, "Tuesday Tue Nov 17 20:18:38 2026"}, {"%C %y", &evening, "20 26"},
        {"%C %y %Y", &early, "01 05 105"},  {"%z%Z", &evening, ""}, {"100%% at %H", &evening, "100% at 20"},
        // Unknown directives, modifiers on directives they do not take, the C
        // library's extensions and a pattern ending in "%".
        {"%Q", &evening, "", kBad},   {"abc%", &evening, "", kBad}, {"%E", &evening, "", kBad},
        {"%Ed", &evening, "", kBad},  {"%O", &evening, "", kBad},   {"%OY", &evening, "", kBad},
        {"%-d", &evening, "", kBad},  {"%10Y", &evening, "", kBad}, {"%s", &evening, "", kBad},
        {"%d %q", &evening, "", kBad},
    };
    for (const auto& c : cases) {
        const Outcome got = Render(c.pattern, *c.t);
        EXPECT_EQ(got.status, c.status) << c.pattern;
        EXPECT_EQ(got.text, c.expected) << c.pattern;
    }
    const OLECHAR nul[] = {'%', 'd', 0, '%', 'Q'};  // the pattern ends at its first NUL
    OLECHAR out[kTimeBufferSize];
    EXPECT_EQ(FormatTime(OleStringView(nul, 5), evening, out, kTimeBufferSize).status, FormatStatus::Ok);
    EXPECT_EQ(varion::test::Utf8(CString(out)), "17");
}

TEST(FormatTime, TwoHundredFiftyFiveCharactersFitAndOneMoreDoesNot) {
    const std::tm t = At(2026, 11, 17);  // Tuesday: 7 characters
    std::string c31;
    for (int i = 0; i < 31; ++i) c31 += "%c|";
    const struct { std::string pattern; std::size_t length; } limits[] = {
        {std::string(255, 'x'), 255},        {std::string(256, 'x'), 256},
        {std::string(248, 'x') + "%A", 255}, {std::string(249, 'x') + "%A", 256}, {c31, 31 * 25},
    };
    for (const auto& l : limits) {
        const Outcome got = Render(l.pattern, t);
        EXPECT_EQ(got.status, l.length <= 255 ? FormatStatus::Ok : FormatStatus::Overflow) << l.length;
        EXPECT_EQ(got.text.size(), l.length <= 255 ? l.length : 0) << l.length;
    }
    EXPECT_EQ(Render("%Y", t, 0).status, FormatStatus::Overflow);  // the guard checks nothing was written
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
