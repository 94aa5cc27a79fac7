// What every benchmark file shares: the inputs of each operation (inputs.h),
// so that varion and its peers work on the same values and texts, and the
// naming of the benchmarks.
//
// A benchmark is named "family/operation/contender": "numeric/VT_I4 to
// VT_R8/varion", "numeric/VT_I4 to VT_R8/Poco". bench/run-peers.sh runs one
// process per family and compares every contender of an operation with the
// contender "varion". A contender may label its run with the result it gives
// ("12.5", "fails"), so that a table can show where the peers answer
// differently.
#pragma once

#include "barriers.h"
#include "inputs.h"

#include <benchmark/benchmark.h>

#include <string>
#include <utility>

namespace bench {

// ---------------------------------------------------------------------------
// Registration
// ---------------------------------------------------------------------------

/// Registers `body` (called with the benchmark's state) as
/// "family/operation/contender".
template <class Body>
void Add(const std::string& family, const std::string& operation, const char* contender, Body body) {
    const std::string name = family + "/" + operation + "/" + contender;
    benchmark::RegisterBenchmark(name.c_str(), [body = std::move(body)](benchmark::State& state) { body(state); });
}

/// Runs `registerAll` while the program starts, before main: a file defines
/// `const bool registered = bench::Register([] { ... });`.
template <class F>
bool Register(F registerAll) {
    registerAll();
    return true;
}

// ---------------------------------------------------------------------------
// Operations every contender is measured on in the same way
// ---------------------------------------------------------------------------

/// Copy construction and destruction of `source`.
template <class Value>
void Copy(benchmark::State& state, Value source) {
    for (auto _ : state) {
        Launder(source);
        Value copy(source);
        Keep(copy);
    }
}

/// Assignment of `source` to a value made once, before the loop.
template <class Value>
void Assign(benchmark::State& state, Value source) {
    Value target;
    for (auto _ : state) {
        Launder(source);
        target = source;
        Keep(target);
    }
}

/// a == b, labelled with its answer.
template <class Value>
void Equal(benchmark::State& state, const Value& a, const Value& b) {
    decltype(a == b) equal{};
    for (auto _ : state) {
        equal = a == b;
        Keep(equal);
    }
    state.SetLabel(equal ? "equal" : "not equal");
}

}  // namespace bench
