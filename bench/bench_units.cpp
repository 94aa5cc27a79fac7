// UnitConvert: bar to psi beside the plain arithmetic it comes down to (the
// two factors of the unit table, looked up once), and, for varion alone, a
// spread of code pairs: linear units of several groups and blocks,
// temperatures, mismatches and early exits, from sources of several types
// (the result goes back into the source's type).
#include "contenders.h"

#include <varion/varion.h>

#include <cstddef>
#include <iterator>
#include <string>

namespace {

using bench::Add;

struct Pair {
    short from;
    short to;
};

// clang-format off
constexpr Pair kLinear[] = {
    {1010, 1013}, {7, 6},       {1363, 1349}, {1322, 1332}, {16641, 6},  {17079, 121},
    {1086, 1085}, {18505, 18514}, {1642, 1347}, {45, 47},    {1179, 1183}, {1097, 1107},
};
constexpr Pair kTemperature[] = {{32, 33}, {1001, 1003}, {35, 34}, {1002, 1000}};
constexpr Pair kNotConverted[] = {{7, 1137}, {32, 1001}, {16416, 32}, {11, 9999}, {11, 0}, {11, 11}};
// clang-format on

void BarToPsi(benchmark::State& state, const CVarion& source) {
    CVarion result;
    long code = 0;
    for (auto _ : state) {
        code = source.UnitConvert(bench::kBar, bench::kPsi, &result);
        bench::Keep(code);
        bench::Keep(result);
    }
    state.SetLabel(code == RC_OK ? static_cast<CString>(result).ToUtf8() : "fails");
}

void PlainBarToPsi(benchmark::State& state) {
    VarionUnitInfo bar{};
    VarionUnitInfo psi{};
    VarionUnitFind(bench::kBar, &bar);
    VarionUnitFind(bench::kPsi, &psi);
    double x = bench::kPressure;
    for (auto _ : state) {
        bench::Launder(x);
        bench::Launder(bar.factor);
        bench::Launder(psi.factor);
        const double converted = x / bar.factor * psi.factor;
        bench::Keep(converted);
    }
}

template <std::size_t N>
void Spread(benchmark::State& state, const CVarion& source, const Pair (&pairs)[N]) {
    CVarion result;
    std::size_t i = 0;
    for (auto _ : state) {
        const Pair& p = pairs[i];
        i = i + 1 == N ? 0 : i + 1;
        bench::Keep(source.UnitConvert(p.from, p.to, &result));
        bench::Keep(result);
    }
}

[[maybe_unused]] const bool registered = bench::Register([] {
    const std::string op = "UnitConvert bar to psi (7 to 6), VT_R8";
    Add("units", op, "varion", [v = CVarion(bench::kPressure)](auto& s) { BarToPsi(s, v); });
    Add("units", op, "plain arithmetic", PlainBarToPsi);
    // varion alone.
    Add("units", "UnitConvert, 12 linear pairs in turn, VT_R8", "varion",
        [v = CVarion(12.5)](auto& s) { Spread(s, v, kLinear); });
    Add("units", "UnitConvert, 12 linear pairs in turn, VT_I4", "varion",
        [v = CVarion(125)](auto& s) { Spread(s, v, kLinear); });
    Add("units", "UnitConvert, 12 linear pairs in turn, VT_R4", "varion",
        [v = CVarion(12.5f)](auto& s) { Spread(s, v, kLinear); });
    Add("units", "UnitConvert, 4 temperature pairs in turn, VT_R8", "varion",
        [v = CVarion(21.5)](auto& s) { Spread(s, v, kTemperature); });
    Add("units", "UnitConvert, 4 temperature pairs in turn, VT_I2", "varion",
        [v = CVarion(short(21))](auto& s) { Spread(s, v, kTemperature); });
    Add("units", "UnitConvert, 6 pairs not converted in turn, VT_I4", "varion",
        [v = CVarion(20)](auto& s) { Spread(s, v, kNotConverted); });
});

}  // namespace
