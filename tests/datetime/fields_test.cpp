// Calendar fields, duration components, rounded counts and the field
// constructors.
#include "datetime/datetime.h"
#include "support/test_support.h"
#include "value/access.h"

#include <gtest/gtest.h>

#include <cmath>
#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>

using namespace varion::detail;

namespace {

const double kNaN = std::numeric_limits<double>::quiet_NaN();
const double kMs = 1.0 / 86400000.0;

CVarion Make(VARTYPE vt, double x) {
    CVarion v;
    Access::Var(v).vt = vt;
    Store(Access::Var(v), x);
    return v;
}

double Date(long y, long mo, long d, long h = 0, long mi = 0, long s = 0, long ms = 0) {
    double value = -1;
    EXPECT_EQ(DateFromFields(y, mo, d, h, mi, s, ms, value), 0) << y << "-" << mo << "-" << d;
    return value;
}

// Every accessor of a value of each type: the date-time ones answer -1 for
// durations and the duration totals -1 for date-times; none changes a byte.
TEST(Fields, AccessorsByTypeCode) {
    // year, month, day of week, day, hour, minute, second, millisecond, total
    // milliseconds, fractions, total fractions
    struct Row { VARTYPE vt; double value; std::array<LONGLONG, 11> want; };
    const double late = Date(2026, 11, 16, 23, 59, 59, 750);
    const Row rows[] = {
        {VT_DATE, 0.0, {1899, 12, 6, 30, 0, 0, 0, 0, -1, -1, -1}},
        {VTX_DATETIME, late, {2026, 11, 1, 16, 23, 59, 59, 750, -1, -1, -1}},
        {VT_DATE, -1.25, {1899, 12, 5, 29, 6, 0, 0, 0, -1, -1, -1}},
        {VT_DATE, 2958466.0, {-1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1}},
        {VT_DATE, kNaN, {-1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1}},
        {VTX_DURATION, 1.5, {-1, -1, -1, 1, 12, 0, 0, 0, 129600000, -1, -1}},
        {VTX_DURATION_MSF, 1.5, {-1, -1, -1, 1, 12, 0, 0, 0, 129600000, 0, 4147200000}},
        {VTX_DURATION_MSF, -1.0 / 86400 - 1.5 * kMs, {-1, -1, -1, 0, 0, 0, -1, -1, -1001, -16, -32048}},
        {VTX_DURATION, 0.99999999999, {-1, -1, -1, 0, 0, 0, 0, 0, 86400000, -1, -1}},  // no offset on days
        {VTX_DURATION, 0.9999 * kMs, {-1, -1, -1, 0, 0, 0, 0, 1, 1, -1, -1}},
        {VTX_DURATION_MSF, DurationFromFields(2, 3, 4, 5, 6, 7), {-1, -1, -1, 2, 3, 4, 5, 6, 183845006, 7, 5883040199}},
        {VTX_DURATION_MSF, -DurationFromFields(2, 3, 4, 5, 6, 7), {-1, -1, -1, -2, -3, -4, -5, -6, -183845006, -7, -5883040199}},
        {VTX_DURATION_MSF, DurationFromFields(0, 23, 59, 59, 999, 32), {-1, -1, -1, 1, 0, 0, 0, 0, 86400000, 0, 2764800000}},
        {VT_R8, 45000.0, {-1, -1, -1, -1, -1, -1, -1, -1, -1, -1, -1}},
    };
    for (const Row& r : rows) {
        const CVarion v = Make(r.vt, r.value);
        SCOPED_TRACE(testing::Message() << "type " << r.vt << " value " << r.value);
        const std::array<LONGLONG, 11> got = {
            v.GetYear(),   v.GetMonth(),       v.GetDayOfWeek(),         v.GetDay(),
            v.GetHour(),   v.GetMinute(),      v.GetSecond(),            v.GetMillisecond(),
            v.GetTotalMilliseconds(), v.GetMillisecondFractions(), v.GetTotalMillisecondFractions()};
        EXPECT_EQ(got, r.want);
        EXPECT_EQ(varion::test::Bytes(v), varion::test::Bytes(Make(r.vt, r.value))) << "accessors change nothing";
    }
    EXPECT_EQ(CVarion("17.11.2026").GetYear(), -1);
}

// The field constructors: the type (a code of the other family gives the
// default), the value, and zeros in the reserved words.
TEST(Fields, Constructors) {
    struct Row { CVarion value; VARTYPE type; double expected; };
    const Row rows[] = {
        {CVarion(2024, 2, 29, 12, 0, 0, 500, 0), VTX_DATETIME, 45351.5 + 500 * kMs},
        {CVarion(2026, 11, 17, 0, 0, 0, 1500, VTX_DATETIME_ALT), VTX_DATETIME_ALT, 46343.0 + 1500 * kMs},
        {CVarion(2026, 11, 17, 0, 0, 0, -5, VTX_ISO_DATETIME), VTX_ISO_DATETIME, 46343.0},  // no negative ms
        {CVarion(1899, 12, 29, 6, 0, 0, 500, 0), VTX_DATETIME, -1.25 + 500 * kMs},
        {CVarion(67562, 11, 17, 0, 0, 0, 0, VT_DATE), VT_DATE, 46343.0},  // fields are taken by their low 16 bits
        {CVarion(0, 0, 0, 0, 1, 16, VT_R8), VTX_DURATION_MSF, 1.5 * kMs},
        {CVarion(1, 12, 0, 0, 0, 0, VTX_DURATION), VTX_DURATION, 1.5},
        {CVarion(0, 0, 0, 0, 0, 2764800, VT_DATE), VTX_DURATION_MSF, 0.001},
        {CVarion(1, -24, 0, 0, 0, 0, 0), VTX_DURATION_MSF, 0.0},
    };
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        EXPECT_EQ(rows[i].value.GetType(), rows[i].type) << i;
        EXPECT_DOUBLE_EQ(Load<double>(Access::Var(rows[i].value)), rows[i].expected) << i;
        const auto bytes = varion::test::Bytes(rows[i].value);
        EXPECT_EQ(std::count(bytes.begin() + 2, bytes.begin() + 8, 0), 6) << i;
    }
    // Invalid date-time fields: the type is kept, the value is 0.0 and no
    // milliseconds are added.
    const std::array<long, 7> invalid[] = {
        {2023, 2, 29, 0, 0, 0, 0}, {2026, 11, 17, 24, 0, 0, 500}, {2026, 11, 17, 23, 59, 60, 0},
        {2026, 13, 1, 0, 0, 0, 0}, {99, 12, 31, 0, 0, 0, 0},      {10000, 1, 1, 0, 0, 0, 0},
    };
    for (const auto& f : invalid) {
        for (VARTYPE type : std::initializer_list<VARTYPE>{0, VT_DATE}) {
            const CVarion v(f[0], f[1], f[2], f[3], f[4], f[5], f[6], type);
            const VARTYPE kept = type == 0 ? VARTYPE{VTX_DATETIME} : type;
            EXPECT_EQ(varion::test::Bytes(v), varion::test::Bytes(Make(kept, 0.0))) << f[0] << "-" << f[1] << "-" << f[2];
        }
    }
}

