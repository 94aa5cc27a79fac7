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

// The parts of varion's work that snprintf does not do, measured alone in
// the same run: the decimal separator step on a finished text, and the
// CString that carries a text back.
void SeparatorStep(benchmark::State& state, CString text) {
    for (auto _ : state) {
        CVarion::CheckDecimalPoint(text);
        bench::Keep(text);
    }
}

void ReturnedText(benchmark::State& state, const CString& text) {
    const OleStringView view = text.View();
    for (auto _ : state) {
        CString made(view);
        bench::Keep(made);
    }
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
    Add("format", real, "varion, part: the decimal separator step",
        [](auto& s) { SeparatorStep(s, CString(OLESTR("3.14"))); });
    for (const int x : {bench::kDisplaySmall, bench::kDisplayLarge}) {
        const std::string op = "\"%X\" of VT_I4 " + std::to_string(x);
        const CVarion value(x);
        Add("format", op, "varion", [value](auto& s) { Display(s, value, CString(OLESTR("%X"))); });
        Add("format", op, "varion, part: the CString returned",
            [text = value.GetStringWithDisplayFormat(CString(OLESTR("%X")), 0)](auto& s) { ReturnedText(s, text); });
        Add("format", op, "snprintf", [x](auto& s) { Snprintf(s, "%X", static_cast<unsigned>(x)); });
    }
});

}  // namespace
