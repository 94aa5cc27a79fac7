// Arithmetic: the destination table, the integer domains against exact
// 128-bit arithmetic, the floating and date domains, shifts and unary steps.
#include "support/test_support.h"
#include "value/access.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <limits>
#include <map>
#include <sstream>
#include <string>
#include <vector>

using varion::detail::Access;
using varion::detail::Load;
using varion::test::Bytes;

namespace {

const std::map<std::string, VARTYPE> kNames = {
    {"BSTR", VT_BSTR}, {"I1", VT_I1},   {"UI1", VT_UI1}, {"I2", VT_I2}, {"UI2", VT_UI2}, {"I4", VT_I4},
    {"UI4", VT_UI4},   {"R4", VT_R4},   {"R8", VT_R8},   {"I8", VT_I8}, {"UI8", VT_UI8},
};

// The destination of two operands without date types, as the table reads.
const char* const kTable =
    "Left\\right BSTR I1 UI1 I2 UI2 I4 UI4 R4 R8 I8 UI8\n"
    "BSTR BSTR I1 UI1 I2 UI2 I4 UI4 R4 R8 I8 UI8\n"
    "I1 I1 I1 UI1 I2 UI2 I4 UI4 R4 R8 I8 UI8\n"
    "UI1 UI1 UI1 UI1 I2 UI2 I4 UI4 R4 R8 I8 UI8\n"
    "I2 I2 I2 I2 I2 UI2 I4 UI4 R4 R8 I8 UI8\n"
    "UI2 UI2 UI2 UI2 UI2 UI2 I4 UI4 R4 R8 I8 UI8\n"
    "I4 I4 I4 I4 I4 I4 I4 UI4 R4 R8 I8 UI8\n"
    "UI4 UI4 UI4 UI4 UI4 UI4 UI4 UI4 R4 R8 UI8 UI8\n"
    "R4 R4 R4 R4 R4 R4 R4 R4 R4 R8 R8 R4\n"
    "R8 R8 R8 R8 R8 R8 R8 R8 R8 R8 R8 R8\n"
    "I8 I8 I8 I8 I8 I8 I8 UI8 R8 R8 I8 UI8\n"
    "UI8 UI8 UI8 UI8 UI8 UI8 UI8 UI8 R8 R8 UI8 UI8\n";

CVarion Typed(VARTYPE t, double x = 1) {
    CVarion v(x);
    if (t == VT_BSTR) return CVarion(OLESTR("1"));
    v.SetType(t);
    return v;
}

CVarion WithType(VARTYPE t, double days) {
    CVarion v(days);
    Access::Var(v).vt = t;
    return v;
}

}  // namespace

TEST(Destination, TableCellByCell) {
    std::istringstream in(kTable);
    std::string line;
    std::getline(in, line);
    std::vector<std::string> columns;
    {
        std::istringstream head(line);
        std::string word;
        head >> word;
        while (head >> word) columns.push_back(word);
    }
    int rows = 0;
    while (std::getline(in, line)) {
        std::istringstream row(line);
        std::string left;
        row >> left;
        for (const std::string& right : columns) {
            std::string want;
            row >> want;
            unsigned short dest = 99;
            for (int op = OP_ADD; op <= OP_MOD; ++op) {
                ASSERT_TRUE(CVarion::SearchDestinationTyp(Typed(kNames.at(left)), Typed(kNames.at(right)), op, dest));
                EXPECT_EQ(dest, kNames.at(want)) << left << " op " << right;
            }
        }
        ++rows;
    }
    EXPECT_EQ(rows, 11);
    // VT_EMPTY and VT_BOOL take the VT_I1 row and column.
    unsigned short dest = 0;
    EXPECT_TRUE(CVarion::SearchDestinationTyp(CVarion(), CVarion(true), OP_ADD, dest));
    EXPECT_EQ(dest, VT_I1);
    EXPECT_TRUE(CVarion::SearchDestinationTyp(CVarion(true), Typed(VT_UI2), OP_ADD, dest));
    EXPECT_EQ(dest, VT_UI2);
}

