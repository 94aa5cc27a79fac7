// Display formats: GetStringWithDisplayFormat with "%.2f" on a VT_R8 and "%X"
// on VT_I4 values, beside snprintf of the same format into a stack buffer.
// varion also finishes the text ("0x" in front of hexadecimal digits, the
// user's decimal separator) and returns it as a CString.
#include "contenders.h"

#include <varion/varion.h>

#include <cstdio>
#include <string>

namespace {

using bench::Add;

void Display(benchmark::State& state, const CVarion& value, const CString& format) {
    for (auto _ : state) {
        CString text = value.GetStringWithDisplayFormat(format, 0);
        bench::Keep(text);
    }
    state.SetLabel(value.GetStringWithDisplayFormat(format, 0).ToUtf8());
}

template <class T>
void Snprintf(benchmark::State& state, const char* format, T x) {
    char buffer[100];
    for (auto _ : state) {
        bench::Launder(x);
        const int n = std::snprintf(buffer, sizeof buffer, format, x);
        bench::Keep(n);
        bench::Keep(buffer);
    }
    state.SetLabel(buffer);
}

[[maybe_unused]] const bool registered = bench::Register([] {
    const std::string real = "\"%.2f\" of VT_R8 3.14159";
    Add("format", real, "varion",
        [v = CVarion(bench::kDisplayReal)](auto& s) { Display(s, v, CString(OLESTR("%.2f"))); });
    Add("format", real, "snprintf", [](auto& s) { Snprintf(s, "%.2f", bench::kDisplayReal); });
    for (const int x : {bench::kDisplaySmall, bench::kDisplayLarge}) {
        const std::string op = "\"%X\" of VT_I4 " + std::to_string(x);
        Add("format", op, "varion", [v = CVarion(x)](auto& s) { Display(s, v, CString(OLESTR("%X"))); });
        Add("format", op, "snprintf", [x](auto& s) { Snprintf(s, "%X", static_cast<unsigned>(x)); });
    }
});

}  // namespace
