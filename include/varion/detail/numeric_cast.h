// varion: the range-checked casts between the eleven numeric types.
//
// This header is part of <varion/varion.h> so that a conversion between
// numbers compiles into the caller: SetType and the conversion operators look
// the cast up in a constant table, and where both type codes are known (a
// value just constructed, a constant target) the compiler folds the look-up
// to the few instructions of the cast. Nothing here is meant to be used
// directly.
//
// One rule serves all 121 (target, source) pairs; RangeCheckedCast is written
// once over the two types and the pairs are generated from it.
//  - integer targets from floating sources: x' = x +/- 0.5 (away from zero, in
//    the source's precision) is checked against the bounds and then truncated,
//    so VT_R8 2.5 gives 3 and -2.5 gives -3, while 127.0 into VT_I1 is refused
//    (127.5 lies above 127);
//  - bounds are compared exactly (VT_UI8 2^63 is above VT_I8's bound);
//  - floating targets check only finite sources (NaN and infinities pass);
//  - VT_BOOL targets take 1 for every x' other than 0 (NaN included) and never
//    fail;
//  - a NaN passes the check of an integer target and gives 0.
#pragma once

#include <varion/platform/automation.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <type_traits>
#include <utility>

// Marks the few inline functions of a conversion between numbers that must be
// inlined early, while the compiler can still see the type codes as constants
// and fold the table look-up into a direct, inlinable call of the one cast.
#if defined(_MSC_VER)
#define VARION_FOLD_INLINE __forceinline
#else
#define VARION_FOLD_INLINE inline __attribute__((always_inline))
#endif

