// Range-checked conversions between the eleven numeric types.
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

#include <varion/varion.h>

#include <cfloat>
#include <cmath>
#include <cstdint>
#include <limits>
#include <type_traits>
#include <utility>

namespace varion::detail {

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

/// The range check of target T for a (possibly adjusted) source value v:
/// RC_BELOW_MIN, RC_ABOVE_MAX or RC_OK. Lower bound first; NaN passes.
template <VARTYPE T, class V>
inline long CheckRange(V v) noexcept {
    using TT = NumericT<T>;
    if constexpr (std::is_integral_v<V>) {
        if constexpr (std::is_floating_point_v<TT>) {
            return RC_OK;  // every integer fits a single or a double
        } else {
            constexpr long long lo = (T == VT_BOOL) ? 0 : static_cast<long long>(std::numeric_limits<TT>::min());
            constexpr unsigned long long hi =
                (T == VT_BOOL) ? 1 : static_cast<unsigned long long>(std::numeric_limits<TT>::max());
            if (std::cmp_less(v, lo)) return RC_BELOW_MIN;
            if (std::cmp_greater(v, hi)) return RC_ABOVE_MAX;
            return RC_OK;
        }
    } else {
        if (std::isnan(v)) return RC_OK;
        if constexpr (std::is_floating_point_v<TT>) {
            if constexpr (sizeof(TT) >= sizeof(V)) {
                return RC_OK;  // a single or double always fits a double (or itself)
            } else {
                constexpr V hi = static_cast<V>(std::numeric_limits<TT>::max());
                if (v < -hi) return RC_BELOW_MIN;
                if (v > hi) return RC_ABOVE_MAX;
                return RC_OK;
            }
        } else {
            constexpr long long lo = (T == VT_BOOL) ? 0 : static_cast<long long>(std::numeric_limits<TT>::min());
            constexpr unsigned long long hi =
                (T == VT_BOOL) ? 1 : static_cast<unsigned long long>(std::numeric_limits<TT>::max());
            if (v < static_cast<V>(lo)) return RC_BELOW_MIN;
            if (AboveIntegerBound(v, hi)) return RC_ABOVE_MAX;
            return RC_OK;
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
            if (x > 0)
                adjusted = x + ST(0.5);
            else if (x < 0)
                adjusted = x - ST(0.5);
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

/// Converts the numeric value in `v` to numeric type `target` in place, as
/// ChangeNumericToNumeric does: on success (or for a VT_BOOL target) the
/// target's bytes and type code are written and 0 returned; otherwise the
/// code (-3, -4) and `v` untouched. -2 when either type is not numeric.
long ConvertNumeric(VARIANT& v, VARTYPE target) noexcept;

}  // namespace varion::detail
