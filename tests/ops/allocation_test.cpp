// Operations on numeric scalars allocate nothing: the relational operators,
// every named comparison and logical operation, every arithmetic, bitwise,
// shift and unary operation in its static and its member form, over pairs of
// numbers of every class and of the date family. Each operation is counted
// on its own, so that a failure names it.
#include "support/test_support.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <vector>

using varion::test::AllocationCount;

namespace {

using V = const CVarion&;

long Read(const CVarion& r) { return static_cast<long>(r.GetType()) + static_cast<long>(r); }

struct Operation { const char* name; std::function<long(V, V)> run; };

// The static and the member form of one operation; the bitwise ones also
// with a count N.
#define VARION_NAMED(NAME) {#NAME, [](V a, V b) { return long{CVarion::NAME(a, b) + a.NAME(b)}; }}
#define VARION_BINARY(NAME) \
    {#NAME, [](V a, V b) { CVarion r; CVarion::NAME(r, a, b); return Read(r) + Read(a.NAME(b)); }}
#define VARION_COUNTED(NAME, N)                                     \
    {#NAME, [](V a, V b) {                                          \
         CVarion r, s;                                              \
         CVarion::NAME(r, a, b);                                    \
         CVarion::NAME(s, a, N);                                    \
         return Read(r) + Read(s) + Read(a.NAME(b)) + Read(a.NAME(N)); \
     }}
#define VARION_UNARY(NAME) {#NAME, [](V a, V) { CVarion r; CVarion::NAME(r, a); return Read(r) + Read(a.NAME()); }}

const Operation kOperations[] = {
    {"relations", [](V a, V b) { return long{(a == b) + (a != b) + (a < b) + (a <= b) + (a > b) + (a >= b)}; }},
    VARION_NAMED(Equal), VARION_NAMED(NotEqual), VARION_NAMED(LittleThen), VARION_NAMED(LittleEqual),
    VARION_NAMED(GreaterThen), VARION_NAMED(GreaterEqual), VARION_NAMED(OR), VARION_NAMED(AND),
    {"Arithmetic", [](V a, V b) {
         CVarion r;
         long sum = 0;
         for (int op = OP_ADD; op <= OP_MOD; ++op) sum += CVarion::Arithmetic(r, a, b, op) + Read(r);
         return sum;
     }},
    {"SearchDestinationTyp", [](V a, V b) {
         unsigned short dest = 0;
         return long{CVarion::SearchDestinationTyp(a, b, OP_MUL, dest)} + dest;
     }},
    VARION_BINARY(ADD), VARION_BINARY(SUB), VARION_BINARY(MUL), VARION_BINARY(DIV), VARION_BINARY(MOD),
    VARION_COUNTED(L_SHIFT, 33L), VARION_COUNTED(R_SHIFT, 1L), VARION_COUNTED(BIT_OR, 6L),
    VARION_COUNTED(BIT_AND, 6L), VARION_COUNTED(BIT_XOR, 6L),
    VARION_UNARY(BIT_NOT), VARION_UNARY(NEG), VARION_UNARY(INC), VARION_UNARY(DEC),
    {"in place", [](V a, V b) {
         CVarion r(a);  // the result may be an operand
         CVarion::ADD(r, r, b);
         CVarion::MUL(r, b, r);
         return static_cast<long>(r.GetType());
     }},
};

TEST(OperationAllocations, NumbersAndDatesAllocateNothing) {
    // Every class (signed, unsigned 64-bit, single, double, Boolean), their
    // extremes, zero (for the divisions by zero) and the date family.
    const std::vector<CVarion> operands = {
        CVarion(5), CVarion(-7), CVarion(0), CVarion(static_cast<signed char>(-100)),
        CVarion(static_cast<unsigned char>(200)), CVarion(static_cast<short>(-30000)),
        CVarion(static_cast<unsigned short>(65535)), CVarion(4000000000u),
        CVarion(std::numeric_limits<LONGLONG>::min()), CVarion(std::numeric_limits<ULONGLONG>::max()),
        CVarion(2.5f), CVarion(-1e300), CVarion(std::numeric_limits<double>::quiet_NaN()), CVarion(true),
        CVarion(2026L, 11L, 17L, 20L, 18L, 38L, 250L, VT_DATE), CVarion(1L, 12L, 30L, 5L, 250L, 0L, VTX_DURATION_MSF)};
    for (const Operation& op : kOperations) {
        long sink = 0;
        const long before = AllocationCount();
        for (const CVarion& a : operands)
            for (const CVarion& b : operands) sink += op.run(a, b);
        EXPECT_EQ(AllocationCount() - before, 0) << op.name;
        EXPECT_NE(sink, 0) << op.name;  // the operations ran and answered
    }
}

}  // namespace
