// Comparison and arithmetic: operator== of two VT_I4 and of two VT_R8 and
// ADD of two VT_I4 beside the plain C++ of the same, and for varion alone the
// mixed pairs (a VT_I4 meeting a VT_R8 in the tolerant class, two strings, a
// double times a single).
#include "contenders.h"

#include <varion/varion.h>

#include <string>

namespace {

using bench::Add;

template <class T>
void PlainEqual(benchmark::State& state, T x, T y) {
    for (auto _ : state) {
        bench::Launder(x);
        bench::Launder(y);
        const bool equal = x == y;
        bench::Keep(equal);
    }
}

void AddValues(benchmark::State& state, const CVarion& a, const CVarion& b) {
    CVarion result;
    for (auto _ : state) {
        CVarion::ADD(result, a, b);
        bench::Keep(result);
    }
    state.SetLabel(std::to_string(static_cast<long>(result)));
}

void PlainAdd(benchmark::State& state) {
    int x = 5;
    int y = 7;
    for (auto _ : state) {
        bench::Launder(x);
        bench::Launder(y);
        const long long sum = static_cast<long long>(x) + y;
        bench::Keep(sum);
    }
}

template <class Compare>
void Relation(benchmark::State& state, CVarion a, CVarion b, Compare compare) {
    for (auto _ : state) {
        bench::Launder(a);
        bench::Launder(b);
        bench::Keep(compare(a, b));
    }
}

void Multiply(benchmark::State& state, CVarion a, CVarion b) {
    CVarion result;
    for (auto _ : state) {
        bench::Launder(a);
        bench::Launder(b);
        bench::Keep(CVarion::Arithmetic(result, a, b, OP_MUL));
        bench::Keep(result);
    }
}

[[maybe_unused]] const bool registered = bench::Register([] {
    Add("ops", "VT_I4 == VT_I4", "varion", [](auto& s) { bench::Equal(s, CVarion(5), CVarion(5)); });
    Add("ops", "VT_I4 == VT_I4", "plain ==", [](auto& s) { PlainEqual(s, 5, 5); });
    Add("ops", "VT_R8 == VT_R8", "varion", [](auto& s) { bench::Equal(s, CVarion(2.5), CVarion(2.5)); });
    Add("ops", "VT_R8 == VT_R8", "plain ==", [](auto& s) { PlainEqual(s, 2.5, 2.5); });
    Add("ops", "ADD VT_I4 + VT_I4", "varion", [](auto& s) { AddValues(s, CVarion(5), CVarion(7)); });
    Add("ops", "ADD VT_I4 + VT_I4", "plain +", PlainAdd);
    // varion alone.
    Add("ops", "VT_I4 5 == VT_R8 5.0000049 (tolerant)", "varion",
        [](auto& s) { Relation(s, CVarion(5), CVarion(5.0000049), [](auto& a, auto& b) { return a == b; }); });
    Add("ops", "VT_BSTR < VT_BSTR", "varion", [](auto& s) {
        Relation(s, CVarion("parameter value A"), CVarion("parameter value B"), [](auto& a, auto& b) { return a < b; });
    });
    Add("ops", "MUL VT_R8 * VT_R4", "varion", [](auto& s) { Multiply(s, CVarion(2.5), CVarion(1.5f)); });
});

}  // namespace
