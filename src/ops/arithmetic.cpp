// Arithmetic over mixed types: the destination type of a pair, the four
// computing domains and the widening of integer results that do not fit.
#include <varion/varion.h>

#include "value/access.h"

#include <cfloat>
#include <cstdint>

using varion::detail::Access;
using varion::detail::Load;
using varion::detail::Store;

namespace {

// Rows and columns of the destination table.
enum Row : int { BSTR_, I1_, UI1_, I2_, UI2_, I4_, UI4_, R4_, R8_, I8_, UI8_, NONE_ = -1 };

// DestinationTypeIndex: the row of the type codes 0 to 21; codes that behave
// alike share a row, codes without one have no destination.
// clang-format off
constexpr int kDestinationTypeIndex[22] = {
    /*  0 VT_EMPTY */ I1_,   /*  1 VT_NULL */ NONE_, /*  2 VT_I2   */ I2_,   /*  3 VT_I4   */ I4_,
    /*  4 VT_R4    */ R4_,   /*  5 VT_R8   */ R8_,   /*  6 VT_CY   */ NONE_, /*  7 VT_DATE */ NONE_,
    /*  8 VT_BSTR  */ BSTR_, /*  9         */ NONE_, /* 10         */ NONE_, /* 11 VT_BOOL */ I1_,
    /* 12          */ NONE_, /* 13         */ NONE_, /* 14         */ NONE_, /* 15         */ NONE_,
    /* 16 VT_I1    */ I1_,   /* 17 VT_UI1  */ UI1_,  /* 18 VT_UI2  */ UI2_,  /* 19 VT_UI4  */ UI4_,
    /* 20 VT_I8    */ I8_,   /* 21 VT_UI8  */ UI8_,
};

constexpr VARTYPE BSTR = VT_BSTR, I1 = VT_I1, UI1 = VT_UI1, I2 = VT_I2, UI2 = VT_UI2, I4 = VT_I4,
                  UI4 = VT_UI4, R4 = VT_R4, R8 = VT_R8, I8 = VT_I8, UI8 = VT_UI8;

// DestinationTypeTable[left row][right column].
constexpr VARTYPE kDestinationTypeTable[11][11] = {
    //  right:  BSTR  I1    UI1   I2    UI2   I4    UI4   R4    R8    I8    UI8
    /* BSTR */ {BSTR, I1,   UI1,  I2,   UI2,  I4,   UI4,  R4,   R8,   I8,   UI8},
    /* I1   */ {I1,   I1,   UI1,  I2,   UI2,  I4,   UI4,  R4,   R8,   I8,   UI8},
    /* UI1  */ {UI1,  UI1,  UI1,  I2,   UI2,  I4,   UI4,  R4,   R8,   I8,   UI8},
    /* I2   */ {I2,   I2,   I2,   I2,   UI2,  I4,   UI4,  R4,   R8,   I8,   UI8},
    /* UI2  */ {UI2,  UI2,  UI2,  UI2,  UI2,  I4,   UI4,  R4,   R8,   I8,   UI8},
    /* I4   */ {I4,   I4,   I4,   I4,   I4,   I4,   UI4,  R4,   R8,   I8,   UI8},
    /* UI4  */ {UI4,  UI4,  UI4,  UI4,  UI4,  UI4,  UI4,  R4,   R8,   UI8,  UI8},
    /* R4   */ {R4,   R4,   R4,   R4,   R4,   R4,   R4,   R4,   R8,   R8,   R4},
    /* R8   */ {R8,   R8,   R8,   R8,   R8,   R8,   R8,   R8,   R8,   R8,   R8},
    /* I8   */ {I8,   I8,   I8,   I8,   I8,   I8,   UI8,  R8,   R8,   I8,   UI8},
    /* UI8  */ {UI8,  UI8,  UI8,  UI8,  UI8,  UI8,  UI8,  R8,   R8,   UI8,  UI8},
};

// The widening ladder of integer destinations; 0 ends it.
struct LadderStep {
    VARTYPE failed;
    VARTYPE next;
};
constexpr LadderStep kWideningLadder[] = {
    {VT_I1, VT_I2}, {VT_I2, VT_I4}, {VT_I4, VT_I8},
    {VT_UI1, VT_UI2}, {VT_UI2, VT_UI4}, {VT_UI4, VT_UI8},
    {VT_UI8, 0},
};
// clang-format on

int RowOf(VARTYPE t) { return t < 22 ? kDestinationTypeIndex[t] : NONE_; }

VARTYPE NextOnLadder(VARTYPE t) {
    for (const LadderStep& s : kWideningLadder)
        if (s.failed == t) return s.next;
    return 0;
}

constexpr double kLargest = DBL_MAX;
// What a division or remainder by zero leaves in the result, in every domain.
constexpr double kQuotientByZero = 0.0;

// x op y in double precision. Division by zero and the operations this
// domain has not (remainder, unknown codes) set RC_NOT_CONVERTIBLE.
double Compute(double x, double y, int op, long& code) {
    switch (op) {
    case OP_ADD: return x + y;
    case OP_SUB: return x - y;
    case OP_MUL: return x * y;
    case OP_DIV:
        if (y != 0) return x / y;
        code = RC_NOT_CONVERTIBLE;
        return kQuotientByZero;
    default:
        code = RC_NOT_CONVERTIBLE;
        return kLargest;
    }
}

// Releases what the result held and gives it a type and a value field member.
template <class T>
void Put(CVarion& result, VARTYPE type, T value) {
    result.Clear();
    VARIANT& v = Access::Var(result);
    Store(v, value);
    v.vt = type;
}

// The day count of an operand: a date-family value as it stands, any other
// value converted to the other operand's date type (0.0 when that fails).
double DayCount(const CVarion& operand, VARTYPE otherType) {
    if (CVarion::IsAnyDateType(operand.GetType())) return Load<double>(Access::Var(operand));
    CVarion copy(operand);
    return copy.SetType(otherType) == RC_OK ? Load<double>(Access::Var(copy)) : 0.0;
}

long DateDomain(CVarion& result, const CVarion& a, const CVarion& b, int op, VARTYPE dest) {
    const double x = DayCount(a, b.GetType());
    const double y = DayCount(b, a.GetType());
    long code = RC_OK;
    double r = Compute(x, y, op, code);
    if (r > kLargest) {
        code = RC_ABOVE_MAX;
    } else if (r < 0 && dest != VTX_ISO_DURATION) {
        code = RC_BELOW_MIN;
        r = 0.0;
    }
    Put(result, dest, r);
    return code;
}

long FloatingDomain(CVarion& result, const CVarion& a, const CVarion& b, int op, VARTYPE dest) {
    const double x = static_cast<double>(a);
    const double y = static_cast<double>(b);
    long code = RC_OK;
    double r = Compute(x, y, op, code);
    if (r > kLargest)
        code = RC_ABOVE_MAX;
    else if (r < -kLargest)
        code = RC_BELOW_MIN;
    Put(result, VT_R8, r);
    const long converted = result.SetType(dest);
    if (code >= 0 && converted < 0) code = converted;
    return code;
}

long UnsignedDomain(CVarion& result, const CVarion& a, const CVarion& b, int op) {
    const auto u = static_cast<ULONGLONG>(a);
    const auto w = static_cast<ULONGLONG>(b);
    long code = RC_OK;
    ULONGLONG r = 0;
    switch (op) {
    case OP_ADD:
        if (w > ~u) code = RC_ABOVE_MAX;
        r = u + w;
        break;
    case OP_SUB:
        if (w > u) code = RC_BELOW_MIN;
        r = u - w;
        break;
    case OP_MUL: r = u * w; break;
    case OP_DIV:
    case OP_MOD:
        if (w == 0) {
            code = RC_NOT_CONVERTIBLE;
            r = static_cast<ULONGLONG>(kQuotientByZero);
        } else {
            r = op == OP_DIV ? u / w : u % w;
        }
        break;
    default: code = RC_NOT_CONVERTIBLE; break;
    }
    Put(result, VT_UI8, r);
    return code;
}

long SignedDomain(CVarion& result, const CVarion& a, const CVarion& b, int op, VARTYPE dest) {
    const auto p = static_cast<LONGLONG>(a);
    const auto q = static_cast<LONGLONG>(b);
    const auto up = static_cast<ULONGLONG>(p);
    const auto uq = static_cast<ULONGLONG>(q);
    long code = RC_OK;
    LONGLONG r = 0;
    switch (op) {
    // Two's complement, modulo 2^64: overflow wraps and sets no code.
    case OP_ADD: r = static_cast<LONGLONG>(up + uq); break;
    case OP_SUB: r = static_cast<LONGLONG>(up - uq); break;
    case OP_MUL: r = static_cast<LONGLONG>(up * uq); break;
    case OP_DIV:
        if (q == 0) {
            code = RC_NOT_CONVERTIBLE;
            r = static_cast<LONGLONG>(kQuotientByZero);
        } else {
            r = q == -1 ? static_cast<LONGLONG>(0 - up) : p / q;
        }
        break;
    case OP_MOD:
        if (q == 0) {
            code = RC_NOT_CONVERTIBLE;
            r = static_cast<LONGLONG>(kQuotientByZero);
        } else {
            r = q == -1 ? 0 : p % q;
        }
        break;
    default:
        code = RC_NOT_CONVERTIBLE;
        r = -2147483648LL;
        break;
    }
    Put(result, VT_I8, r);
    // Narrow to the destination, widening step by step while it does not fit.
    while (result.SetType(dest) != RC_OK) {
        dest = NextOnLadder(dest);
        if (dest == 0) {
            result.Clear();
            result.SetType(VT_UI8);
            return RC_NOT_CONVERTIBLE;
        }
    }
    return code;
}

}  // namespace