TEST(Fields, RoundedCounts) {
    struct Row { double days, units; LONGLONG count; };
    const Row rows[] = {
        {3.587962962962963e-07, kMillisecondsPerDay, 31},  // 31 ms multiplies out to 30.999999999999996
        {-0.9999 * kMs, kMillisecondsPerDay, -1},          {0.99999999999, 24, 24},
        {0.98 * kMs, kMillisecondsPerDay, 0},  // more than 1/64 ms short
        {0.5 / kFractionsPerDay, kFractionsPerDay, 1},  // half a fraction rounds away from zero
        {-0.5 / kFractionsPerDay, kFractionsPerDay, -1},   {0.49 / kFractionsPerDay, kFractionsPerDay, 0},
        {-0.0, kMillisecondsPerDay, 0},                    {kNaN, 24, 0},
        {1e300, kMillisecondsPerDay, INT64_MAX},           {-std::numeric_limits<double>::infinity(), 24, INT64_MIN},
        {3652.5, kFractionsPerDay, 10098432000000LL},
    };
    for (const Row& r : rows) EXPECT_EQ(RoundedCount(r.days, r.units), r.count) << r.days << " x " << r.units;
}

// 23:59:59.999 never becomes the next day, anywhere in the calendar range, and
// every millisecond of a second reads back beside its whole second, up to the
// year 9999. Before day 0 a millisecond added to the whole second reads back
// as millisecond - 1000.
TEST(Fields, MillisecondEdge) {
    for (long long day = -657434; day <= 2958465; day += 997) {
        for (long long d : {day, -657434LL, -1LL, 0LL, 2958465LL}) {
            DateTimeFieldSet midnight, f;
            ASSERT_TRUE(DateTimeFields(static_cast<double>(d), midnight));
            double value = 0;
            ASSERT_EQ(DateFromFields(midnight.year, midnight.month, midnight.day, 23, 59, 59, 999, value), 0);
            ASSERT_TRUE(DateTimeFields(value, f)) << d;
            ASSERT_EQ((std::array<long, 5>{f.day, f.hour, f.minute, f.second, f.millisecond}),
                      (std::array<long, 5>{midnight.day, 23, 59, 59, d >= 0 ? 999 : -1}))
                << d;
        }
    }
    for (long year : {100L, 1899L, 1900L, 2026L, 5000L, 9999L}) {
        for (long ms = 0; ms < 1000; ++ms) {
            const double value = Date(year, 12, 31, 23, 59, 59, ms);
            DateTimeFieldSet f;
            ASSERT_TRUE(DateTimeFields(value, f));
            ASSERT_EQ((std::array<long, 3>{f.day, f.second, f.millisecond}),
                      (std::array<long, 3>{31, 59, (value < 0 && ms > 0) ? ms - 1000 : ms}))
                << year << " " << ms;
        }
    }
}

}  // namespace
