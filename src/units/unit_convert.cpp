// CVarion::UnitConvert: a number re-expressed from one unit code in another.
// Linear units convert through the factors of their rows; temperatures go
// through kelvin by the formulas below. The arithmetic is in double; the
// result is brought back into the source's type.
#include <varion/varion.h>

#include "units/unit_table.h"

namespace varion::detail {
namespace {

// The temperature scales that convert by formula, each under its HART and
// its fieldbus code. The constants are part of the conversion's definition:
// a Rankine value comes back from kelvin by way of 491.67, not by v x 1.8.
struct TemperatureScale {
    short hart;
    short fieldbus;
    double (*toKelvin)(double);
    double (*fromKelvin)(double);
};

// clang-format off
constexpr TemperatureScale kTemperatureScales[] = {
    // HART  FF     to kelvin                                           from kelvin
    {35, 1000, [](double v) { return v; },                              [](double v) { return v; }},
    {32, 1001, [](double v) { return v + 273.15; },                     [](double v) { return v - 273.15; }},
    {33, 1002, [](double v) { return (v - 32.0) / 1.8 + 273.15; },      [](double v) { return (v - 273.15) * 1.8 + 32.0; }},
    {34, 1003, [](double v) { return v / 1.8; },                        [](double v) { return (v - 273.15) * 1.8 + 491.67; }},
};
// clang-format on

const TemperatureScale* ScaleOf(int code) noexcept {
    for (const TemperatureScale& s : kTemperatureScales)
        if (s.hart == code || s.fieldbus == code) return &s;
    return nullptr;
}

}  // namespace

long ConvertBetweenRows(const UnitRow& from, const UnitRow& to, double& v) noexcept {
    if (from.kind == kTemperatureKind) {
        const TemperatureScale* a = ScaleOf(from.code);
        const TemperatureScale* b = ScaleOf(to.code);
        if (a == nullptr || b == nullptr) return RC_UNIT_NOT_CONVERTIBLE;
        v = b->fromKelvin(a->toKelvin(v));
        return RC_OK;
    }
    // Written so that a NaN factor fails the test as a zero one does.
    if (!(from.factor > 0.0 && to.factor > 0.0)) return RC_UNIT_NOT_CONVERTIBLE;
    v = v / from.factor * to.factor;
    return RC_OK;
}

}  // namespace varion::detail

long CVarion::UnitConvert(short from, short to, CVarion* result) const noexcept {
    using varion::detail::FindUnit;
    using varion::detail::UnitRow;

    if (m_v.vt == VT_EMPTY || result == nullptr || from == -1) return RC_NOT_CONVERTIBLE;
    // Read before the result is written: it may be this value.
    const VARTYPE sourceType = m_v.vt;
    const double value = static_cast<double>(*this);

    if (from == to) {
        *result = CVarion(value);
        return RC_OK;
    }
    if (to == 0) {
        *result = CVarion(value);
        return RC_UNIT_NO_TARGET;
    }
    const UnitRow* a = FindUnit(from);
    const UnitRow* b = FindUnit(to);
    if (a == nullptr || b == nullptr) {
        *result = CVarion(value);
        return RC_UNIT_NOT_CONVERTIBLE;
    }

    double converted = value;
    long code = RC_UNIT_NOT_CONVERTIBLE;
    if (a->kind == b->kind && a->group == b->group) code = varion::detail::ConvertBetweenRows(*a, *b, converted);
    *result = CVarion(converted);
    // Back into the source's type where the number fits it; otherwise the
    // result stays as that conversion leaves it.
    result->SetType(sourceType);
    return code;
}
