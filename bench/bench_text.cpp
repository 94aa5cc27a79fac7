// Number texts: reading and writing through SetType beside std::from_chars
// and std::to_chars alone, the floor any implementation stands on.
//
// Targets: text to VT_R8 within 3x of from_chars on the same digits plus the
// trim; VT_R8 to text within 2x of to_chars(fixed, 15).
#include <varion/varion.h>

#include "convert/number_text.h"
#include "value/access.h"

#include <benchmark/benchmark.h>

#include <charconv>
#include <string>
#include <vector>

namespace {

const char* const kTexts[] = {" 12.5 ", "-1234.5678", "0.000123456789", " 3.14159265358979 ",
                              "1e-5",   "123456789.123456789", "42", "-0.1"};
const double kValues[] = {12.5, -1234.5678, 0.000123456789, 3.14159265358979, 1e-5, 123456789.123456789, 42.0, -0.1};

std::vector<OleString> WideTexts() {
    std::vector<OleString> wide;
    for (const char* t : kTexts) wide.emplace_back(CString(t).View());
    return wide;
}

// ---- text to VT_R8 -------------------------------------------------------

// Floor: trim the blanks, then std::from_chars on the narrow digits.
void BM_FromCharsWithTrim(benchmark::State& state) {
    std::vector<std::string> texts(std::begin(kTexts), std::end(kTexts));
    std::size_t k = 0;
    for (auto _ : state) {
        const std::string& t = texts[k++ % texts.size()];
        const std::size_t first = t.find_first_not_of(' ');
        const std::size_t last = t.find_last_not_of(' ') + 1;
        double d = 0;
        std::from_chars(t.data() + first, t.data() + last, d);
        benchmark::DoNotOptimize(d);
    }
}
BENCHMARK(BM_FromCharsWithTrim);

// The library's reading of the UTF-16 text, without the string's lifetime.
void BM_ParseTextToR8(benchmark::State& state) {
    const auto texts = WideTexts();
    std::size_t k = 0;
    for (auto _ : state) {
        const OleString& t = texts[k++ % texts.size()];
        VARIANT out{};
        varion::detail::NumberFromText(t, VT_R8, out);
        benchmark::DoNotOptimize(out);
    }
}
BENCHMARK(BM_ParseTextToR8);

// Floor with the string's lifetime: make the BSTR, trim, from_chars, free it.
void BM_FromCharsWithTrimAndString(benchmark::State& state) {
    const auto texts = WideTexts();
    std::size_t k = 0;
    for (auto _ : state) {
        const OleString& t = texts[k++ % texts.size()];
        BSTR s = SysAllocString(t.c_str());
        char narrow[64];
        std::size_t n = 0;
        for (UINT i = 0; i < SysStringLen(s) && n < sizeof(narrow); ++i)
            if (s[i] != ' ') narrow[n++] = static_cast<char>(s[i]);
        double d = 0;
        std::from_chars(narrow, narrow + n, d);
        benchmark::DoNotOptimize(d);
        SysFreeString(s);
    }
}
BENCHMARK(BM_FromCharsWithTrimAndString);

// SetType(VT_R8) on a string value, with the value made and destroyed.
void BM_SetTypeTextToR8(benchmark::State& state) {
    const auto texts = WideTexts();
    std::size_t k = 0;
    for (auto _ : state) {
        CVarion v(texts[k++ % texts.size()].c_str());
        benchmark::DoNotOptimize(v.SetType(VT_R8));
    }
}
BENCHMARK(BM_SetTypeTextToR8);

// ---- VT_R8 to text -------------------------------------------------------

// Floor: std::to_chars with fifteen fixed decimals.
void BM_ToCharsFixed15(benchmark::State& state) {
    std::size_t k = 0;
    char buffer[varion::detail::kFixedTextMax];
    for (auto _ : state) {
        const auto r = std::to_chars(buffer, buffer + sizeof(buffer), kValues[k++ % std::size(kValues)],
                                     std::chars_format::fixed, 15);
        benchmark::DoNotOptimize(r.ptr);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_ToCharsFixed15);

// SetType(VT_BSTR) on a VT_R8: digits, trimming, separator, the new string.
void BM_SetTypeR8ToText(benchmark::State& state) {
    std::size_t k = 0;
    for (auto _ : state) {
        CVarion v(kValues[k++ % std::size(kValues)]);
        benchmark::DoNotOptimize(v.SetType(VT_BSTR));
    }
}
BENCHMARK(BM_SetTypeR8ToText);

// Integers, for comparison: SetType(VT_BSTR) and back on a VT_I4.
void BM_SetTypeI4TextRoundTrip(benchmark::State& state) {
    int x = -123456;
    for (auto _ : state) {
        CVarion v(x++);
        v.SetType(VT_BSTR);
        benchmark::DoNotOptimize(v.SetType(VT_I4));
    }
}
BENCHMARK(BM_SetTypeI4TextRoundTrip);

}  // namespace
