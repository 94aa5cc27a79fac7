// The range-checked numeric conversions, checked against an independent
// oracle in exact arithmetic over a grid of values around every bound.
#include "convert/numeric.h"
#include "support/test_support.h"
#include "value/access.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

using varion::detail::Access;
using varion::detail::kNumericTypes;
using varion::detail::Load;

namespace {

static_assert(std::numeric_limits<long double>::digits >= 64, "the oracle needs 64-bit mantissas");
using Exact = long double;  // holds every 64-bit integer, single and double exactly

struct TypeInfo {
    VARTYPE vt;
    bool floating;
    Exact lo, hi;
};

const TypeInfo& Info(VARTYPE vt) {
    static const TypeInfo kInfo[] = {
        {VT_I1, false, -128.0L, 127.0L},
        {VT_UI1, false, 0.0L, 255.0L},
        {VT_I2, false, -32768.0L, 32767.0L},
        {VT_UI2, false, 0.0L, 65535.0L},
        {VT_I4, false, -2147483648.0L, 2147483647.0L},
        {VT_UI4, false, 0.0L, 4294967295.0L},
        {VT_I8, false, -9223372036854775808.0L, 9223372036854775807.0L},
        {VT_UI8, false, 0.0L, 18446744073709551615.0L},
        {VT_R4, true, -static_cast<Exact>(std::numeric_limits<float>::max()),
         static_cast<Exact>(std::numeric_limits<float>::max())},
        {VT_R8, true, -static_cast<Exact>(std::numeric_limits<double>::max()),
         static_cast<Exact>(std::numeric_limits<double>::max())},
        {VT_BOOL, false, 0.0L, 1.0L},
    };
    for (const TypeInfo& t : kInfo)
        if (t.vt == vt) return t;
    ADD_FAILURE() << "no type info for " << vt;
    return kInfo[0];
}

// A value of source type `vt` holding x, when x is representable there.
bool MakeSource(VARTYPE vt, Exact x, CVarion& out) {
    const TypeInfo& t = Info(vt);
    if (t.floating) {
        out = vt == VT_R4 ? CVarion(static_cast<float>(x)) : CVarion(static_cast<double>(x));
        return true;
    }
    if (std::isnan(x) || x < t.lo || x > t.hi || x != std::trunc(x)) return false;
    switch (vt) {
    case VT_I1: out = CVarion(static_cast<signed char>(x)); return true;
    case VT_UI1: out = CVarion(static_cast<unsigned char>(x)); return true;
    case VT_I2: out = CVarion(static_cast<short>(x)); return true;
    case VT_UI2: out = CVarion(static_cast<unsigned short>(x)); return true;
    case VT_I4: out = CVarion(static_cast<int>(x)); return true;
    case VT_UI4: out = CVarion(static_cast<unsigned int>(x)); return true;
    case VT_I8: out = CVarion(static_cast<LONGLONG>(x)); return true;
    case VT_UI8: out = CVarion(static_cast<ULONGLONG>(x)); return true;
    case VT_BOOL: out = CVarion(x != 0); return true;
    default: return false;
    }
}

// The value a numeric CVarion holds, exactly.
Exact ValueOf(const CVarion& v) {
    const VARIANT& var = Access::Var(v);
    switch (var.vt) {
    case VT_I1: return Load<std::int8_t>(var);
    case VT_UI1: return Load<std::uint8_t>(var);
    case VT_I2: return Load<std::int16_t>(var);
    case VT_UI2: return Load<std::uint16_t>(var);
    case VT_I4: return Load<std::int32_t>(var);
    case VT_UI4: return Load<std::uint32_t>(var);
    case VT_I8: return static_cast<Exact>(Load<std::int64_t>(var));
    case VT_UI8: return static_cast<Exact>(Load<std::uint64_t>(var));
    case VT_R4: return Load<float>(var);
    case VT_R8: return Load<double>(var);
    case VT_BOOL: return Load<std::uint8_t>(var);
    default: return std::numeric_limits<Exact>::quiet_NaN();
    }
}

struct Expected {
    long code;
    Exact value;  // meaningful when code is 0 (always for VT_BOOL targets)
};

// The conversion rule, restated in exact arithmetic.
Expected Oracle(VARTYPE target, VARTYPE source, const CVarion& src) {
    const TypeInfo& t = Info(target);
    const Exact x = ValueOf(src);
    if (t.floating) {
        if (std::isfinite(x)) {
            if (x < t.lo) return {RC_BELOW_MIN, 0};
            if (x > t.hi) return {RC_ABOVE_MAX, 0};
        }
        return {RC_OK, target == VT_R4 ? static_cast<Exact>(static_cast<float>(x))
                                       : static_cast<Exact>(static_cast<double>(x))};
    }
    // Integer and Boolean targets: half away from zero, held in the source's
    // own precision, then checked and truncated.
    Exact adjusted = x;
    if (source == VT_R4 && x != 0 && !std::isnan(x))
        adjusted = x > 0 ? static_cast<float>(static_cast<float>(x) + 0.5f) : static_cast<float>(static_cast<float>(x) - 0.5f);
    if (source == VT_R8 && x != 0 && !std::isnan(x))
        adjusted = x > 0 ? static_cast<double>(x) + 0.5 : static_cast<double>(x) - 0.5;
    long code = RC_OK;
    if (adjusted < t.lo) code = RC_BELOW_MIN;
    else if (adjusted > t.hi) code = RC_ABOVE_MAX;
    if (target == VT_BOOL) return {RC_OK, (adjusted != 0) ? 1.0L : 0.0L};  // NaN != 0
    if (std::isnan(adjusted)) return {RC_OK, 0};
    return {code, std::trunc(adjusted)};
}

// Candidate values: every bound of every type, a half and one either side,
// the neighbouring doubles and singles, and the special values.
std::vector<Exact> Grid() {
    std::vector<Exact> grid = {0.0L, -0.0L, 0.3L, -0.3L, 0.5L, -0.5L, 1.0L, -1.0L, 2.5L, -2.5L, 8388609.0L,
                               std::numeric_limits<Exact>::quiet_NaN(), std::numeric_limits<Exact>::infinity(),
                               -std::numeric_limits<Exact>::infinity(), 1e39L, -1e39L, 1e300L, -1e300L};
    for (VARTYPE vt : kNumericTypes) {
        const TypeInfo& t = Info(vt);
        for (Exact bound : {t.lo, t.hi}) {
            for (Exact delta : {0.0L, 0.5L, -0.5L, 1.0L, -1.0L, 0.25L, -0.75L}) grid.push_back(bound + delta);
            const double d = static_cast<double>(bound);
            grid.push_back(std::nextafter(d, 0.0));
            grid.push_back(std::nextafter(d, d < 0 ? -INFINITY : INFINITY));
            const float f = static_cast<float>(std::fmax(std::fmin(d, 3.4e38), -3.4e38));
            grid.push_back(std::nextafter(f, 0.0f));
            grid.push_back(std::nextafter(f, f < 0 ? -INFINITY : INFINITY));
        }
    }
    return grid;
}

std::string Describe(VARTYPE target, const CVarion& src) {
    char buf[160];
    std::snprintf(buf, sizeof buf, "source vt %u value %.21Lg to vt %u", src.GetType(), ValueOf(src), target);
    return buf;
}

}  // namespace