TEST(Destination, DateRowsAndRefusals) {
    struct Case {
        VARTYPE a, b;
        int op;
        VARTYPE dest;  // 0: no destination
    };
    const Case cases[] = {
        {VTX_DURATION, VTX_DURATION, OP_ADD, VTX_DURATION},
        {VTX_DURATION, VTX_DURATION_MSF, OP_SUB, VTX_DURATION_MSF},
        {VTX_ISO_DURATION, VTX_DURATION, OP_ADD, VTX_ISO_DURATION},
        {VTX_DURATION, VTX_DURATION, OP_MUL, 0},
        {VT_DATE, VTX_DURATION, OP_ADD, VT_DATE},
        {VTX_DATETIME, VTX_DURATION, OP_SUB, VT_DATE},
        {VTX_DATETIME_ALT, VTX_ISO_DURATION, OP_ADD, VT_DATE},
        {VTX_ISO_DATETIME, VTX_DURATION, OP_ADD, VTX_ISO_DATETIME},
        {VTX_DURATION, VT_DATE, OP_ADD, VT_DATE},
        {VTX_DURATION, VTX_ISO_DATETIME, OP_ADD, VTX_ISO_DATETIME},
        {VTX_DURATION, VT_DATE, OP_SUB, 0},
        {VT_DATE, VT_DATE, OP_SUB, VTX_DURATION},
        {VTX_ISO_DATETIME, VTX_ISO_DATETIME, OP_SUB, VTX_DURATION},
        {VT_DATE, VT_DATE, OP_ADD, 0},
        {VT_DATE, VTX_DURATION, OP_MOD, 0},
    };
    for (const Case& c : cases) {
        unsigned short dest = 1;
        EXPECT_EQ(CVarion::SearchDestinationTyp(WithType(c.a, 1), WithType(c.b, 1), c.op, dest), c.dest != 0)
            << c.a << " " << c.op << " " << c.b;
        EXPECT_EQ(dest, c.dest) << c.a << " " << c.op << " " << c.b;
    }
    unsigned short dest = 1;
    EXPECT_TRUE(CVarion::SearchDestinationTyp(CVarion(5), WithType(VTX_DURATION, 1), OP_MUL, dest));
    EXPECT_EQ(dest, VTX_DURATION);
    EXPECT_FALSE(CVarion::SearchDestinationTyp(CVarion(VT_I4, 2, 0), CVarion(1), OP_ADD, dest));
    EXPECT_EQ(dest, 0);
    CVarion cy(1);
    Access::Var(cy).vt = VT_CY;
    EXPECT_FALSE(CVarion::SearchDestinationTyp(cy, CVarion(1), OP_ADD, dest));
}

