// Number texts: text to VT_R8 and VT_I4, VT_R8 to text; varion beside
// std::from_chars, std::to_chars(fixed, 15) and snprintf("%.15f").
//
// "varion" reads a value that holds the text through its conversion operator
// (the text parsed where it stands), as the peers read theirs; "varion,
// SetType on a new value" also makes the string and releases it. The floors
// read the same digits in their own form: narrow, "." as separator, no base
// prefix ("0x1F" is "1F" in base 16).
#include "contenders.h"

#include <varion/varion.h>

#include <charconv>
#include <cstdio>
#include <string>
#include <string_view>

namespace {

using bench::Add;

template <class Read>
std::string ResultText(const CVarion& v) {
    CVarion read(static_cast<Read>(v));
    return static_cast<CString>(read).ToUtf8();
}

template <class Read>
void ReadText(benchmark::State& state, const CVarion& v) {
    for (auto _ : state) {
        const Read r = v;
        bench::Keep(r);
    }
    state.SetLabel(ResultText<Read>(v));
}

template <VARTYPE To, class Read>
void SetTypeOnNewValue(benchmark::State& state, const OleString& text) {
    long code = 0;
    for (auto _ : state) {
        CVarion v(text.c_str());
        code = v.SetType(To);
        const Read r = v;
        bench::Keep(code);
        bench::Keep(r);
    }
    state.SetLabel(code == RC_OK ? "ok" : "fails");
}

template <class T>
void FromChars(benchmark::State& state, std::string_view digits, int base) {
    T value{};
    for (auto _ : state) {
        bench::Launder(digits);
        if constexpr (std::is_floating_point_v<T>)
            std::from_chars(digits.data(), digits.data() + digits.size(), value);
        else
            std::from_chars(digits.data(), digits.data() + digits.size(), value, base);
        bench::Keep(value);
    }
}

void SetTypeToText(benchmark::State& state, double x) {
    for (auto _ : state) {
        bench::Launder(x);
        CVarion v(x);
        const long code = v.SetType(VT_BSTR);
        bench::Keep(code);
        bench::Keep(v);
    }
    CVarion v(x);
    v.SetType(VT_BSTR);
    state.SetLabel(static_cast<CString>(v).ToUtf8());
}

// The part of SetType(VT_BSTR) that std::to_chars and snprintf do not do,
// measured alone in the same run: a string of the text's length allocated
// and freed.
void StringMadeAndFreed(benchmark::State& state, UINT length) {
    for (auto _ : state) {
        BSTR text = SysAllocStringLen(nullptr, length);
        bench::Keep(text);
        SysFreeString(text);
    }
}

void OperatorText(benchmark::State& state, const CVarion& v) {
    for (auto _ : state) {
        CString text = v;
        bench::Keep(text);
    }
}

void ToCharsFixed15(benchmark::State& state, double x) {
    char buffer[400];
    std::to_chars_result r{};
    for (auto _ : state) {
        bench::Launder(x);
        r = std::to_chars(buffer, buffer + sizeof buffer, x, std::chars_format::fixed, 15);
        bench::Keep(r.ptr);
        bench::Keep(buffer);
    }
    state.SetLabel(std::string(buffer, r.ptr));
}

void Snprintf15(benchmark::State& state, double x) {
    char buffer[400];
    for (auto _ : state) {
        bench::Launder(x);
        const int n = std::snprintf(buffer, sizeof buffer, "%.15f", x);
        bench::Keep(n);
        bench::Keep(buffer);
    }
    state.SetLabel(buffer);
}

[[maybe_unused]] const bool registered = bench::Register([] {
    for (const bench::NumberText& input : bench::kTextsToR8) {
        const std::string op = bench::TextOperation(input, "to VT_R8");
        const OleString wide(CString(input.text).View());
        Add("text", op, "varion", [v = CVarion(input.text)](auto& s) { ReadText<double>(s, v); });
        Add("text", op, "varion, SetType on a new value", [wide](auto& s) { SetTypeOnNewValue<VT_R8, double>(s, wide); });
        Add("text", op, "std::from_chars", [input](auto& s) { FromChars<double>(s, input.digits, input.base); });
    }
    for (const double x : bench::kR8ToText) {
        const std::string op = bench::ValueOperation("VT_R8", x, "to text");
        Add("text", op, "varion", [x](auto& s) { SetTypeToText(s, x); });
        Add("text", op, "varion, operator CString", [v = CVarion(x)](auto& s) { OperatorText(s, v); });
        const auto length = static_cast<UINT>(static_cast<CString>(CVarion(x)).GetLength());
        Add("text", op, "varion, part: the string made and freed", [length](auto& s) { StringMadeAndFreed(s, length); });
        Add("text", op, "std::to_chars fixed 15", [x](auto& s) { ToCharsFixed15(s, x); });
        Add("text", op, "snprintf %.15f", [x](auto& s) { Snprintf15(s, x); });
    }
    for (const bench::NumberText& input : bench::kTextsToI4) {
        const std::string op = bench::TextOperation(input, "to VT_I4");
        const OleString wide(CString(input.text).View());
        Add("text", op, "varion", [v = CVarion(input.text)](auto& s) { ReadText<long>(s, v); });
        Add("text", op, "varion, SetType on a new value", [wide](auto& s) { SetTypeOnNewValue<VT_I4, long>(s, wide); });
        Add("text", op, "std::from_chars", [input](auto& s) { FromChars<int>(s, input.digits, input.base); });
    }
});

}  // namespace
