// Display formats by type code: strings, VT_DATE by device-description type,
// durations, ISO date-times under strftime patterns, byte arrays and VT_I1
// arrays, and other arrays on the scalar path.
#include "support/test_support.h"
#include "value/access.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdint>
#include <string>
#include <vector>

using varion::detail::Access;
using varion::test::Utf8;

namespace {

std::string Show(const CVarion& v, const std::string& format, short ddType = 0) {
    return Utf8(v.GetStringWithDisplayFormat(CString(format.c_str()), ddType));
}

// A value of a date-family type holding `days`.
CVarion Dated(VARTYPE type, double days) {
    CVarion v;
    Access::Var(v).vt = type;
    varion::detail::Store(Access::Var(v), days);
    return v;
}

constexpr double kDay = 46343.0;  // 2026-11-17, a Tuesday
constexpr double kEvening = kDay + (20 * 3600 + 18 * 60 + 38) / 86400.0;

template <class T>
CVarion ArrayOf(VARTYPE elementType, const std::vector<T>& elements) {
    CVarion v(elementType, static_cast<long>(elements.size()), 0L);
    for (std::size_t i = 0; i < elements.size(); ++i) v.SetElementValue(&elements[i], static_cast<long>(i));
    return v;
}

struct Case {
    const char* name;
    CVarion value;
    std::string format;
    short ddType;
    std::string expected;
};

template <std::size_t N>
void CheckAll(const Case (&cases)[N]) {
    for (const Case& c : cases) {
        const auto before = varion::test::Bytes(c.value);
        EXPECT_EQ(Show(c.value, c.format, c.ddType), c.expected) << c.name << " with \"" << c.format << "\"";
        EXPECT_EQ(varion::test::Bytes(c.value), before) << c.name << ": the value changed";
    }
}

TEST(DisplayDispatch, EveryKindOfValue) {
    const double second = 1.0 / 86400;
    const Case cases[] = {
        {"text", CVarion(OLESTR("abc")), "%d", 0, "abc"},
        {"text", CVarion(OLESTR("2.5")), "", 20, "2.5"},
        {"long text", CVarion(std::string(300, 'z').c_str()), "%5.2f", 0, std::string(300, 'z')},
        {"default form", Dated(VTX_DURATION, 1.5), "", 0, "1 12:00:00"},
        {"own format", Dated(VTX_DURATION, (2 * 3600 + 5 * 60) * second), "%H h %M min", 0, "02 h 05 min"},
        {"milliseconds", Dated(VTX_DURATION, (90 * 60 + 5.25) * second), "", 0, "01:30:05.250"},
        {"fraction type", Dated(VTX_DURATION_MSF, 1.5), "%D:%H", 0, "1:12"},
        {"ISO duration", Dated(VTX_ISO_DURATION, 90.5 * second), "%H:%M", 0, "PT90.5S"},
        {"ISO duration, negative", Dated(VTX_ISO_DURATION, -1.25 * second), "", 0, "-PT1.25S"},
        {"no pattern", Dated(VTX_ISO_DATETIME, kEvening), "", 0, "2026-11-17T20:18:38"},
        {"pattern", Dated(VTX_ISO_DATETIME, kEvening), "%d.%m.%Y", 0, "17.11.2026"},
        {"names", Dated(VTX_ISO_DATETIME, kEvening), "%A, %d %B %Y %I:%M %p", 0, "Tuesday, 17 November 2026 08:18 PM"},
        {"day and week", Dated(VTX_ISO_DATETIME, kEvening), "%j %a %U %V", 0, "321 Tue 46 47"},
        {"nearest second", Dated(VTX_ISO_DATETIME, kDay + 1 - 0.4 / 86400), "%d %H:%M:%S", 0, "18 00:00:00"},
        {"out of range", Dated(VTX_ISO_DATETIME, 1e9), "%Y", 0, "Invalid DateTime"},
        {"unknown directive", Dated(VTX_ISO_DATETIME, kEvening), "%Y %Q", 0, ""},
        {"255 characters", Dated(VTX_ISO_DATETIME, kEvening), std::string(251, '.') + "%Y", 0,
         std::string(251, '.') + "2026"},
        {"256 characters", Dated(VTX_ISO_DATETIME, kEvening), std::string(252, '.') + "%Y", 0, ""},
        {"two bytes", ArrayOf<std::uint8_t>(VT_UI1, {0x01, 0xAB}), "%02X", 0, "0x01, 0xAB"},
        {"default format", ArrayOf<std::uint8_t>(VT_UI1, {0x01, 0xAB}), "", 0, "0x1, 0xAB"},
        {"decimal", ArrayOf<std::uint8_t>(VT_UI1, {1, 255}), "%d", 0, "1, 255"},
        {"binary", ArrayOf<std::uint8_t>(VT_UI1, {1, 171}), "%b", 0, "0b1, 0b10101011"},
        {"suffix", ArrayOf<std::uint8_t>(VT_UI1, {10, 11}), "%02Xh", 0, "0Ah, 0Bh"},
        {"no bytes", ArrayOf<std::uint8_t>(VT_UI1, {}), "%X", 0, ""},
        {"ddType ignored", ArrayOf<std::uint8_t>(VT_UI1, {2}), "%d", 20, "2"},
        {"unusable format", ArrayOf<std::uint8_t>(VT_UI1, {1, 2}), "%d%d", 0, ", "},
        {"Hi", ArrayOf<std::int8_t>(VT_I1, {72, 105}), "%d", 0, "Hi"},
        {"empty", ArrayOf<std::int8_t>(VT_I1, {}), "", 0, ""},
        {"other array %d", ArrayOf<std::int32_t>(VT_I4, {5, 6}), "%d", 0, "0"},  // an array reads as 0
        {"other array", ArrayOf<std::int32_t>(VT_I4, {5, 6}), "", 0, ""},      // and has no text form
        {"other array %x", ArrayOf<std::int32_t>(VT_I4, {5, 6}), "%x", 0, "0x"},
    };
    CheckAll(cases);
    // A negative VT_I1 element is widened with its sign: U+FF80 to U+FFFF.
    const CVarion negative = ArrayOf<std::int8_t>(VT_I1, {-1, -128, 65});
    EXPECT_EQ(negative.GetStringWithDisplayFormat(CString(), 0).View(), OleStringView(OLESTR("\uFFFF\uFF80A")));
}

// Dates under the user's locale, which agrees with the C library on ",", as
// after the library's start-up. VT_DATE shows by device-description type;
// the other date-times read as numbers count days since 1900-01-01 (two days
// fewer than their stored count).
TEST(DisplayDispatch, DatesByDeviceDescriptionType) {
    varion::test::ScopedUserLocale user("de_DE.UTF-8");
    VARION_REQUIRE_USER_LOCALE(user);
    varion::test::ScopedCLocale runtime("de_DE.UTF-8", LC_NUMERIC);
    ASSERT_TRUE(runtime.ok());
    using varion::test::LocaleText;
    const std::string evening = LocaleText("17.11.2026 20:18:38", kEvening);
    const Case cases[] = {
        {"date-time, code 0", Dated(VT_DATE, kEvening), "%d", 0, evening},
        {"date-time, other code", Dated(VT_DATE, kEvening), "", 3, evening},
        {"milliseconds", Dated(VT_DATE, kEvening + 0.25 / 86400), "", 0, evening + ",250"},
        {"time only", Dated(VT_DATE, kEvening), "%Y", 15, LocaleText("20:18:38", kEvening, LOCALE_USER_DEFAULT, 2)},
        {"time to the nearest second", Dated(VT_DATE, kEvening + 0.6 / 86400), "", 15,
         LocaleText("20:18:39", kEvening + 0.6 / 86400, LOCALE_USER_DEFAULT, 2)},
        {"duration", Dated(VT_DATE, 0.5), "%H:%M:%S", 16, "12:00:00"},
        {"duration, other code", Dated(VT_DATE, 1.5), "%D days %H h", 17, "1 days 12 h"},
        {"duration, default form", Dated(VT_DATE, 1.5), "", 16, "1 12:00:00"},
        {"date only", Dated(VT_DATE, kEvening), "%H", 20, LocaleText("17.11.2026", kEvening, LOCALE_USER_DEFAULT, 1)},
        {"date in 1899", Dated(VT_DATE, 0.5), "", 20, ""},
        {"last day of 1899", Dated(VT_DATE, 1.75), "", 20, ""},
        {"first day of 1900", Dated(VT_DATE, 2.0), "", 20, LocaleText("01.01.1900", 2.0, LOCALE_USER_DEFAULT, 1)},
        {"out of range, date", Dated(VT_DATE, 1e9), "", 20, ""},
        {"out of range, time", Dated(VT_DATE, 1e9), "", 15, "Invalid DateTime"},
        {"out of range, text form", Dated(VT_DATE, 1e9), "", 0, ""},
        {"VTX_DATETIME %d", Dated(VTX_DATETIME, kDay + 0.25), "%d", 0, "46341"},
        {"VTX_DATETIME_ALT %.2f", Dated(VTX_DATETIME_ALT, kDay + 0.25), "%.2f", 0, "46341,25"},
        {"VTX_DATETIME %x", Dated(VTX_DATETIME, 18.0), "%x", 0, "0x"},  // no row in the hexadecimal table
        {"VTX_DATETIME plain", Dated(VTX_DATETIME, kEvening), "", 0,
         varion::test::LocaleText("17.11.2026 20:18:38", kEvening)},
        {"VTX_DATETIME %s", Dated(VTX_DATETIME_ALT, kEvening), "[%s]", 0,
         std::string("[").append(varion::test::LocaleText("17.11.2026 20:18:38", kEvening)).append("]")},
    };
    CheckAll(cases);
    // Before 1601 the system's own date data cannot be asked for the pattern.
    VARION_STANDIN_ONLY(EXPECT_EQ(Show(Dated(VT_DATE, -36522.0), "", 20), "01.01.1800"));
}

}  // namespace