namespace {

__extension__ typedef __int128 I128;
__extension__ typedef unsigned __int128 U128;

struct IntType {
    VARTYPE vt;
    I128 lo, hi;
};

const IntType kIntTypes[] = {
    {VT_I1, -128, 127},
    {VT_UI1, 0, 255},
    {VT_I2, -32768, 32767},
    {VT_UI2, 0, 65535},
    {VT_I4, -2147483648LL, 2147483647},
    {VT_UI4, 0, 4294967295LL},
    {VT_I8, std::numeric_limits<LONGLONG>::min(), std::numeric_limits<LONGLONG>::max()},
    {VT_UI8, 0, static_cast<I128>(std::numeric_limits<ULONGLONG>::max())},
};

const IntType& Range(VARTYPE vt) {
    for (const IntType& t : kIntTypes)
        if (t.vt == vt) return t;
    return kIntTypes[6];
}

CVarion MakeInt(VARTYPE vt, I128 x) {
    CVarion v(static_cast<ULONGLONG>(x));
    if (vt != VT_UI8) {
        v = CVarion(static_cast<LONGLONG>(x));
        EXPECT_EQ(v.SetType(vt), RC_OK);
    }
    return v;
}

I128 Value(const CVarion& v) {
    const VARIANT& var = Access::Var(v);
    switch (var.vt) {
    case VT_I1: return Load<std::int8_t>(var);
    case VT_UI1: return Load<std::uint8_t>(var);
    case VT_I2: return Load<std::int16_t>(var);
    case VT_UI2: return Load<std::uint16_t>(var);
    case VT_I4: return Load<std::int32_t>(var);
    case VT_UI4: return Load<std::uint32_t>(var);
    case VT_I8: return Load<std::int64_t>(var);
    case VT_UI8: return Load<std::uint64_t>(var);
    default: return -999;
    }
}

I128 Wrap64Signed(I128 x) { return static_cast<I128>(static_cast<LONGLONG>(static_cast<ULONGLONG>(x))); }

struct Outcome {
    VARTYPE type;
    I128 value;
    long code;
};

// The integer domains restated on 128-bit integers.
Outcome IntegerOracle(const CVarion& a, const CVarion& b, int op, VARTYPE dest) {
    const I128 x = Value(a);
    const I128 y = Value(b);
    if (dest == VT_UI8) {
        const I128 u = x < 0 ? 0 : x;  // a negative operand does not read as unsigned
        const I128 w = y < 0 ? 0 : y;
        const I128 two64 = static_cast<I128>(1) << 64;
        switch (op) {
        case OP_ADD: return {VT_UI8, (u + w) % two64, u + w > Range(VT_UI8).hi ? RC_ABOVE_MAX : RC_OK};
        case OP_SUB: return {VT_UI8, ((u - w) % two64 + two64) % two64, w > u ? RC_BELOW_MIN : RC_OK};
        case OP_MUL: return {VT_UI8, static_cast<I128>(static_cast<U128>(u) * static_cast<U128>(w) % two64), RC_OK};
        case OP_DIV: return w == 0 ? Outcome{VT_UI8, 0, RC_NOT_CONVERTIBLE} : Outcome{VT_UI8, u / w, RC_OK};
        default: return w == 0 ? Outcome{VT_UI8, 0, RC_NOT_CONVERTIBLE} : Outcome{VT_UI8, u % w, RC_OK};
        }
    }
    // A VT_UI8 above the signed range reads as 0 in the signed domain.
    const I128 p = x > Range(VT_I8).hi ? 0 : x;
    const I128 q = y > Range(VT_I8).hi ? 0 : y;
    I128 r = 0;
    long code = RC_OK;
    switch (op) {
    case OP_ADD: r = Wrap64Signed(p + q); break;
    case OP_SUB: r = Wrap64Signed(p - q); break;
    case OP_MUL: r = Wrap64Signed(p * q); break;
    case OP_DIV:
        if (q == 0) code = RC_NOT_CONVERTIBLE;
        else r = Wrap64Signed(p / q);
        break;
    default:
        if (q == 0) code = RC_NOT_CONVERTIBLE;
        else r = Wrap64Signed(p % q);
        break;
    }
    const std::map<VARTYPE, VARTYPE> next = {{VT_I1, VT_I2},   {VT_I2, VT_I4},   {VT_I4, VT_I8},
                                             {VT_UI1, VT_UI2}, {VT_UI2, VT_UI4}, {VT_UI4, VT_UI8}};
    for (VARTYPE t = dest;;) {
        if (r >= Range(t).lo && r <= Range(t).hi) return {t, r, code};
        if (t == VT_UI8 || next.count(t) == 0) return {VT_UI8, 0, RC_NOT_CONVERTIBLE};
        t = next.at(t);
    }
}

std::string Show(I128 x) {
    const bool negative = x < 0;
    U128 m = negative ? static_cast<U128>(-(x + 1)) + 1 : static_cast<U128>(x);
    std::string s;
    do {
        s.insert(s.begin(), static_cast<char>('0' + static_cast<int>(m % 10)));
        m /= 10;
    } while (m != 0);
    return negative ? "-" + s : s;
}

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
                    const auto aBefore = Bytes(a);
                    const auto bBefore = Bytes(b);
                    for (int op = OP_ADD; op <= OP_MOD; ++op) {
                        unsigned short dest = 0;
                        ASSERT_TRUE(CVarion::SearchDestinationTyp(a, b, op, dest));
                        const Outcome want = IntegerOracle(a, b, op, dest);
                        CVarion result(OLESTR("old content"));
                        const long code = CVarion::Arithmetic(result, a, b, op);
                        const std::string what = Show(x) + " (" + std::to_string(ta.vt) + ") op" + std::to_string(op) +
                                                 " " + Show(y) + " (" + std::to_string(tb.vt) + ")";
                        ASSERT_EQ(code, want.code) << what;
                        ASSERT_EQ(result.GetType(), want.type) << what;
                        if (code != RC_NOT_CONVERTIBLE || op == OP_ADD || op == OP_SUB || op == OP_MUL) {
                            ASSERT_EQ(Show(Value(result)), Show(want.value)) << what;
                        }
                        ++checked;
                    }
                    ASSERT_EQ(Bytes(a), aBefore);
                    ASSERT_EQ(Bytes(b), bBefore);
                }
            }
        }
    }
    EXPECT_GT(checked, 10000);
}

