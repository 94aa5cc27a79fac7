// What a measured operation is fenced in with: its input is read again on
// every repetition (Launder) and its result is stored (Keep), and nothing
// more. benchmark::DoNotOptimize also makes the compiler forget all it knows
// of memory, which for operations of a few instructions costs more than the
// operation itself; every contender is fenced in the same way.
#pragma once

namespace bench {

/// The compiler must assume `value` changed here and read it again.
template <class T>
inline void Launder(T& value) {
    asm volatile("" : "+m"(value));
}

/// The compiler must assume `value` is read here.
template <class T>
inline void Keep(const T& value) {
    asm volatile("" : : "m"(value));
}

}  // namespace bench
