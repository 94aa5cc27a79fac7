// Comparison of values of any types.
//
// The relational operators work on copies of both operands. Date-times compare
// only with date-times (by their day counts, exactly), durations only with
// durations (by their counts of 1/32 ms), strings ordinally, arrays element by
// element; a string facing a number is first converted to the number's type.
// Numbers are then read into a comparison class; numbers of different
// classes meet as doubles in the tolerant class, where b - t <= a <= b + t
// with t a millionth of b (so VT_I4 5 equals VT_R8 5.0000049).
#include <varion/varion.h>

#include "datetime/datetime.h"
#include "value/access.h"

#include <cmath>
#include <cstdint>
#include <new>

using varion::detail::Access;
using varion::detail::IsArrayType;
using varion::detail::Load;

namespace varion::detail {
namespace {

enum class Class { Signed, Unsigned, Double, Single, Tolerant };

// An operand read into its class; only the member of its class is set and
// read (i for Signed, u for Unsigned, f for Single, d for the others).
struct Operand {
    Class cls = Class::Tolerant;
    union {
        LONGLONG i;
        ULONGLONG u;
        double d = 0;
        float f;
    };
};

constexpr double kToleranceDivisor = 1000000.0;
constexpr double kFallbackTolerance = 0.000001;
constexpr double kDoubleEpsilon = 2.220446049250313e-16;
constexpr float kSingleEpsilon = 1.1920928955078125e-07f;

enum class Relation { Equal, Less, LessEqual, Greater, GreaterEqual };

Operand Read(const CVarion& v) {
    Operand o;
    const VARIANT& var = Access::Var(v);
    // The integers read as they are held: each fits the signed 64-bit class
    // (as operator LONGLONG() would read it).
    switch (var.vt) {
    case VT_I1: o.cls = Class::Signed; o.i = Load<std::int8_t>(var); break;
    case VT_UI1: case VT_BOOL: o.cls = Class::Signed; o.i = Load<std::uint8_t>(var); break;
    case VT_I2: o.cls = Class::Signed; o.i = Load<std::int16_t>(var); break;
    case VT_UI2: o.cls = Class::Signed; o.i = Load<std::uint16_t>(var); break;
    case VT_I4: o.cls = Class::Signed; o.i = Load<std::int32_t>(var); break;
    case VT_UI4: o.cls = Class::Signed; o.i = Load<std::uint32_t>(var); break;
    case VT_I8: o.cls = Class::Signed; o.i = Load<std::int64_t>(var); break;
    case VT_UI8:
        o.cls = Class::Unsigned;
        o.u = Load<ULONGLONG>(var);
        break;
    case VT_R8:
        o.cls = Class::Double;
        o.d = Load<double>(var);
        break;
    case VT_R4:
        o.cls = Class::Single;
        o.f = Load<float>(var);
        break;
    default:
        o.cls = Class::Tolerant;
        o.d = static_cast<double>(v);
        break;
    }
    return o;
}

double AsDouble(const Operand& o) {
    switch (o.cls) {
    case Class::Signed: return static_cast<double>(o.i);
    case Class::Unsigned: return static_cast<double>(o.u);
    case Class::Single: return static_cast<double>(o.f);
    default: return o.d;
    }
}

// One millionth of b; of a when that is zero; 1e-6 when both are. Made
// positive only when b is negative.
double Tolerance(double a, double b) {
    double t = b / kToleranceDivisor;
    if (t == 0) t = a / kToleranceDivisor;
    if (t == 0) t = kFallbackTolerance;
    if (b < 0) t = -t;
    return t;
}

template <class T>
bool Holds(Relation r, T a, T b) {
    switch (r) {
    case Relation::Equal: return a == b;
    case Relation::Less: return a < b;
    case Relation::LessEqual: return a <= b;
    case Relation::Greater: return a > b;
    case Relation::GreaterEqual: return a >= b;
    }
    return false;
}

bool HoldsTolerant(Relation r, double a, double b) {
    const double t = Tolerance(a, b);
    switch (r) {
    case Relation::Equal: return b - t <= a && a <= b + t;
    case Relation::Less: return a < b + t;
    case Relation::LessEqual: return a <= b + t;
    case Relation::Greater: return a > b - t;
    case Relation::GreaterEqual: return a >= b - t;
    }
    return false;
}

bool IsSpecial(double x) { return std::isnan(x) || std::isinf(x); }

int Ordinal(BSTR a, BSTR b) {
    const OLECHAR* x = a != nullptr ? a : OLESTR("");
    const OLECHAR* y = b != nullptr ? b : OLESTR("");
    for (;; ++x, ++y) {
        const auto cx = static_cast<std::uint16_t>(*x);
        const auto cy = static_cast<std::uint16_t>(*y);
        if (cx != cy) return cx < cy ? -1 : 1;
        if (cx == 0) return 0;
    }
}

LONGLONG DurationCount(const CVarion& v) { return RoundedCount(Load<double>(Access::Var(v)), kFractionsPerDay); }

bool ArraysEqual(const CVarion& a, const CVarion& b);

// Two operands read into their classes and compared.
bool CompareOperands(const Operand& x, const Operand& y, Relation r);

// Two numbers, compared as they are held.
bool CompareNumberValues(const CVarion& a, const CVarion& b, Relation r) {
    return CompareOperands(Read(a), Read(b), r);
}

// Steps shared by equality and ordering once the special groups are done:
// a string facing a number becomes that number's type, then both operands are
// read into their classes and compared.
bool CompareNumbers(CVarion& a, CVarion& b, Relation r) {
    if (a.GetType() == VT_BSTR && CVarion::IsNumericType(b.GetType()) && a.SetType(b.GetType()) != RC_OK)
        return false;
    const Operand x = Read(a);
    if (b.GetType() == VT_BSTR && CVarion::IsNumericType(a.GetType()) && b.SetType(a.GetType()) != RC_OK)
        return false;
    return CompareOperands(x, Read(b), r);
}

bool CompareOperands(const Operand& x, const Operand& y, Relation r) {
    if (r == Relation::Equal) {
        const bool wide = [](Class c) { return c == Class::Double || c == Class::Tolerant; }(x.cls) &&
                          (y.cls == Class::Double || y.cls == Class::Tolerant);
        if (wide && IsSpecial(x.d) && IsSpecial(y.d))
            return (std::isnan(x.d) && std::isnan(y.d)) || (std::isinf(x.d) && x.d == y.d);
    }
    if (x.cls != y.cls) return HoldsTolerant(r, AsDouble(x), AsDouble(y));
    switch (x.cls) {
    case Class::Signed: return Holds(r, x.i, y.i);
    case Class::Unsigned: return Holds(r, x.u, y.u);
    case Class::Double:
        if (r == Relation::Equal) return std::fabs(x.d - y.d) < kDoubleEpsilon;
        return Holds(r, x.d, y.d);
    case Class::Single:
        if (r == Relation::Equal) {
            const float diff = x.f - y.f;
            return std::fabs(diff) < kSingleEpsilon;
        }
        return Holds(r, x.f, y.f);
    case Class::Tolerant:
        return HoldsTolerant(r, x.d, y.d);
    }
    return false;
}

// Two numbers need none of the tests for the other kinds, and no copies: a
// copy is taken only so that a string can be converted.
bool BothNumbers(const CVarion& a, const CVarion& b) noexcept {
    return CVarion::IsNumericType(a.GetType()) && CVarion::IsNumericType(b.GetType());
}

bool EqualsAcrossKinds(const CVarion& left, const CVarion& right);
bool OrdersAcrossKinds(const CVarion& left, const CVarion& right, Relation r);

bool Equals(const CVarion& left, const CVarion& right) {
    if (BothNumbers(left, right)) return CompareNumberValues(left, right, Relation::Equal);
    return EqualsAcrossKinds(left, right);
}

bool Orders(const CVarion& left, const CVarion& right, Relation r) {
    if (BothNumbers(left, right)) return CompareNumberValues(left, right, r);
    return OrdersAcrossKinds(left, right, r);
}

bool EqualsAcrossKinds(const CVarion& left, const CVarion& right) {
    CVarion a(left);
    CVarion b(right);
    const VARTYPE ta = a.GetType();
    const VARTYPE tb = b.GetType();
    if (ta == VT_EMPTY || tb == VT_EMPTY) return ta == tb;
    const bool dateA = CVarion::IsDateTimeType(ta);
    const bool dateB = CVarion::IsDateTimeType(tb);
    if (dateA || dateB) return dateA && dateB && Load<double>(Access::Var(a)) == Load<double>(Access::Var(b));
    const bool spanA = CVarion::IsDurationType(ta);
    const bool spanB = CVarion::IsDurationType(tb);
    if (spanA || spanB) return spanA && spanB && DurationCount(a) == DurationCount(b);
    if (IsArrayType(ta) && IsArrayType(tb)) return ArraysEqual(a, b);
    if (ta == VT_BSTR && tb == VT_BSTR) return Ordinal(Access::Var(a).bstrVal, Access::Var(b).bstrVal) == 0;
    return CompareNumbers(a, b, Relation::Equal);
}

bool OrdersAcrossKinds(const CVarion& left, const CVarion& right, Relation r) {
    if (left.isArray()) return false;
    CVarion a(left);
    CVarion b(right);
    const VARTYPE ta = a.GetType();
    const VARTYPE tb = b.GetType();
    if ((ta == VT_EMPTY) != (tb == VT_EMPTY)) return false;
    const bool dateA = CVarion::IsDateTimeType(ta);
    const bool dateB = CVarion::IsDateTimeType(tb);
    if (dateA || dateB)
        return dateA && dateB && Holds(r, Load<double>(Access::Var(a)), Load<double>(Access::Var(b)));
    const bool spanA = CVarion::IsDurationType(ta);
    const bool spanB = CVarion::IsDurationType(tb);
    if (spanA || spanB) return spanA && spanB && Holds(r, DurationCount(a), DurationCount(b));
    if (ta == VT_BSTR && tb == VT_BSTR) return Holds(r, Ordinal(Access::Var(a).bstrVal, Access::Var(b).bstrVal), 0);
    return CompareNumbers(a, b, r);
}

// Element k (counted from the array's lower bound) as a value of the
// element type; VT_EMPTY when it cannot be read.
CVarion Element(SAFEARRAY* psa, VARTYPE elementType, ULONG k) {
    LONG index = static_cast<LONG>(psa->rgsabound[0].lLbound + static_cast<long long>(k));
    switch (elementType) {
    case VT_BSTR: {
        BSTR s = nullptr;
        if (FAILED(SafeArrayGetElement(psa, &index, &s))) return CVarion();
        CVarion v(s != nullptr ? s : OLESTR(""));
        SysFreeString(s);
        return v;
    }
    case VT_BOOL: {
        VARIANT_BOOL flag = 0;
        if (FAILED(SafeArrayGetElement(psa, &index, &flag))) return CVarion();
        return CVarion(flag != 0);
    }
    case VT_VARIANT: {
        VARIANT element;
        VariantInit(&element);
        if (FAILED(SafeArrayGetElement(psa, &index, &element))) return CVarion();
        CVarion v(element);
        VariantClear(&element);
        return v;
    }
    default: {
        VARIANT element;
        VariantInit(&element);
        element.llVal = 0;
        if (FAILED(SafeArrayGetElement(psa, &index, &element.llVal))) return CVarion();
        element.vt = elementType;
        CVarion v(element);
        VariantClear(&element);
        return v;
    }
    }
}

bool ArraysEqual(const CVarion& a, const CVarion& b) {
    SAFEARRAY* x = Access::Var(a).parray;
    SAFEARRAY* y = Access::Var(b).parray;
    if (SafeArrayGetDim(x) != 1 || SafeArrayGetDim(y) != 1) return false;
    if (a.GetElementCount() != b.GetElementCount()) return false;
    const auto typeA = static_cast<VARTYPE>(a.GetType() & ~VT_ARRAY);
    const auto typeB = static_cast<VARTYPE>(b.GetType() & ~VT_ARRAY);
    // A raw element must fit the value field it is read into.
    if (SafeArrayGetElemsize(x) > 8 && typeA != VT_VARIANT) return false;
    if (SafeArrayGetElemsize(y) > 8 && typeB != VT_VARIANT) return false;
    for (ULONG k = 0; k < a.GetElementCount(); ++k)
        if (!Equals(Element(x, typeA, k), Element(y, typeB, k))) return false;
    return true;
}

}  // namespace
}  // namespace varion::detail