TEST(ArithmeticIntegers, ListedResults) {
    struct Case {
        CVarion a, b;
        int op;
        VARTYPE type;
        double value;
        long code;
    };
    const Case cases[] = {
        {CVarion('d'), CVarion('d'), OP_ADD, VT_I2, 200, RC_OK},
        {CVarion(2147483647), CVarion(1), OP_ADD, VT_I8, 2147483648.0, RC_OK},
        {CVarion(static_cast<unsigned char>(3)), CVarion(static_cast<unsigned char>(5)), OP_SUB, VT_UI8, 0,
         RC_NOT_CONVERTIBLE},
        {CVarion(10ULL), CVarion(-5), OP_ADD, VT_UI8, 10, RC_OK},
        {CVarion(-7), CVarion(2), OP_DIV, VT_I4, -3, RC_OK},
        {CVarion(-7), CVarion(2), OP_MOD, VT_I4, -1, RC_OK},
        {CVarion(1), CVarion(0), OP_DIV, VT_I4, 0, RC_NOT_CONVERTIBLE},
        {CVarion(true), CVarion(true), OP_ADD, VT_I1, 2, RC_OK},
        {CVarion(), CVarion(), OP_ADD, VT_I1, 0, RC_OK},
        {CVarion(5), CVarion(3), 9, VT_I4, -2147483648.0, RC_NOT_CONVERTIBLE},
        {CVarion(5ULL), CVarion(3ULL), 9, VT_UI8, 0, RC_NOT_CONVERTIBLE},
    };
    for (const Case& c : cases) {
        CVarion r;
        EXPECT_EQ(CVarion::Arithmetic(r, c.a, c.b, c.op), c.code) << c.value;
        EXPECT_EQ(r.GetType(), c.type) << c.value;
        EXPECT_EQ(static_cast<double>(r), c.value);
    }
}

