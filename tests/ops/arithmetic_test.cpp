// Arithmetic: the destination table, the integer domains against exact
// 128-bit arithmetic, the floating and date domains, shifts and unary steps.
#include "support/test_support.h"
#include "value/access.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <limits>
#include <sstream>
#include <tuple>
#include <string>
#include <vector>

using varion::detail::Access;
using varion::detail::Load;
using varion::test::Bytes;

namespace {

const VARTYPE kCodes[] = {VT_BSTR, VT_I1,  VT_UI1, VT_I2,    VT_UI2,       VT_I4,        VT_UI4,           VT_R4,
                          VT_R8,   VT_I8,  VT_UI8, VT_EMPTY, VT_BOOL,      VT_CY,        VT_DATE,          VTX_DURATION,
                          VTX_DURATION_MSF, VTX_ISO_DURATION, VTX_DATETIME, VTX_DATETIME_ALT, VTX_ISO_DATETIME};
const char* const kNames[] = {"BSTR", "I1",  "UI1",   "I2",   "UI2", "I4",    "UI4",    "R4",  "R8",  "I8",   "UI8",
                              "EMPTY", "BOOL", "CY", "DATE", "DUR", "MSF", "ISODUR", "DT", "DTALT", "ISODT"};

// The destination of two operands without date types, as the table reads.
const char* const kTable =
    "BSTR BSTR I1 UI1 I2 UI2 I4 UI4 R4 R8 I8 UI8\n"
    "I1   I1   I1 UI1 I2 UI2 I4 UI4 R4 R8 I8 UI8\n"
    "UI1  UI1 UI1 UI1 I2 UI2 I4 UI4 R4 R8 I8 UI8\n"
    "I2   I2   I2  I2 I2 UI2 I4 UI4 R4 R8 I8 UI8\n"
    "UI2  UI2 UI2 UI2 UI2 UI2 I4 UI4 R4 R8 I8 UI8\n"
    "I4   I4   I4  I4 I4  I4  I4 UI4 R4 R8 I8 UI8\n"
    "UI4  UI4 UI4 UI4 UI4 UI4 UI4 UI4 R4 R8 UI8 UI8\n"
    "R4   R4   R4  R4 R4  R4  R4  R4  R4 R8 R8 R4\n"
    "R8   R8   R8  R8 R8  R8  R8  R8  R8 R8 R8 R8\n"
    "I8   I8   I8  I8 I8  I8  I8  UI8 R8 R8 I8 UI8\n"
    "UI8  UI8 UI8 UI8 UI8 UI8 UI8 UI8 R8 R8 UI8 UI8\n";

// Other operands: "left op right = destination" ("-": none).
const char* const kOtherRows[] = {
    "EMPTY + BOOL = I1",     "BOOL + UI2 = UI2",       "CY + I4 = -",           "DUR - MSF = MSF",
    "ISODUR + DUR = ISODUR", "DUR * DUR = -",          "I4 * DUR = DUR",        "DATE + DUR = DATE",
    "DT - DUR = DATE",       "DTALT + ISODUR = DATE",  "ISODT + DUR = ISODT",   "DUR + DATE = DATE",
    "DUR + ISODT = ISODT",   "DUR - DATE = -",         "DATE - DATE = DUR",     "ISODT - ISODT = DUR",
    "DATE + DATE = -",       "DATE % DUR = -",
};

VARTYPE Named(const std::string& name) {
    for (std::size_t i = 0; i < std::size(kNames); ++i)
        if (name == kNames[i]) return kCodes[i];
    return 0xFFFF;
}

CVarion WithType(VARTYPE t, double days) {
    CVarion v(days);
    Access::Var(v).vt = t;
    return v;
}

// The bytes of a value's own member.
std::vector<unsigned char> Member(const CVarion& v) {
    const auto b = Bytes(v);
    return {b.begin() + 8, b.begin() + 8 + std::max(v.SizeOf(), 0)};
}

CVarion Typed(VARTYPE t) {
    if (t == VT_BSTR) return CVarion(OLESTR("1"));
    if (t == VT_CY || CVarion::IsAnyDateType(t)) return WithType(t, 1.0);
    CVarion v(1.0);
    if (t == VT_EMPTY) v.Clear();
    else v.SetType(t);
    return v;
}

}  // namespace

