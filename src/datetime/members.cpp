// CVarion's calendar and duration accessors and its field constructors.
#include "datetime/datetime.h"

#include "value/access.h"

#include <cstring>

using namespace varion::detail;

namespace {

// The accessor table in code: a date-time answers its calendar field (-1 when
// it does not split), a duration its component, every other type -1.
// `msfOnly` restricts the duration answer to VTX_DURATION_MSF.
template <class R>
R FieldOf(const VARIANT& v, long DateTimeFieldSet::*dateField, R DurationFieldSet::*durationField,
          bool msfOnly = false) noexcept {
    const double value = Load<double>(v);
    if (dateField != nullptr && CVarion::IsDateTimeType(v.vt)) {
        DateTimeFieldSet fields;
        return DateTimeFields(value, fields) ? fields.*dateField : -1;
    }
    if (durationField != nullptr && CVarion::IsDurationType(v.vt) && (!msfOnly || v.vt == VTX_DURATION_MSF))
        return DurationFields(value).*durationField;
    return -1;
}

}  // namespace

// clang-format off
long CVarion::GetYear() const noexcept      { return FieldOf<long>(m_v, &DateTimeFieldSet::year, nullptr); }
long CVarion::GetMonth() const noexcept     { return FieldOf<long>(m_v, &DateTimeFieldSet::month, nullptr); }
long CVarion::GetDayOfWeek() const noexcept { return FieldOf<long>(m_v, &DateTimeFieldSet::dayOfWeek, nullptr); }
long CVarion::GetDay() const noexcept       { return FieldOf(m_v, &DateTimeFieldSet::day, &DurationFieldSet::days); }
long CVarion::GetHour() const noexcept      { return FieldOf(m_v, &DateTimeFieldSet::hour, &DurationFieldSet::hours); }
long CVarion::GetMinute() const noexcept    { return FieldOf(m_v, &DateTimeFieldSet::minute, &DurationFieldSet::minutes); }
long CVarion::GetSecond() const noexcept    { return FieldOf(m_v, &DateTimeFieldSet::second, &DurationFieldSet::seconds); }
long CVarion::GetMillisecond() const noexcept {
    return FieldOf(m_v, &DateTimeFieldSet::millisecond, &DurationFieldSet::milliseconds);
}
LONGLONG CVarion::GetTotalMilliseconds() const noexcept {
    return FieldOf(m_v, nullptr, &DurationFieldSet::totalMilliseconds);
}
long CVarion::GetMillisecondFractions() const noexcept {
    return FieldOf(m_v, nullptr, &DurationFieldSet::fractions, true);
}
LONGLONG CVarion::GetTotalMillisecondFractions() const noexcept {
    return FieldOf(m_v, nullptr, &DurationFieldSet::totalFractions, true);
}
// clang-format on

CVarion::CVarion(long year, long month, long day, long hour, long minute, long second, long millisecond,
                 unsigned short type) noexcept {
    std::memset(&m_v, 0, sizeof(m_v));
    double value = 0.0;
    DateFromFields(year, month, day, hour, minute, second, millisecond, value);
    m_v.vt = IsDateTimeType(type) ? type : static_cast<VARTYPE>(VTX_DATETIME);
    Store(m_v, value);
}

CVarion::CVarion(long days, long hours, long minutes, long seconds, long milliseconds, long millisecondFractions,
                 unsigned short type) noexcept {
    std::memset(&m_v, 0, sizeof(m_v));
    m_v.vt = IsDurationType(type) ? type : static_cast<VARTYPE>(VTX_DURATION_MSF);
    Store(m_v, DurationFromFields(days, hours, minutes, seconds, milliseconds, millisecondFractions));
}