TEST(ArithmeticFloating, ResultsAndCodes) {
    CVarion r;
    EXPECT_EQ(CVarion::Arithmetic(r, CVarion(7.5), CVarion(2.0), OP_MOD), RC_NOT_CONVERTIBLE);
    EXPECT_EQ(r.GetType(), VT_R8);
    EXPECT_EQ(static_cast<double>(r), DBL_MAX);
    EXPECT_EQ(CVarion::Arithmetic(r, CVarion(1.0f), CVarion(1ULL), OP_ADD), RC_OK);
    EXPECT_EQ(r.GetType(), VT_R4);
    EXPECT_EQ(static_cast<float>(r), 2.0f);
    EXPECT_EQ(CVarion::Arithmetic(r, CVarion(1ULL), CVarion(1.0f), OP_ADD), RC_OK);
    EXPECT_EQ(r.GetType(), VT_R8);
    EXPECT_EQ(CVarion::Arithmetic(r, CVarion(DBL_MAX), CVarion(DBL_MAX), OP_ADD), RC_ABOVE_MAX);
    EXPECT_EQ(static_cast<double>(r), std::numeric_limits<double>::infinity());
    EXPECT_EQ(CVarion::Arithmetic(r, CVarion(-DBL_MAX), CVarion(DBL_MAX), OP_SUB), RC_BELOW_MIN);
    EXPECT_EQ(CVarion::Arithmetic(r, CVarion(1e38f), CVarion(1e38f), OP_MUL), RC_ABOVE_MAX);
    EXPECT_EQ(r.GetType(), VT_R8);  // the single could not hold it
    EXPECT_EQ(CVarion::Arithmetic(r, CVarion(3.0), CVarion(0.0), OP_DIV), RC_NOT_CONVERTIBLE);
    EXPECT_EQ(CVarion::Arithmetic(r, CVarion(std::nan("")), CVarion(1.0), OP_ADD), RC_OK);
}

TEST(ArithmeticDates, DayCountsAndLimits) {
    CVarion r;
    EXPECT_EQ(CVarion::Arithmetic(r, WithType(VT_DATE, 45001.5), WithType(VT_DATE, 45000.0), OP_SUB), RC_OK);
    EXPECT_EQ(r.GetType(), VTX_DURATION);
    EXPECT_EQ(Load<double>(Access::Var(r)), 1.5);
    EXPECT_EQ(CVarion::Arithmetic(r, WithType(VT_DATE, 45000.0), WithType(VT_DATE, 45001.5), OP_SUB), RC_BELOW_MIN);
    EXPECT_EQ(Load<double>(Access::Var(r)), 0.0);
    EXPECT_EQ(CVarion::Arithmetic(r, WithType(VTX_ISO_DURATION, 1.0), WithType(VTX_ISO_DURATION, 2.0), OP_SUB), RC_OK);
    EXPECT_EQ(Load<double>(Access::Var(r)), -1.0);
    EXPECT_EQ(CVarion::Arithmetic(r, WithType(VT_DATE, 1.0), WithType(VT_DATE, 1.0), OP_ADD), RC_NOT_CONVERTIBLE);
    EXPECT_EQ(r.GetType(), VT_EMPTY);
    EXPECT_EQ(CVarion::Arithmetic(r, WithType(VTX_DURATION, 1.0), WithType(VTX_DURATION, 2.0), OP_MOD),
              RC_NOT_CONVERTIBLE);
    EXPECT_EQ(CVarion::Arithmetic(r, WithType(VTX_DURATION, DBL_MAX), WithType(VTX_DURATION, DBL_MAX), OP_ADD),
              RC_ABOVE_MAX);
}

TEST(ArithmeticResult, MayBeAnOperand) {
    CVarion a(5);
    CVarion::Arithmetic(a, a, CVarion(3), OP_MUL);
    EXPECT_EQ(static_cast<long>(a), 15);
    CVarion s(OLESTR("keep"));
    EXPECT_EQ(CVarion::Arithmetic(s, s, CVarion(VT_I4, 1, 0), OP_ADD), RC_NOT_CONVERTIBLE);
    EXPECT_EQ(varion::test::Utf8(static_cast<CString>(s)), "keep");  // an operand result stays untouched
    CVarion other(OLESTR("cleared"));
    EXPECT_EQ(CVarion::Arithmetic(other, s, CVarion(VT_I4, 1, 0), OP_ADD), RC_NOT_CONVERTIBLE);
    EXPECT_EQ(other.GetType(), VT_EMPTY);
}