TEST(Destination, TableCellByCellAndOtherOperands) {
    std::istringstream in(kTable);
    std::string left, want;
    int cells = 0;
    while (in >> left) {
        for (std::size_t column = 0; column < 11; ++column) {
            in >> want;
            for (int op = OP_ADD; op <= OP_MOD; ++op, ++cells) {
                unsigned short dest = 99;
                ASSERT_TRUE(CVarion::SearchDestinationTyp(Typed(Named(left)), Typed(kCodes[column]), op, dest));
                EXPECT_EQ(dest, Named(want)) << left << " op" << op << " " << kNames[column];
            }
        }
    }
    EXPECT_EQ(cells, 11 * 11 * 5);
    for (const char* row : kOtherRows) {
        std::istringstream words(row);
        std::string a, op, b, equals, dest;
        words >> a >> op >> b >> equals >> dest;
        const int code = OP_ADD + static_cast<int>(std::string("+-*/%").find(op[0]));
        unsigned short got = 1;
        EXPECT_EQ(CVarion::SearchDestinationTyp(Typed(Named(a)), Typed(Named(b)), code, got), dest != "-") << row;
        EXPECT_EQ(got, dest == "-" ? 0 : Named(dest)) << row;
    }
    unsigned short got = 1;
    EXPECT_FALSE(CVarion::SearchDestinationTyp(CVarion(VT_I4, 2, 0), CVarion(1), OP_ADD, got));
}

namespace {

__extension__ typedef __int128 I128;
__extension__ typedef unsigned __int128 U128;

struct IntType {
    VARTYPE vt;
    I128 lo, hi;
    VARTYPE wider;  // where a result that does not fit goes
};

const IntType kIntTypes[] = {
    {VT_I1, -128, 127, VT_I2},                   {VT_UI1, 0, 255, VT_UI2},
    {VT_I2, -32768, 32767, VT_I4},               {VT_UI2, 0, 65535, VT_UI4},
    {VT_I4, -2147483648LL, 2147483647, VT_I8},   {VT_UI4, 0, 4294967295LL, VT_UI8},
    {VT_I8, std::numeric_limits<LONGLONG>::min(), std::numeric_limits<LONGLONG>::max(), VT_EMPTY},
    {VT_UI8, 0, static_cast<I128>(std::numeric_limits<ULONGLONG>::max()), VT_EMPTY},
};

const IntType& Range(VARTYPE vt) {
    for (const IntType& t : kIntTypes)
        if (t.vt == vt) return t;
    return kIntTypes[6];
}

CVarion MakeInt(VARTYPE vt, I128 x) {
    CVarion v = vt == VT_UI8 ? CVarion(static_cast<ULONGLONG>(x)) : CVarion(static_cast<LONGLONG>(x));
    EXPECT_EQ(v.SetType(vt), RC_OK);
    return v;
}

I128 Value(const CVarion& v) {
    const VARIANT& var = Access::Var(v);
    return var.vt == VT_UI8 ? static_cast<I128>(Load<ULONGLONG>(var)) : static_cast<I128>(static_cast<LONGLONG>(v));
}

struct Outcome { long code; VARTYPE type; I128 value; };

// The integer domains on 128-bit integers: a VT_UI8 destination computes
// modulo 2^64 (a negative operand reads as 0), any other in 64-bit signed
// arithmetic (a VT_UI8 above its range reads as 0), the result moving up the
// ladder of its signedness until it fits.
Outcome IntegerOracle(I128 x, I128 y, int op, VARTYPE dest) {
    const bool unsignedDomain = dest == VT_UI8;
    const I128 p = unsignedDomain ? (x < 0 ? 0 : x) : (x > Range(VT_I8).hi ? 0 : x);
    const I128 q = unsignedDomain ? (y < 0 ? 0 : y) : (y > Range(VT_I8).hi ? 0 : y);
    if ((op == OP_DIV || op == OP_MOD) && q == 0) return {RC_NOT_CONVERTIBLE, dest, 0};
    const I128 product = static_cast<I128>(static_cast<U128>(p) * static_cast<U128>(q));  // modulo 2^128
    const I128 exact = op == OP_ADD ? p + q : op == OP_SUB ? p - q : op == OP_MUL ? product : op == OP_DIV ? p / q : p % q;
    if (unsignedDomain) {
        const U128 wrapped = static_cast<U128>(exact) % (static_cast<U128>(1) << 64);
        const long code = op == OP_ADD && exact > Range(VT_UI8).hi ? RC_ABOVE_MAX : op == OP_SUB && q > p ? RC_BELOW_MIN : RC_OK;
        return {code, VT_UI8, static_cast<I128>(wrapped)};
    }
    const I128 r = static_cast<LONGLONG>(static_cast<ULONGLONG>(exact));  // wrapped to 64 bits
    for (VARTYPE t = dest; t != VT_EMPTY; t = Range(t).wider)
        if (r >= Range(t).lo && r <= Range(t).hi) return {RC_OK, t, r};
    return {RC_NOT_CONVERTIBLE, VT_UI8, 0};
}

// Every value here lies in [-2^63, 2^64).
std::string Show(I128 x) { return x < 0 ? std::to_string(static_cast<LONGLONG>(x)) : std::to_string(static_cast<ULONGLONG>(x)); }

}  // namespace