using varion::detail::Relation;

int CVarion::operator==(const CVarion& other) const noexcept { return varion::detail::Equals(*this, other) ? 1 : 0; }
int CVarion::operator!=(const CVarion& other) const noexcept { return varion::detail::Equals(*this, other) ? 0 : 1; }
int CVarion::operator<(const CVarion& other) const noexcept {
    return varion::detail::Orders(*this, other, Relation::Less) ? 1 : 0;
}
int CVarion::operator<=(const CVarion& other) const noexcept {
    return varion::detail::Orders(*this, other, Relation::LessEqual) ? 1 : 0;
}
int CVarion::operator>(const CVarion& other) const noexcept {
    return varion::detail::Orders(*this, other, Relation::Greater) ? 1 : 0;
}
int CVarion::operator>=(const CVarion& other) const noexcept {
    return varion::detail::Orders(*this, other, Relation::GreaterEqual) ? 1 : 0;
}

// ---------------------------------------------------------------------------
// Named comparisons: both operands read as doubles (left first), exactly.
// ---------------------------------------------------------------------------
namespace {

bool BothStrings(const CVarion& a, const CVarion& b) { return a.GetType() == VT_BSTR && b.GetType() == VT_BSTR; }

int AsDoubles(const CVarion& a, const CVarion& b, Relation r) {
    const double x = static_cast<double>(a);
    const double y = static_cast<double>(b);
    return varion::detail::Holds(r, x, y) ? 1 : 0;
}

}  // namespace

