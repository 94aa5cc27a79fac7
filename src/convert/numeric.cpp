#include "convert/numeric.h"

#include "value/access.h"

#include <array>

namespace varion::detail {
namespace {

using CastFn = long (*)(VARIANT&) noexcept;

template <VARTYPE T, VARTYPE S>
long CastInPlace(VARIANT& v) noexcept {
    NumericT<T> out{};
    const long code = RangeCheckedCast<T, S>(Load<NumericT<S>>(v), out);
    if (code != 0 && T != VT_BOOL) return code;
    Store(v, out);
    v.vt = T;
    return 0;
}

template <VARTYPE T, std::size_t... S>
constexpr std::array<CastFn, kNumericCount> TableRow(std::index_sequence<S...>) {
    return {&CastInPlace<T, kNumericTypes[S]>...};
}

template <std::size_t... T>
constexpr std::array<std::array<CastFn, kNumericCount>, kNumericCount> MakeTable(std::index_sequence<T...>) {
    return {TableRow<kNumericTypes[T]>(std::make_index_sequence<kNumericCount>{})...};
}

// kCasts[target][source]: all 121 pairs from the one rule.
constexpr auto kCasts = MakeTable(std::make_index_sequence<kNumericCount>{});

}  // namespace

long ConvertNumeric(VARIANT& v, VARTYPE target) noexcept {
    const int t = NumericIndex(target);
    const int s = NumericIndex(v.vt);
    if (t < 0 || s < 0) return RC_NOT_CONVERTIBLE;
    return kCasts[static_cast<std::size_t>(t)][static_cast<std::size_t>(s)](v);
}

}  // namespace varion::detail

long CVarion::ChangeNumericToNumeric(VARTYPE type) noexcept { return varion::detail::ConvertNumeric(m_v, type); }
