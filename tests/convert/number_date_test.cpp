// Numbers and the date family: the number a date-time or duration stands
// for, and the composed changes between date types.
#include "convert_test_util.h"

#include <gtest/gtest.h>

#include <limits>

using namespace varion::test;

namespace {

struct DateCase {
    const char* name;
    CVarion source;
    VARTYPE target;
    long code;
    double expected;  // the result read as a double (day count or number)
};

std::vector<DateCase> DateCases() {
    constexpr double k31ms = 3.587962962962963e-07;
    return {
        // Numbers to date-times add the two days from 1899-12-30 to 1900-01-01.
        {"I4 0 to DATE", CVarion(0), VT_DATE, 0, 2.0},
        // Date-times to numbers.
        {"DATE to R8", Raw(VT_DATE, 45002.5), VT_R8, 0, 45000.5},
        {"DATE to I1 is out of range", Raw(VT_DATE, 45002.5), VT_I1, -2, 45002.5},
        {"DATETIME to ISO_DATETIME", Raw(VTX_DATETIME, 45002.75), VTX_ISO_DATETIME, 0, 45002.75},
        // Durations count whole milliseconds (or 1/32 ms), rounded away from zero.
        {"DURATION 31 ms to I4", Raw(VTX_DURATION, k31ms), VT_I4, 0, 31.0},
        {"DURATION -31 ms to I4", Raw(VTX_DURATION, -k31ms), VT_I4, 0, -31.0},
        {"DURATION_MSF 1 ms to I4", Raw(VTX_DURATION_MSF, 1.0 / 86400000.0), VT_I4, 0, 32.0},
        {"DURATION 1 d to I4 overflows", Raw(VTX_DURATION, 30.0), VT_I4, -2, 30.0},
        {"DURATION beyond 64 bits", Raw(VTX_DURATION, 1e12), VT_I8, -2, 1e12},
        {"I8 86400000 to DURATION", CVarion(86400000LL), VTX_DURATION, 0, 1.0},
        {"I8 2764800000 to DURATION_MSF", CVarion(2764800000LL), VTX_DURATION_MSF, 0, 1.0},
        {"R8 1.5 to DURATION rounds to 2 ms", CVarion(1.5), VTX_DURATION, 0, 2.0 / 86400000.0},
        {"R8 1e19 to DURATION", CVarion(1e19), VTX_DURATION, -2, 1e19},
        // Composed: durations read the other's count in their own unit.
        {"DURATION 1 d to DURATION_MSF", Raw(VTX_DURATION, 1.0), VTX_DURATION_MSF, 0, 0.03125},
        {"DATE to DURATION reads days as ms", Raw(VT_DATE, 3.5), VTX_DURATION, 0, 2.0 / 86400000.0},
        {"DURATION to DATE reads ms as days", Raw(VTX_DURATION, 3.0 / 86400000.0), VT_DATE, 0, 5.0},
    };
}

TEST(NumbersAndDates, ConversionsBothWays) {
    for (const DateCase& c : DateCases()) {
        CVarion v(c.source);
        ExpectChange(v, c.target, c.code, c.name);
        if (c.code == RC_OK) { EXPECT_EQ(NumberOf(v), c.expected) << c.name; }
    }
    // The routes behind SetType refuse the kinds they are not for.
    CVarion text("5");
    EXPECT_EQ(varion::detail::Access::ChangeNumericToDate(text, VT_DATE), RC_NOT_CONVERTIBLE);
    EXPECT_EQ(varion::detail::Access::ChangeDateToNumeric(text, VT_I4), RC_NOT_CONVERTIBLE);
    CVarion number(5);
    EXPECT_EQ(varion::detail::Access::ChangeNumericToDate(number, VT_R8), RC_NOT_CONVERTIBLE);
    EXPECT_EQ(number.GetType(), VT_I4);
}

}  // namespace