TEST(ArithmeticIntegers, EveryPairAroundTheBoundsMatchesExactArithmetic) {
    long checked = 0;
    for (const IntType& ta : kIntTypes) {
        for (const IntType& tb : kIntTypes) {
            std::vector<I128> as = {ta.lo, ta.lo + 1, ta.hi, ta.hi - 1, 0, 1, 2, 7};
            std::vector<I128> bs = {tb.lo, tb.lo + 1, tb.hi, tb.hi - 1, 0, 1, 2, 3};
            if (ta.lo < 0) as.push_back(-1), as.push_back(-7);
            if (tb.lo < 0) bs.push_back(-1), bs.push_back(-2);
            for (I128 x : as) {
                for (I128 y : bs) {
                    const CVarion a = MakeInt(ta.vt, x);
                    const CVarion b = MakeInt(tb.vt, y);
                    const auto before = std::make_pair(Bytes(a), Bytes(b));
                    for (int op = OP_ADD; op <= OP_MOD; ++op, ++checked) {
                        unsigned short dest = 0;
                        ASSERT_TRUE(CVarion::SearchDestinationTyp(a, b, op, dest));
                        const Outcome want = IntegerOracle(x, y, op, dest);
                        CVarion result(OLESTR("old content"));
                        const long code = CVarion::Arithmetic(result, a, b, op);
                        // A failed division leaves no value to compare.
                        const bool valued = want.code != RC_NOT_CONVERTIBLE || op <= OP_MUL;
                        ASSERT_EQ(std::make_tuple(code, result.GetType(), valued ? Show(Value(result)) : ""),
                                  std::make_tuple(want.code, want.type, valued ? Show(want.value) : ""))
                            << Show(x) << " (" << ta.vt << ") op" << op << " " << Show(y) << " (" << tb.vt << ")";
                    }
                    ASSERT_EQ(std::make_pair(Bytes(a), Bytes(b)), before);
                }
            }
        }
    }
    EXPECT_GT(checked, 10000);
}

// What the exact oracle does not reach: Booleans, empty values, an unknown
// operation, the floating domains with their limits, and the date family.
TEST(Arithmetic, ListedResults) {
    struct Case { CVarion a, b; int op; long code; VARTYPE type; double value; };
    const Case cases[] = {
        {CVarion(true), CVarion(true), OP_ADD, RC_OK, VT_I1, 2},
        {CVarion(5), CVarion(3), 9, RC_NOT_CONVERTIBLE, VT_I4, -2147483648.0},
        {CVarion(7.5), CVarion(2.0), OP_MOD, RC_NOT_CONVERTIBLE, VT_R8, DBL_MAX},
        {CVarion(1.0f), CVarion(1ULL), OP_ADD, RC_OK, VT_R4, 2},
        {CVarion(DBL_MAX), CVarion(DBL_MAX), OP_ADD, RC_ABOVE_MAX, VT_R8, HUGE_VAL},
        {CVarion(-DBL_MAX), CVarion(DBL_MAX), OP_SUB, RC_BELOW_MIN, VT_R8, -HUGE_VAL},
        {CVarion(1e38f), CVarion(1e38f), OP_MUL, RC_ABOVE_MAX, VT_R8, static_cast<double>(1e38f) * 1e38f},  // the single cannot hold it
        {CVarion(3.0), CVarion(0.0), OP_DIV, RC_NOT_CONVERTIBLE, VT_R8, 0},  // by zero: the zero of the type
        {CVarion(std::nan("")), CVarion(1.0), OP_ADD, RC_OK, VT_R8, std::nan("")},
        {WithType(VT_DATE, 45001.5), WithType(VT_DATE, 45000.0), OP_SUB, RC_OK, VTX_DURATION, 1.5},
        {WithType(VT_DATE, 45000.0), WithType(VT_DATE, 45001.5), OP_SUB, RC_BELOW_MIN, VTX_DURATION, 0.0},
        {WithType(VT_DATE, 1.0), WithType(VT_DATE, 1.0), OP_ADD, RC_NOT_CONVERTIBLE, VT_EMPTY, 0},
        {WithType(VTX_DURATION, DBL_MAX), WithType(VTX_DURATION, DBL_MAX), OP_ADD, RC_ABOVE_MAX, VTX_DURATION, HUGE_VAL},
    };
    for (const Case& c : cases) {
        CVarion r(OLESTR("old"));
        SCOPED_TRACE(testing::Message() << c.a.GetType() << " op" << c.op << " " << c.b.GetType() << " -> " << c.value);
        EXPECT_EQ(CVarion::Arithmetic(r, c.a, c.b, c.op), c.code);
        EXPECT_EQ(r.GetType(), c.type);
        const double got = r.GetType() == VT_EMPTY ? 0.0 : Load<double>(Access::Var(r));
        if (c.type == VT_R8 || CVarion::IsAnyDateType(c.type)) {
            EXPECT_TRUE(got == c.value || (std::isnan(got) && std::isnan(c.value))) << got;
        } else {
            EXPECT_EQ(static_cast<double>(r), c.value);
        }
    }
}

