// UnitConvert over a spread of code pairs: linear units of several groups and
// blocks, temperatures, mismatches and early exits, from sources of several
// types (the result goes back into the source's type).
#include <varion/varion.h>

#include <benchmark/benchmark.h>

#include <cstddef>
#include <iterator>

namespace {

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

template <std::size_t N>
void Run(benchmark::State& state, const CVarion& source, const Pair (&pairs)[N]) {
    CVarion result;
    std::size_t i = 0;
    for (auto _ : state) {
        const Pair& p = pairs[i];
        i = i + 1 == N ? 0 : i + 1;
        benchmark::DoNotOptimize(source.UnitConvert(p.from, p.to, &result));
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations());
}

void BM_UnitConvertLinearR8(benchmark::State& s) { Run(s, CVarion(12.5), kLinear); }
void BM_UnitConvertLinearI4(benchmark::State& s) { Run(s, CVarion(int(125)), kLinear); }
void BM_UnitConvertLinearR4(benchmark::State& s) { Run(s, CVarion(12.5f), kLinear); }
void BM_UnitConvertTemperatureR8(benchmark::State& s) { Run(s, CVarion(21.5), kTemperature); }
void BM_UnitConvertTemperatureI2(benchmark::State& s) { Run(s, CVarion(short(21)), kTemperature); }
void BM_UnitConvertNotConverted(benchmark::State& s) { Run(s, CVarion(int(20)), kNotConverted); }

BENCHMARK(BM_UnitConvertLinearR8);
BENCHMARK(BM_UnitConvertLinearI4);
BENCHMARK(BM_UnitConvertLinearR4);
BENCHMARK(BM_UnitConvertTemperatureR8);
BENCHMARK(BM_UnitConvertTemperatureI2);
BENCHMARK(BM_UnitConvertNotConverted);

}  // namespace
