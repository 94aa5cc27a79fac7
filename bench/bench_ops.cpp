// Comparison and arithmetic across mixed types.
#include <varion/varion.h>

#include <benchmark/benchmark.h>

namespace {

void BM_EqualI4R8(benchmark::State& state) {
    const CVarion a(5);
    const CVarion b(5.0000049);
    for (auto _ : state) benchmark::DoNotOptimize(a == b);
}

void BM_LessStrings(benchmark::State& state) {
    const CVarion a("parameter value A");
    const CVarion b("parameter value B");
    for (auto _ : state) benchmark::DoNotOptimize(a < b);
}

void BM_ArithmeticAddI4(benchmark::State& state) {
    const CVarion a(40);
    const CVarion b(2);
    CVarion r;
    for (auto _ : state) {
        benchmark::DoNotOptimize(CVarion::Arithmetic(r, a, b, OP_ADD));
        benchmark::DoNotOptimize(r);
    }
}

void BM_ArithmeticMulR8R4(benchmark::State& state) {
    const CVarion a(2.5);
    const CVarion b(1.5f);
    CVarion r;
    for (auto _ : state) {
        benchmark::DoNotOptimize(CVarion::Arithmetic(r, a, b, OP_MUL));
        benchmark::DoNotOptimize(r);
    }
}

}  // namespace

BENCHMARK(BM_EqualI4R8);
BENCHMARK(BM_LessStrings);
BENCHMARK(BM_ArithmeticAddI4);
BENCHMARK(BM_ArithmeticMulR8R4);