int CVarion::Equal(const CVarion& a, const CVarion& b) noexcept {
    if (BothStrings(a, b))
        return varion::detail::Ordinal(Access::Var(a).bstrVal, Access::Var(b).bstrVal) == 0 ? 1 : 0;
    return AsDoubles(a, b, Relation::Equal);
}
int CVarion::NotEqual(const CVarion& a, const CVarion& b) noexcept {
    if (BothStrings(a, b))
        return varion::detail::Ordinal(Access::Var(a).bstrVal, Access::Var(b).bstrVal) != 0 ? 1 : 0;
    return 1 - AsDoubles(a, b, Relation::Equal);
}
int CVarion::LittleThen(const CVarion& a, const CVarion& b) noexcept { return AsDoubles(a, b, Relation::Less); }
int CVarion::GreaterEqual(const CVarion& a, const CVarion& b) noexcept {
    return AsDoubles(a, b, Relation::GreaterEqual);
}
int CVarion::GreaterThen(const CVarion& a, const CVarion& b) noexcept { return AsDoubles(a, b, Relation::Greater); }
int CVarion::LittleEqual(const CVarion& a, const CVarion& b) noexcept { return AsDoubles(a, b, Relation::LessEqual); }

int CVarion::Equal(const CVarion& other) const noexcept { return AsDoubles(*this, other, Relation::Equal); }
int CVarion::NotEqual(const CVarion& other) const noexcept { return 1 - AsDoubles(*this, other, Relation::Equal); }
int CVarion::LittleThen(const CVarion& other) const noexcept { return AsDoubles(*this, other, Relation::Less); }
int CVarion::GreaterEqual(const CVarion& other) const noexcept {
    return AsDoubles(*this, other, Relation::GreaterEqual);
}
int CVarion::GreaterThen(const CVarion& other) const noexcept { return AsDoubles(*this, other, Relation::Greater); }
int CVarion::LittleEqual(const CVarion& other) const noexcept { return AsDoubles(*this, other, Relation::LessEqual); }

// ---------------------------------------------------------------------------
// Logical operations: operands read as VT_I4, the right one only when needed.
// ---------------------------------------------------------------------------
int CVarion::OR(const CVarion& a, const CVarion& b) noexcept {
    if (static_cast<long>(a) != 0) return 1;
    return static_cast<long>(b) != 0 ? 1 : 0;
}
int CVarion::AND(const CVarion& a, const CVarion& b) noexcept {
    if (static_cast<long>(a) == 0) return 0;
    return static_cast<long>(b) != 0 ? 1 : 0;
}
int CVarion::OR(CVarion other) const noexcept { return OR(*this, other); }
int CVarion::AND(CVarion other) const noexcept { return AND(*this, other); }
