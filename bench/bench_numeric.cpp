// Numeric conversions, operator reads and the copying of values.
#include <varion/varion.h>

#include <benchmark/benchmark.h>

namespace {

template <VARTYPE From, VARTYPE To>
void SetTypePair(benchmark::State& state, CVarion source) {
    for (auto _ : state) {
        CVarion v(source);
        benchmark::DoNotOptimize(v.SetType(To));
        benchmark::DoNotOptimize(v);
    }
    (void)From;
}

void BM_I4_to_R8(benchmark::State& s) { SetTypePair<VT_I4, VT_R8>(s, CVarion(123456)); }
void BM_R8_to_I2(benchmark::State& s) { SetTypePair<VT_R8, VT_I2>(s, CVarion(1234.5)); }
void BM_R8_to_I2_failing(benchmark::State& s) { SetTypePair<VT_R8, VT_I2>(s, CVarion(1e9)); }
void BM_UI8_to_I8_failing(benchmark::State& s) { SetTypePair<VT_UI8, VT_I8>(s, CVarion(~0ULL)); }
void BM_R4_to_UI1(benchmark::State& s) { SetTypePair<VT_R4, VT_UI1>(s, CVarion(200.25f)); }
void BM_I8_to_BOOL(benchmark::State& s) { SetTypePair<VT_I8, VT_BOOL>(s, CVarion(5LL)); }

void BM_OperatorLongOfR8(benchmark::State& state) {
    const CVarion v(2.5);
    for (auto _ : state) benchmark::DoNotOptimize(static_cast<long>(v));
}

void BM_OperatorDoubleOfI4(benchmark::State& state) {
    const CVarion v(42);
    for (auto _ : state) benchmark::DoNotOptimize(static_cast<double>(v));
}

void BM_CopyR8(benchmark::State& state) {
    const CVarion v(2.5);
    for (auto _ : state) {
        CVarion copy(v);
        benchmark::DoNotOptimize(copy);
    }
}

void BM_CopyBstr(benchmark::State& state) {
    const CVarion v("a parameter value of 32 chars...");
    for (auto _ : state) {
        CVarion copy(v);
        benchmark::DoNotOptimize(copy);
    }
}

void BM_AssignBstr(benchmark::State& state) {
    const CVarion v("a parameter value of 32 chars...");
    CVarion target;
    for (auto _ : state) {
        target = v;
        benchmark::DoNotOptimize(target);
    }
}

}  // namespace

BENCHMARK(BM_I4_to_R8);
BENCHMARK(BM_R8_to_I2);
BENCHMARK(BM_R8_to_I2_failing);
BENCHMARK(BM_UI8_to_I8_failing);
BENCHMARK(BM_R4_to_UI1);
BENCHMARK(BM_I8_to_BOOL);
BENCHMARK(BM_OperatorLongOfR8);
BENCHMARK(BM_OperatorDoubleOfI4);
BENCHMARK(BM_CopyR8);
BENCHMARK(BM_CopyBstr);
BENCHMARK(BM_AssignBstr);

namespace {
// The floor for copying a value: 16 bytes.
void BM_Copy16Bytes(benchmark::State& state) {
    struct Raw {
        unsigned char b[16];
    };
    Raw source{};
    source.b[0] = 5;
    for (auto _ : state) {
        Raw copy = source;
        benchmark::DoNotOptimize(copy);
    }
}
}  // namespace
BENCHMARK(BM_Copy16Bytes);