namespace varion::detail {

/// The value field read as T (its first sizeof(T) bytes). Reads and writes go
/// through memcpy so that any member may be read after any other was written.
template <class T>
inline T Load(const VARIANT& v) noexcept {
    static_assert(std::is_trivially_copyable_v<T> && sizeof(T) <= 8);
    T x;
    std::memcpy(&x, &v.llVal, sizeof(T));
    return x;
}

/// Writes T into the first sizeof(T) bytes of the value field; the rest stays.
template <class T>
inline void Store(VARIANT& v, T x) noexcept {
    static_assert(std::is_trivially_copyable_v<T> && sizeof(T) <= 8);
    std::memcpy(&v.llVal, &x, sizeof(T));
}

/// The C++ type of each numeric type code as held in the value field.
template <VARTYPE VT> struct NumericType;
template <> struct NumericType<VT_I1> { using type = std::int8_t; };
template <> struct NumericType<VT_UI1> { using type = std::uint8_t; };
template <> struct NumericType<VT_I2> { using type = std::int16_t; };
template <> struct NumericType<VT_UI2> { using type = std::uint16_t; };
template <> struct NumericType<VT_I4> { using type = std::int32_t; };
template <> struct NumericType<VT_UI4> { using type = std::uint32_t; };
template <> struct NumericType<VT_I8> { using type = std::int64_t; };
template <> struct NumericType<VT_UI8> { using type = std::uint64_t; };
template <> struct NumericType<VT_R4> { using type = float; };
template <> struct NumericType<VT_R8> { using type = double; };
template <> struct NumericType<VT_BOOL> { using type = std::uint8_t; };  // 0 or 1
template <VARTYPE VT> using NumericT = typename NumericType<VT>::type;

/// The eleven numeric type codes, in the order of the cast table.
inline constexpr VARTYPE kNumericTypes[] = {VT_I1, VT_UI1, VT_I2, VT_UI2, VT_I4, VT_UI4,
                                            VT_I8, VT_UI8, VT_R4, VT_R8, VT_BOOL};
inline constexpr int kNumericCount = 11;

/// Position of a numeric type code in kNumericTypes, or -1.
constexpr int NumericIndex(VARTYPE vt) noexcept {
    for (int i = 0; i < kNumericCount; ++i)
        if (kNumericTypes[i] == vt) return i;
    return -1;
}

/// Whether floating value `v` lies above the integer bound `upper`, compared
/// exactly: a bound the floating type cannot hold (2^63 - 1 in a double) is
/// 2^k - 1, so "above it" means "at least 2^k", which the type holds.
template <class F, class I>
constexpr bool AboveIntegerBound(F v, I upper) noexcept {
    constexpr int digits = std::numeric_limits<F>::digits;
    const auto u = static_cast<unsigned long long>(upper);
    if (digits >= 64 || u <= (1ull << digits)) return v > static_cast<F>(upper);
    return v >= static_cast<F>(upper);  // rounds to 2^k
}

/// The result codes of a cast, as RC_OK, RC_ABOVE_MAX and RC_BELOW_MIN.
inline constexpr long kCastOk = 0;
inline constexpr long kCastAboveMax = -3;
inline constexpr long kCastBelowMin = -4;

/// The range check of target T for a (possibly adjusted) source value v:
/// kCastBelowMin, kCastAboveMax or kCastOk. Lower bound first; NaN passes.
template <VARTYPE T, class V>
inline long CheckRange(V v) noexcept {
    using TT = NumericT<T>;
    if constexpr (std::is_integral_v<V>) {
        if constexpr (std::is_floating_point_v<TT>) {
            return kCastOk;  // every integer fits a single or a double
        } else {
            constexpr long long lo = (T == VT_BOOL) ? 0 : static_cast<long long>(std::numeric_limits<TT>::min());
            constexpr unsigned long long hi =
                (T == VT_BOOL) ? 1 : static_cast<unsigned long long>(std::numeric_limits<TT>::max());
            if (std::cmp_less(v, lo)) return kCastBelowMin;
            if (std::cmp_greater(v, hi)) return kCastAboveMax;
            return kCastOk;
        }
    } else {
        if (std::isnan(v)) return kCastOk;
        if constexpr (std::is_floating_point_v<TT>) {
            if constexpr (sizeof(TT) >= sizeof(V)) {
                return kCastOk;  // a single or double always fits a double (or itself)
            } else {
                constexpr V hi = static_cast<V>(std::numeric_limits<TT>::max());
                if (v < -hi) return kCastBelowMin;
                if (v > hi) return kCastAboveMax;
                return kCastOk;
            }
        } else {
            constexpr long long lo = (T == VT_BOOL) ? 0 : static_cast<long long>(std::numeric_limits<TT>::min());
            constexpr unsigned long long hi =
                (T == VT_BOOL) ? 1 : static_cast<unsigned long long>(std::numeric_limits<TT>::max());
            if (v < static_cast<V>(lo)) return kCastBelowMin;
            if (AboveIntegerBound(v, hi)) return kCastAboveMax;
            return kCastOk;
        }
    }
}

/// Converts source value x of type code S into target type code T. Answers
/// the range check's code; `out` is set when the code is 0, and always for a
/// VT_BOOL target (whose code callers ignore).
template <VARTYPE T, VARTYPE S>
inline long RangeCheckedCast(NumericT<S> x, NumericT<T>& out) noexcept {
    using ST = NumericT<S>;
    using TT = NumericT<T>;
    if constexpr (std::is_floating_point_v<TT>) {
        long code = 0;
        if constexpr (std::is_floating_point_v<ST>) {
            if (std::isfinite(x)) code = CheckRange<T>(x);
        }
        if (code == 0) out = static_cast<TT>(x);
        return code;
    } else {
        ST adjusted = x;
        if constexpr (std::is_floating_point_v<ST>) {
            if constexpr (T == VT_BOOL) {
                if (x > 0)
                    adjusted = x + ST(0.5);
                else if (x < 0)
                    adjusted = x - ST(0.5);
            } else {
                // The same without a branch on zero: a zero of either sign
                // becomes 0.5, which checks and truncates as zero does.
                adjusted = x + (x < 0 ? ST(-0.5) : ST(0.5));
            }
        }
        const long code = CheckRange<T>(adjusted);
        if constexpr (T == VT_BOOL) {
            out = adjusted != 0 ? 1 : 0;  // NaN != 0
            return code;
        } else {
            if (code != 0) return code;
            if constexpr (std::is_floating_point_v<ST>)
                out = std::isnan(adjusted) ? TT(0) : static_cast<TT>(adjusted);  // truncates toward zero
            else
                out = static_cast<TT>(x);
            return 0;
        }
    }
}

/// A numeric change of type in place: on success (and always for a VT_BOOL
/// target) the target's bytes and type code are written and 0 returned;
/// otherwise the range check's code, with `v` untouched.
using NumericCastFn = long (*)(VARIANT& v) noexcept;

template <VARTYPE T, VARTYPE S>
inline long CastInPlace(VARIANT& v) noexcept {
    NumericT<T> out{};
    const long code = RangeCheckedCast<T, S>(Load<NumericT<S>>(v), out);
    if (code != 0 && T != VT_BOOL) return code;
    Store(v, out);
    v.vt = T;
    return 0;
}

/// The same type: nothing changes.
inline long KeepInPlace(VARIANT&) noexcept { return 0; }

/// The numeric type codes all lie below 22: a table by code has no gaps to
/// test for beyond this bound.
inline constexpr VARTYPE kNumericCodeLimit = 22;

// The table is a plain array so that a look-up with constant codes folds
// before the inliner runs.
struct NumericCastTable {
    NumericCastFn cast[kNumericCodeLimit][kNumericCodeLimit];
};

template <VARTYPE T, std::size_t... S>
constexpr void FillCastRow(NumericCastFn (&row)[kNumericCodeLimit], std::index_sequence<S...>) noexcept {
    ((row[kNumericTypes[S]] = T == kNumericTypes[S] ? &KeepInPlace : &CastInPlace<T, kNumericTypes[S]>), ...);
}

template <std::size_t... T>
constexpr NumericCastTable MakeCastTable(std::index_sequence<T...>) noexcept {
    NumericCastTable table{};
    (FillCastRow<kNumericTypes[T]>(table.cast[kNumericTypes[T]], std::make_index_sequence<kNumericCount>{}), ...);
    return table;
}

/// kNumericCasts.cast[target][source] by type code: the 121 numeric pairs
/// from the one rule, null where either code is not numeric.
inline constexpr NumericCastTable kNumericCasts = MakeCastTable(std::make_index_sequence<kNumericCount>{});

/// The cast from numeric type code `source` to numeric type code `target`;
/// null when either code is not numeric.
VARION_FOLD_INLINE constexpr NumericCastFn NumericCast(VARTYPE target, VARTYPE source) noexcept {
    if (target >= kNumericCodeLimit || source >= kNumericCodeLimit) return nullptr;
    return kNumericCasts.cast[target][source];
}

constexpr bool CastTableHoldsTheNumericPairs() noexcept {
    for (VARTYPE t = 0; t < kNumericCodeLimit; ++t)
        for (VARTYPE s = 0; s < kNumericCodeLimit; ++s)
            if ((NumericCast(t, s) != nullptr) != (NumericIndex(t) >= 0 && NumericIndex(s) >= 0)) return false;
    return true;
}
static_assert(CastTableHoldsTheNumericPairs(), "a cast for every numeric pair and for nothing else");

}  // namespace varion::detail
