// Numbers and the date family. A date-time stands for the number of days
// since 1900-01-01 (its day count less 2.0, as a VT_R8); a duration for its
// whole milliseconds (VTX_DURATION_MSF: its whole 1/32 milliseconds, as a
// VT_I8). Every change from a date-family value into something other than
// text goes through that number, so date-to-date changes are compositions:
// VTX_DURATION to VTX_DURATION_MSF reads the millisecond count as fractions.
#include <varion/varion.h>

#include "convert/numeric.h"
#include "convert/routes.h"
#include "datetime/datetime.h"
#include "value/access.h"

#include <cmath>

using namespace varion::detail;

namespace {

constexpr double kDaysFrom1900 = 2.0;  // 1899-12-30 to 1900-01-01

double UnitsPerDay(VARTYPE duration) noexcept {
    return duration == VTX_DURATION_MSF ? kFractionsPerDay : kMillisecondsPerDay;
}

// The whole units of a duration of `days`: the rounding offset of 1/64 ms is
// added away from zero, then the product is truncated toward zero (31 ms,
// 3.587962962962963e-07 days, gives 31, not 30). False when the count does
// not fit 64 bits (or the day count is NaN).
bool WholeUnits(double days, double perDay, LONGLONG& count) noexcept {
    const double offset = days >= 0 ? kRoundingOffset : -kRoundingOffset;
    const double units = std::trunc((days + offset) * perDay);
    if (!(units >= -9223372036854775808.0 && units < 9223372036854775808.0)) return false;
    count = static_cast<LONGLONG>(units);
    return true;
}

}  // namespace

long CVarion::ChangeDateToNumeric(VARTYPE type) noexcept {
    if (!IsAnyDateType(m_v.vt)) return RC_NOT_CONVERTIBLE;
    const double days = Load<double>(m_v);
    CVarion number;
    if (IsDateTimeType(m_v.vt)) {
        number = CVarion(days - kDaysFrom1900);
    } else {
        LONGLONG count = 0;
        if (!WholeUnits(days, UnitsPerDay(m_v.vt), count)) return RC_NOT_CONVERTIBLE;
        number = CVarion(count);
    }
    if (number.SetType(type) < 0) return RC_NOT_CONVERTIBLE;
    VARIANT& result = Access::Var(number);
    CommitMember(m_v, result);
    result.vt = VT_EMPTY;  // a string result now belongs to this value
    return RC_OK;
}

long CVarion::ChangeNumericToDate(VARTYPE type) noexcept {
    if (!IsNumericType(m_v.vt)) return RC_NOT_CONVERTIBLE;
    VARIANT copy = m_v;
    double days = 0.0;
    if (IsDateTimeType(type)) {
        if (ConvertNumeric(copy, VT_R8) != RC_OK) return RC_NOT_CONVERTIBLE;
        days = Load<double>(copy) + kDaysFrom1900;
    } else if (IsDurationType(type)) {
        if (ConvertNumeric(copy, VT_I8) != RC_OK) return RC_NOT_CONVERTIBLE;
        days = static_cast<double>(Load<LONGLONG>(copy)) / UnitsPerDay(type);
    } else {
        return RC_NOT_CONVERTIBLE;
    }
    Store(m_v, days);
    m_v.vt = type;
    return RC_OK;
}