TEST(NumericCast, AllPairsMatchTheExactOracleAroundEveryBound) {
    const std::vector<Exact> grid = Grid();
    long checked = 0;
    for (VARTYPE source : kNumericTypes) {
        for (Exact x : grid) {
            CVarion src;
            if (!MakeSource(source, x, src)) continue;
            for (VARTYPE target : kNumericTypes) {
                CVarion v(src);
                const auto before = varion::test::Bytes(v);
                const Expected want = Oracle(target, source, src);
                const long code = v.SetType(target);
                const std::string what = Describe(target, src);
                if (source == target) {
                    ASSERT_EQ(code, RC_OK) << what;
                    continue;
                }
                ASSERT_EQ(code, want.code) << what;
                if (code != RC_OK) {
                    ASSERT_EQ(varion::test::Bytes(v), before) << "a failed conversion changed the value: " << what;
                    continue;
                }
                ASSERT_EQ(v.GetType(), target) << what;
                const Exact got = ValueOf(v);
                if (std::isnan(want.value))
                    ASSERT_TRUE(std::isnan(got)) << what;
                else
                    ASSERT_EQ(got, want.value) << what;
                ++checked;
            }
        }
    }
    EXPECT_GT(checked, 5000);
}

TEST(NumericCast, ListedCases) {
    struct Case {
        CVarion source;
        VARTYPE target;
        long code;
        double value;  // when code is 0
    };
    const Case cases[] = {
        {CVarion(300), VT_UI1, RC_ABOVE_MAX, 0},
        {CVarion(static_cast<short>(-1)), VT_UI2, RC_BELOW_MIN, 0},
        {CVarion(2.5), VT_I4, RC_OK, 3},
        {CVarion(-2.5), VT_I4, RC_OK, -3},
        {CVarion(2.4999), VT_I4, RC_OK, 2},
        {CVarion(-0.4), VT_I4, RC_OK, 0},
        {CVarion(-0.4), VT_UI4, RC_BELOW_MIN, 0},
        {CVarion(-0.1), VT_UI1, RC_BELOW_MIN, 0},
        {CVarion(127.0), VT_I1, RC_ABOVE_MAX, 0},
        {CVarion(126.5), VT_I1, RC_OK, 127},
        {CVarion(-127.5), VT_I1, RC_OK, -128},
        {CVarion(-127.6), VT_I1, RC_BELOW_MIN, 0},
        {CVarion(254.5), VT_UI1, RC_OK, 255},
        {CVarion(9223372036854775808ull), VT_I8, RC_ABOVE_MAX, 0},
        {CVarion(9.2233720368547758e+18), VT_I8, RC_ABOVE_MAX, 0},
        {CVarion(8388609.0f), VT_I4, RC_OK, 8388610},  // 8388609.5 rounds to even in single precision
        {CVarion(8388609.0), VT_I4, RC_OK, 8388609},
        {CVarion(1e39), VT_R4, RC_ABOVE_MAX, 0},
        {CVarion(-1e39), VT_R4, RC_BELOW_MIN, 0},
        {CVarion(std::numeric_limits<double>::infinity()), VT_I2, RC_ABOVE_MAX, 0},
        {CVarion(-std::numeric_limits<double>::infinity()), VT_UI8, RC_BELOW_MIN, 0},
        {CVarion(0.3), VT_BOOL, RC_OK, 1},
        {CVarion(-0.0), VT_BOOL, RC_OK, 0},
        {CVarion(std::numeric_limits<double>::quiet_NaN()), VT_BOOL, RC_OK, 1},
        {CVarion(std::numeric_limits<double>::quiet_NaN()), VT_I4, RC_OK, 0},
        {CVarion(5000000000LL), VT_BOOL, RC_OK, 1},
        {CVarion(true), VT_UI8, RC_OK, 1},
    };
    for (const Case& c : cases) {
        CVarion v(c.source);
        const long code = v.SetType(c.target);
        EXPECT_EQ(code, c.code) << Describe(c.target, c.source);
        if (code == RC_OK) {
            EXPECT_EQ(v.GetType(), c.target);
            EXPECT_EQ(static_cast<double>(ValueOf(v)), c.value) << Describe(c.target, c.source);
        } else {
            EXPECT_EQ(v.GetType(), c.source.GetType());
        }
    }
}

TEST(NumericCast, InfinityAndNaNNarrowToSingle) {
    CVarion inf(-std::numeric_limits<double>::infinity());
    ASSERT_EQ(inf.SetType(VT_R4), RC_OK);
    EXPECT_EQ(static_cast<float>(inf), -std::numeric_limits<float>::infinity());
    CVarion nan(std::numeric_limits<double>::quiet_NaN());
    ASSERT_EQ(nan.SetType(VT_R4), RC_OK);
    EXPECT_TRUE(std::isnan(static_cast<float>(nan)));
}

TEST(NumericCast, ConversionWritesOnlyTheTargetMembersBytes) {
    CVarion v(-1.0);  // 00 00 00 00 00 00 F0 BF
    ASSERT_EQ(v.SetType(VT_I2), RC_OK);
    const auto b = varion::test::Bytes(v);
    EXPECT_EQ(b[8], 0xFF);
    EXPECT_EQ(b[9], 0xFF);
    EXPECT_EQ(b[14], 0xF0);  // the double's upper bytes are left as they were
    EXPECT_EQ(b[15], 0xBF);
}
