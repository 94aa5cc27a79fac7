// Operations on numeric scalars allocate nothing: every named comparison and
// logical operation, every arithmetic, bitwise, shift and unary operation in
// its static and its member form, over pairs of numbers of every class and
// of the date family. (The relational operators and Arithmetic with ADD and
// DIV are counted in compare_test.cpp.) Each operation is counted on its own,
// so that a failure names it.
#include "support/test_support.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <string>
#include <vector>

using varion::test::AllocationCount;

namespace {

// Numbers of every class (signed, unsigned 64-bit, single, double, Boolean),
// their extremes, zero (for the divisions by zero) and date-family values.
std::vector<CVarion> Operands() {
    return {CVarion(5),
            CVarion(-7),
            CVarion(0),
            CVarion(static_cast<signed char>(-100)),
            CVarion(static_cast<unsigned char>(200)),
            CVarion(static_cast<short>(-30000)),
            CVarion(static_cast<unsigned short>(65535)),
            CVarion(4000000000u),
            CVarion(std::numeric_limits<LONGLONG>::min()),
            CVarion(std::numeric_limits<ULONGLONG>::max()),
            CVarion(2.5f),
            CVarion(-1e300),
            CVarion(std::numeric_limits<double>::quiet_NaN()),
            CVarion(true),
            CVarion(2026L, 11L, 17L, 20L, 18L, 38L, 250L, VT_DATE),
            CVarion(1L, 12L, 30L, 5L, 250L, 0L, VTX_DURATION_MSF)};
}

struct Operation {
    const char* name;
    std::function<long(const CVarion&, const CVarion&)> run;
};

// Each answers something from its result, so that the call is not dropped.
std::vector<Operation> Operations() {
    using V = const CVarion&;
    const auto read = [](const CVarion& r) { return static_cast<long>(r.GetType()) + static_cast<long>(r); };
    return {
        {"Equal", [](V a, V b) { return long{CVarion::Equal(a, b) + a.Equal(b)}; }},
        {"NotEqual", [](V a, V b) { return long{CVarion::NotEqual(a, b) + a.NotEqual(b)}; }},
        {"LittleThen", [](V a, V b) { return long{CVarion::LittleThen(a, b) + a.LittleThen(b)}; }},
        {"LittleEqual", [](V a, V b) { return long{CVarion::LittleEqual(a, b) + a.LittleEqual(b)}; }},
        {"GreaterThen", [](V a, V b) { return long{CVarion::GreaterThen(a, b) + a.GreaterThen(b)}; }},
        {"GreaterEqual", [](V a, V b) { return long{CVarion::GreaterEqual(a, b) + a.GreaterEqual(b)}; }},
        {"OR", [](V a, V b) { return long{CVarion::OR(a, b) + a.OR(b)}; }},
        {"AND", [](V a, V b) { return long{CVarion::AND(a, b) + a.AND(b)}; }},
        {"Arithmetic", [](V a, V b) {
             CVarion r;
             long sum = 0;
             for (int op = OP_ADD; op <= OP_MOD; ++op) sum += CVarion::Arithmetic(r, a, b, op) + static_cast<long>(r);
             return sum;
         }},
        {"SearchDestinationTyp", [](V a, V b) {
             unsigned short dest = 0;
             return long{CVarion::SearchDestinationTyp(a, b, OP_MUL, dest)} + dest;
         }},
        {"ADD", [read](V a, V b) { CVarion r; CVarion::ADD(r, a, b); return read(r) + read(a.ADD(b)); }},
        {"SUB", [read](V a, V b) { CVarion r; CVarion::SUB(r, a, b); return read(r) + read(a.SUB(b)); }},
        {"MUL", [read](V a, V b) { CVarion r; CVarion::MUL(r, a, b); return read(r) + read(a.MUL(b)); }},
        {"DIV", [read](V a, V b) { CVarion r; CVarion::DIV(r, a, b); return read(r) + read(a.DIV(b)); }},
        {"MOD", [read](V a, V b) { CVarion r; CVarion::MOD(r, a, b); return read(r) + read(a.MOD(b)); }},
        {"L_SHIFT", [read](V a, V b) {
             CVarion r;
             CVarion::L_SHIFT(r, a, b);
             CVarion s;
             CVarion::L_SHIFT(s, a, 3L);
             return read(r) + read(s) + read(a.L_SHIFT(b)) + read(a.L_SHIFT(33L));
         }},
        {"R_SHIFT", [read](V a, V b) {
             CVarion r;
             CVarion::R_SHIFT(r, a, b);
             CVarion s;
             CVarion::R_SHIFT(s, a, 3L);
             return read(r) + read(s) + read(a.R_SHIFT(b)) + read(a.R_SHIFT(1L));
         }},
        {"BIT_OR", [read](V a, V b) {
             CVarion r;
             CVarion::BIT_OR(r, a, b);
             CVarion s;
             CVarion::BIT_OR(s, a, 6L);
             return read(r) + read(s) + read(a.BIT_OR(b)) + read(a.BIT_OR(6L));
         }},
        {"BIT_AND", [read](V a, V b) {
             CVarion r;
             CVarion::BIT_AND(r, a, b);
             CVarion s;
             CVarion::BIT_AND(s, a, 6L);
             return read(r) + read(s) + read(a.BIT_AND(b)) + read(a.BIT_AND(6L));
         }},
        {"BIT_XOR", [read](V a, V b) {
             CVarion r;
             CVarion::BIT_XOR(r, a, b);
             CVarion s;
             CVarion::BIT_XOR(s, a, 6L);
             return read(r) + read(s) + read(a.BIT_XOR(b)) + read(a.BIT_XOR(6L));
         }},
        {"unary", [read](V a, V) {
             CVarion r;
             long sum = 0;
             CVarion::BIT_NOT(r, a);
             sum += read(r) + read(a.BIT_NOT());
             CVarion::NEG(r, a);
             sum += read(r) + read(a.NEG());
             CVarion::INC(r, a);
             sum += read(r) + read(a.INC());
             CVarion::DEC(r, a);
             return sum + read(r) + read(a.DEC());
         }},
        {"in place", [](V a, V b) {
             CVarion r(a);  // the result may be an operand
             CVarion::ADD(r, r, b);
             CVarion::MUL(r, b, r);
             return static_cast<long>(r.GetType());
         }},
    };
}

TEST(OperationAllocations, NumbersAndDatesAllocateNothing) {
    const std::vector<CVarion> operands = Operands();
    for (const Operation& op : Operations()) {
        long sink = 0;
        const long before = AllocationCount();
        for (const CVarion& a : operands)
            for (const CVarion& b : operands) sink += op.run(a, b);
        EXPECT_EQ(AllocationCount() - before, 0) << op.name;
        EXPECT_NE(sink, 0) << op.name;  // the operations ran and answered
    }
}

}  // namespace