TEST(Arithmetic, ResultMayBeAnOperand) {
    CVarion a(5);
    CVarion::Arithmetic(a, a, CVarion(3), OP_MUL);
    EXPECT_EQ(static_cast<long>(a), 15);
    CVarion s(OLESTR("keep"));
    EXPECT_EQ(CVarion::Arithmetic(s, s, CVarion(VT_I4, 1, 0), OP_ADD), RC_NOT_CONVERTIBLE);
    EXPECT_EQ(varion::test::Utf8(static_cast<CString>(s)), "keep");  // an operand result stays untouched
    CVarion self(5);
    CVarion::L_SHIFT(self, self, 1);
    EXPECT_EQ(static_cast<long>(self), 10);
    CVarion bytes(VT_UI1, 2, 0);
    EXPECT_EQ(bytes.ADD(CVarion(VT_UI1, 1, 0)).GetElementCount(), 3u);  // an array concatenates
}

// The member forms, shifts and masks at 32 bits, and the unary steps at the
// operand's width, compared with the value they should give: type and the member's bytes.
TEST(Arithmetic, MemberFormsBitwiseAndUnary) {
    const CVarion six(6);
    const CVarion flag(true);
    const CVarion date = WithType(VT_DATE, 3.0);
    struct Case { CVarion got, want; };
    const Case cases[] = {
        {six.ADD(CVarion(2)), CVarion(8)},       {six.SUB(CVarion(10)), CVarion(-4)},
        {six.MUL(CVarion(2)), CVarion(12)},      {six.DIV(CVarion(4)), CVarion(1)},
        {six.MOD(CVarion(4)), CVarion(2)},       {CVarion(1).L_SHIFT(33), CVarion(2)},
        {CVarion(1).L_SHIFT(-1), CVarion(-2147483647 - 1)},
        {CVarion(1).L_SHIFT(static_cast<long>(1LL << 32)), CVarion(1)},  // only the low 32 bits of the count
        {CVarion(1u).L_SHIFT(31), CVarion(2147483648u)},        {CVarion(-8).R_SHIFT(1), CVarion(-4)},
        {CVarion(4294967295u).BIT_AND(255), CVarion(0u)},        {CVarion(1LL).BIT_OR(2), CVarion(3)},
        {CVarion(6).BIT_XOR(CVarion(3)), CVarion(5)},            {CVarion(6).BIT_AND(CVarion(OLESTR("x"))), CVarion(0)},
        {CVarion(short{0}).BIT_NOT(), CVarion(short{-1})},
        {CVarion(static_cast<unsigned char>(1)).NEG(), CVarion(static_cast<unsigned char>(255))},
        {CVarion(static_cast<unsigned char>(255)).INC(), CVarion(static_cast<unsigned char>(0))},
        {CVarion(-2147483647 - 1).NEG(), CVarion(-2147483647 - 1)},
        {CVarion(std::numeric_limits<LONGLONG>::min()).DEC(), CVarion(std::numeric_limits<LONGLONG>::max())},
        {CVarion(1.5).NEG(), CVarion(-1.5)},                     {CVarion(1.5).BIT_NOT(), CVarion(1.5)},
        {CVarion(16777216.0f).INC(), CVarion(16777216.0f)},  // rounded to single
        {flag.BIT_NOT(), flag},                                  {date.INC(), date},
    };
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        EXPECT_EQ(cases[i].got.GetType(), cases[i].want.GetType()) << i;
        EXPECT_EQ(Member(cases[i].got), Member(cases[i].want)) << i;
    }
}
