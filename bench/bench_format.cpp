// Display formats: "%.2f" on a VT_R8 and "%X" on a VT_I4, through
// GetStringWithDisplayFormat and through the formatter alone, beside the C
// library's snprintf and swprintf of the same format.
#include "platform/format.h"

#include <varion/varion.h>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cwchar>

namespace {

constexpr double kReal = 3.14159;
constexpr long kInteger = 0x1F2E3D4C;

// --- The formatter alone ----------------------------------------------------

void Formatter_F2_R8(benchmark::State& state) {
    OLECHAR out[varion::detail::kFormatBufferSize];
    double x = kReal;
    for (auto _ : state) {
        benchmark::DoNotOptimize(x);
        const auto r = varion::detail::FormatOne(OLESTR("%.2f"), varion::FormatArg(x), out, sizeof out / sizeof *out);
        benchmark::DoNotOptimize(r);
        benchmark::DoNotOptimize(out);
    }
}
BENCHMARK(Formatter_F2_R8);

void Formatter_X_I4(benchmark::State& state) {
    OLECHAR out[varion::detail::kFormatBufferSize];
    long x = kInteger;
    for (auto _ : state) {
        benchmark::DoNotOptimize(x);
        const auto r = varion::detail::FormatOne(OLESTR("%X"), varion::FormatArg(x), out, sizeof out / sizeof *out);
        benchmark::DoNotOptimize(r);
        benchmark::DoNotOptimize(out);
    }
}
BENCHMARK(Formatter_X_I4);

// --- The C library's formatters, the floor to beat --------------------------

void Snprintf_F2_R8(benchmark::State& state) {
    char out[100];
    double x = kReal;
    for (auto _ : state) {
        benchmark::DoNotOptimize(x);
        const int n = std::snprintf(out, sizeof out, "%.2f", x);
        benchmark::DoNotOptimize(n);
        benchmark::DoNotOptimize(out);
    }
}
BENCHMARK(Snprintf_F2_R8);

void Snprintf_X_I4(benchmark::State& state) {
    char out[100];
    long x = kInteger;
    for (auto _ : state) {
        benchmark::DoNotOptimize(x);
        const int n = std::snprintf(out, sizeof out, "%lX", x);
        benchmark::DoNotOptimize(n);
        benchmark::DoNotOptimize(out);
    }
}
BENCHMARK(Snprintf_X_I4);

void Swprintf_F2_R8(benchmark::State& state) {
    wchar_t out[100];
    double x = kReal;
    for (auto _ : state) {
        benchmark::DoNotOptimize(x);
        const int n = std::swprintf(out, 100, L"%.2f", x);
        benchmark::DoNotOptimize(n);
        benchmark::DoNotOptimize(out);
    }
}
BENCHMARK(Swprintf_F2_R8);

void Swprintf_X_I4(benchmark::State& state) {
    wchar_t out[100];
    long x = kInteger;
    for (auto _ : state) {
        benchmark::DoNotOptimize(x);
        const int n = std::swprintf(out, 100, L"%lX", x);
        benchmark::DoNotOptimize(n);
        benchmark::DoNotOptimize(out);
    }
}
BENCHMARK(Swprintf_X_I4);

// --- Through the value ------------------------------------------------------

void Display_F2_R8(benchmark::State& state) {
    const CVarion value(kReal);
    const CString format(OLESTR("%.2f"));
    for (auto _ : state) {
        CString text = value.GetStringWithDisplayFormat(format, 0);
        benchmark::DoNotOptimize(text);
    }
}
BENCHMARK(Display_F2_R8);

void Display_X_I4(benchmark::State& state) {
    const CVarion value(static_cast<int>(kInteger));
    const CString format(OLESTR("%X"));
    for (auto _ : state) {
        CString text = value.GetStringWithDisplayFormat(format, 0);
        benchmark::DoNotOptimize(text);
    }
}
BENCHMARK(Display_X_I4);

}  // namespace