bool CVarion::SearchDestinationTyp(const CVarion& a, const CVarion& b, int op, unsigned short& dest) noexcept {
    dest = 0;
    const VARTYPE ta = a.GetType();
    const VARTYPE tb = b.GetType();
    const bool dateA = IsAnyDateType(ta);
    const bool dateB = IsAnyDateType(tb);
    const bool addOrSub = op == OP_ADD || op == OP_SUB;
    if (dateA && dateB) {
        if (IsDurationType(ta) && IsDurationType(tb) && addOrSub)
            dest = (ta == VTX_DURATION_MSF || tb == VTX_DURATION_MSF) ? VARTYPE{VTX_DURATION_MSF} : ta;
        else if (IsDateTimeType(ta) && IsDurationType(tb) && addOrSub)
            dest = ta == VTX_ISO_DATETIME ? VARTYPE{VTX_ISO_DATETIME} : VARTYPE{VT_DATE};
        else if (IsDurationType(ta) && IsDateTimeType(tb) && op == OP_ADD)
            dest = tb == VTX_ISO_DATETIME ? VARTYPE{VTX_ISO_DATETIME} : VARTYPE{VT_DATE};
        else if (IsDateTimeType(ta) && IsDateTimeType(tb) && op == OP_SUB)
            dest = VTX_DURATION;
        return dest != 0;
    }
    if (dateA || dateB) {
        dest = dateA ? ta : tb;
        return true;
    }
    const int row = RowOf(ta);
    const int column = RowOf(tb);
    if (row == NONE_ || column == NONE_) return false;
    dest = kDestinationTypeTable[row][column];
    return true;
}

long CVarion::Arithmetic(CVarion& result, const CVarion& a, const CVarion& b, int op) noexcept {
    const bool resultIsOperand = &result == &a || &result == &b;
    if (!resultIsOperand) result.Clear();
    unsigned short dest = 0;
    if (!SearchDestinationTyp(a, b, op, dest)) return RC_NOT_CONVERTIBLE;
    if (IsAnyDateType(dest)) return DateDomain(result, a, b, op, dest);
    if (dest == VT_R4 || dest == VT_R8 || dest == VT_BSTR) return FloatingDomain(result, a, b, op, dest);
    if (dest == VT_UI8) return UnsignedDomain(result, a, b, op);
    return SignedDomain(result, a, b, op, dest);
}
