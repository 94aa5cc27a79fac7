// The range-checked numeric conversions, checked against an independent
// oracle in exact arithmetic over a grid of values around every bound.
#include "convert/numeric.h"
#include "convert_test_util.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <limits>
#include <vector>

using namespace varion::test;
using varion::detail::kNumericTypes;

namespace {

using Exact = long double;  // holds every 64-bit integer, single and double exactly

struct TypeInfo {
    bool floating;
    Exact lo, hi;
};

// The range of each numeric type; VT_BOOL holds 0 or 1.
TypeInfo Info(VARTYPE vt) {
    TypeInfo info{};
    ForEachNumericType([&]<VARTYPE VT>() {
        using L = std::numeric_limits<varion::detail::NumericT<VT>>;
        if (VT == vt) info = {!L::is_integer, static_cast<Exact>(L::lowest()), VT == VT_BOOL ? 1.0L : static_cast<Exact>(L::max())};
    });
    return info;
}

// A value of source type `vt` holding x, when x is representable there.
bool MakeSource(VARTYPE vt, Exact x, CVarion& out) {
    const TypeInfo t = Info(vt);
    if (!t.floating && (std::isnan(x) || x < t.lo || x > t.hi || x != std::trunc(x))) return false;
    ForEachNumericType([&]<VARTYPE VT>() {
        if (VT == vt) out = Raw(VT, static_cast<varion::detail::NumericT<VT>>(x));
    });
    return true;
}

struct Expected {
    long code;
    Exact value;  // meaningful when code is 0 (always for VT_BOOL targets)
};

// The conversion rule, restated in exact arithmetic.
Expected Oracle(VARTYPE target, VARTYPE source, Exact x) {
    const TypeInfo t = Info(target);
    if (t.floating) {
        if (std::isfinite(x) && x < t.lo) return {RC_BELOW_MIN, 0};
        if (std::isfinite(x) && x > t.hi) return {RC_ABOVE_MAX, 0};
        return {RC_OK, target == VT_R4 ? static_cast<Exact>(static_cast<float>(x)) : static_cast<Exact>(static_cast<double>(x))};
    }
    // Integer and Boolean targets: half away from zero, held in the source's
    // own precision, then checked and truncated.
    Exact adjusted = x;
    if (source == VT_R4 && x != 0 && !std::isnan(x))
        adjusted = x > 0 ? static_cast<float>(static_cast<float>(x) + 0.5f) : static_cast<float>(static_cast<float>(x) - 0.5f);
    if (source == VT_R8 && x != 0 && !std::isnan(x))
        adjusted = x > 0 ? static_cast<double>(x) + 0.5 : static_cast<double>(x) - 0.5;
    if (target == VT_BOOL) return {RC_OK, (adjusted != 0) ? 1.0L : 0.0L};  // NaN != 0
    if (std::isnan(adjusted)) return {RC_OK, 0};
    if (adjusted < t.lo) return {RC_BELOW_MIN, 0};
    if (adjusted > t.hi) return {RC_ABOVE_MAX, 0};
    return {RC_OK, std::trunc(adjusted)};
}

// Candidate values: every bound of every type, a half and one either side,
// the neighbouring doubles and singles, and the special values.
std::vector<Exact> Grid() {
    constexpr Exact kInf = std::numeric_limits<Exact>::infinity();
    std::vector<Exact> grid = {0.0L, -0.0L, 0.3L,  -0.3L, 0.5L,   -0.5L,  1.0L, -1.0L, 2.5L, -2.5L, 8388609.0L,
                               std::numeric_limits<Exact>::quiet_NaN(), kInf, -kInf, 1e39L, -1e39L, 1e300L, -1e300L};
    for (VARTYPE vt : kNumericTypes) {
        for (Exact bound : {Info(vt).lo, Info(vt).hi}) {
            for (Exact delta : {0.0L, 0.5L, -0.5L, 1.0L, -1.0L, 0.25L, -0.75L}) grid.push_back(bound + delta);
            const double d = static_cast<double>(bound);
            const float f = static_cast<float>(std::fmax(std::fmin(d, 3.4e38), -3.4e38));
            grid.insert(grid.end(), {std::nextafter(d, 0.0), std::nextafter(d, d < 0 ? -INFINITY : INFINITY),
                                     std::nextafter(f, 0.0f), std::nextafter(f, f < 0 ? -INFINITY : INFINITY)});
        }
    }
    return grid;
}

std::string Describe(VARTYPE target, const CVarion& src) {
    char buf[160];
    std::snprintf(buf, sizeof buf, "source vt %u value %.21Lg to vt %u", src.GetType(), NumberOf(src), target);
    return buf;
}

TEST(NumericCast, AllPairsMatchTheExactOracleAroundEveryBound) {
    const std::vector<Exact> grid = Grid();
    long checked = 0;
    for (VARTYPE source : kNumericTypes) {
        for (Exact x : grid) {
            CVarion src;
            if (!MakeSource(source, x, src)) continue;
            for (VARTYPE target : kNumericTypes) {
                CVarion v(src);
                const Expected want = source == target ? Expected{RC_OK, NumberOf(src)}
                                                       : Oracle(target, source, NumberOf(src));
                const std::string what = Describe(target, src);
                ExpectChange(v, target, want.code, what);
                ASSERT_FALSE(HasFailure()) << what;
                if (want.code != RC_OK) continue;
                ASSERT_EQ(v.GetType(), target) << what;
                const Exact got = NumberOf(v);
                ASSERT_TRUE(got == want.value || (std::isnan(got) && std::isnan(want.value))) << what;
                ++checked;
            }
        }
    }
    EXPECT_GT(checked, 5000);
}

// A few answers worked out by hand, so that the oracle cannot share a
// misreading with the code.
TEST(NumericCast, LandmarksOfTheRule) {
    const struct { CVarion source; VARTYPE target; long code; double value; /* when code is 0 */ } cases[] = {
        {CVarion(126.5), VT_I1, RC_OK, 127}, {CVarion(127.0), VT_I1, RC_ABOVE_MAX, 0}, {CVarion(-0.4), VT_UI4, RC_BELOW_MIN, 0},
        {CVarion(8388609.0f), VT_I4, RC_OK, 8388610},  // 8388609.5 rounds to even in single precision
        {CVarion(std::numeric_limits<double>::quiet_NaN()), VT_BOOL, RC_OK, 1},
    };
    for (const auto& c : cases) {
        CVarion v(c.source);
        ExpectChange(v, c.target, c.code, Describe(c.target, c.source));
        if (c.code == RC_OK) { EXPECT_EQ(static_cast<double>(NumberOf(v)), c.value) << Describe(c.target, c.source); }
    }
}

}  // namespace
