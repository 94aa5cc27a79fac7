// Date and duration texts: rendering and parsing, which should allocate at
// most their result.
#include "datetime/datetime.h"

#include <benchmark/benchmark.h>

#include <cstdlib>

using namespace varion::detail;

namespace {

void SetUserLocale(const char* name) { setenv("LC_ALL", name, 1); }

void BM_FormatDateTime(benchmark::State& state) {
    SetUserLocale(state.range(0) == 0 ? "de_DE.UTF-8" : "en_US.UTF-8");
    double value = 0;
    DateFromFields(2026, 11, 17, 20, 18, 38, 250, value);
    for (auto _ : state) {
        CString text = FormatDateTime(value);
        benchmark::DoNotOptimize(text);
    }
    state.SetLabel(state.range(0) == 0 ? "de-DE" : "en-US");
}
BENCHMARK(BM_FormatDateTime)->Arg(0)->Arg(1);

void BM_VarDateFromStr(benchmark::State& state) {
    static const OLECHAR* const kTexts[] = {OLESTR("17.11.2026 20:18:38"), OLESTR("11/17/2026 8:18:38 PM"),
                                            OLESTR("2026-11-17T20:18:38"), OLESTR("Tuesday, November 17, 2026")};
    static const LCID kLocales[] = {0x0407, 0x0409, 0x0407, 0x0409};
    const auto i = static_cast<std::size_t>(state.range(0));
    for (auto _ : state) {
        DATE value = 0;
        benchmark::DoNotOptimize(VarDateFromStr(kTexts[i], kLocales[i], 0, &value));
        benchmark::DoNotOptimize(value);
    }
}
BENCHMARK(BM_VarDateFromStr)->DenseRange(0, 3);

void BM_ParseDateTimeText(benchmark::State& state) {
    SetUserLocale("de_DE.UTF-8");
    const CString text("17.11.2026 20:18:38,250");
    for (auto _ : state) {
        double value = 0;
        benchmark::DoNotOptimize(ParseDateTimeText(text, 0, 0, value));
        benchmark::DoNotOptimize(value);
    }
}
BENCHMARK(BM_ParseDateTimeText);

void BM_FormatIsoDuration(benchmark::State& state) {
    const double value = DurationFromMilliseconds(state.range(0));
    for (auto _ : state) {
        CString text = FormatIsoDuration(value);
        benchmark::DoNotOptimize(text);
    }
}
BENCHMARK(BM_FormatIsoDuration)->Arg(0)->Arg(90500)->Arg(-315569520000LL);

void BM_FormatIsoDateTime(benchmark::State& state) {
    double value = 0;
    DateFromFields(2026, 11, 17, 20, 18, 38, 250, value);
    for (auto _ : state) {
        CString text = FormatIsoDateTime(value);
        benchmark::DoNotOptimize(text);
    }
}
BENCHMARK(BM_FormatIsoDateTime);

void BM_FormatDuration(benchmark::State& state) {
    const double value = DurationFromFields(1, 12, 30, 5, 250, 0);
    const CString format;
    for (auto _ : state) {
        CString text = FormatDuration(value, format);
        benchmark::DoNotOptimize(text);
    }
}
BENCHMARK(BM_FormatDuration);

void BM_DateTimeFields(benchmark::State& state) {
    double value = 0;
    DateFromFields(2026, 11, 17, 20, 18, 38, 250, value);
    for (auto _ : state) {
        DateTimeFieldSet fields;
        benchmark::DoNotOptimize(DateTimeFields(value, fields));
        benchmark::DoNotOptimize(fields);
    }
}
BENCHMARK(BM_DateTimeFields);

}  // namespace