TEST(ArithmeticWrappers, MemberFormsLeaveTheOperandAlone) {
    const CVarion a(6);
    EXPECT_EQ(static_cast<long>(a.ADD(CVarion(2))), 8);
    EXPECT_EQ(static_cast<long>(a.SUB(CVarion(2))), 4);
    EXPECT_EQ(static_cast<long>(a.MUL(CVarion(2))), 12);
    EXPECT_EQ(static_cast<long>(a.DIV(CVarion(4))), 1);
    EXPECT_EQ(static_cast<long>(a.MOD(CVarion(4))), 2);
    EXPECT_EQ(static_cast<long>(a), 6);
    CVarion r;
    CVarion::SUB(r, a, CVarion(10));
    EXPECT_EQ(static_cast<long>(r), -4);
    CVarion bytes(VT_UI1, 2, 0);
    EXPECT_EQ(bytes.ADD(CVarion(VT_UI1, 1, 0)).GetElementCount(), 3u);  // an array concatenates
}

TEST(Bitwise, ShiftsAndMasksAt32Bits) {
    struct Case {
        CVarion result;
        VARTYPE type;
        double value;
    };
    const Case cases[] = {
        {CVarion(1).L_SHIFT(33), VT_I4, 2},
        {CVarion(1).L_SHIFT(-1), VT_I4, -2147483648.0},
        {CVarion(1u).L_SHIFT(31), VT_UI4, 2147483648.0},
        {CVarion(-8).R_SHIFT(1), VT_I4, -4},
        {CVarion(4294967295u).BIT_AND(255), VT_UI4, 0},
        {CVarion(1LL).BIT_OR(2), VT_I4, 3},
        {CVarion(6).BIT_XOR(CVarion(3)), VT_I4, 5},
        {CVarion(6).BIT_AND(CVarion(OLESTR("x"))), VT_I4, 0},
        {CVarion(1).L_SHIFT(static_cast<long>(1LL << 32)), VT_I4, 1},  // only the low 32 bits of the count
    };
    for (const Case& c : cases) {
        EXPECT_EQ(c.result.GetType(), c.type) << c.value;
        EXPECT_EQ(c.result.GetType() == VT_UI4 ? static_cast<double>(static_cast<unsigned long>(c.result))
                                               : static_cast<double>(static_cast<long>(c.result)),
                  c.value);
    }
    CVarion self(5);
    CVarion::L_SHIFT(self, self, 1);
    EXPECT_EQ(static_cast<long>(self), 10);
}

TEST(Unary, StepsAtTheOperandsWidth) {
    EXPECT_EQ(static_cast<short>(CVarion(static_cast<short>(0)).BIT_NOT()), -1);
    EXPECT_EQ(static_cast<unsigned short>(CVarion(static_cast<unsigned short>(255)).BIT_NOT()), 65280);
    EXPECT_EQ(static_cast<unsigned char>(CVarion(static_cast<unsigned char>(1)).NEG()), 255);
    EXPECT_EQ(static_cast<long>(CVarion(-2147483647 - 1).NEG()), -2147483647 - 1);
    EXPECT_EQ(static_cast<unsigned char>(CVarion(static_cast<unsigned char>(255)).INC()), 0);
    EXPECT_EQ(static_cast<LONGLONG>(CVarion(std::numeric_limits<LONGLONG>::min()).DEC()),
              std::numeric_limits<LONGLONG>::max());
    EXPECT_EQ(static_cast<double>(CVarion(1.5).NEG()), -1.5);
    EXPECT_EQ(static_cast<double>(CVarion(1.5).BIT_NOT()), 1.5);
    EXPECT_EQ(static_cast<float>(CVarion(16777216.0f).INC()), 16777216.0f);  // rounded to single
    const CVarion flag(true);
    EXPECT_EQ(Bytes(flag.BIT_NOT()), Bytes(flag));
    const CVarion date = WithType(VT_DATE, 3.0);
    EXPECT_EQ(Load<double>(Access::Var(date.INC())), 3.0);
}
