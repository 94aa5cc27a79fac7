// Helpers for the conversion tests: values built byte by byte and read back
// without going through the conversions under test.
#pragma once

#include <varion/varion.h>

#include "support/test_support.h"
#include "value/access.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <utility>

namespace varion::test {

/// A value of type `vt` whose value field holds `x` (a date or duration
/// built from its day count, an integer of any width, ...).
template <class T>
CVarion Raw(VARTYPE vt, T x) {
    CVarion v;
    varion::detail::Store(varion::detail::Access::Var(v), x);
    varion::detail::Access::Var(v).vt = vt;
    return v;
}

/// A resizable byte array holding `bytes`.
inline CVarion ByteArray(std::string_view bytes) {
    CVarion a(static_cast<unsigned short>(VT_UI1), 0L, 0L);
    for (std::size_t i = 0; i < bytes.size(); ++i) a.SetElementValue(&bytes[i], static_cast<long>(i));
    return a;
}

/// The bytes of a byte array, read from its element block.
inline std::string ArrayBytes(const CVarion& v) {
    const VARIANT& var = varion::detail::Access::Var(v);
    if (var.vt != varion::detail::kByteArray || var.parray == nullptr) return "<not a byte array>";
    const auto* data = static_cast<const char*>(var.parray->pvData);
    return std::string(data, data == nullptr ? 0 : var.parray->rgsabound[0].cElements);
}

/// The string a VT_BSTR value holds, as UTF-8.
inline std::string StringOf(const CVarion& v) {
    const VARIANT& var = varion::detail::Access::Var(v);
    return var.vt == VT_BSTR ? Utf8(var.bstrVal) : "<not a string>";
}

/// The value field read as T.
template <class T>
T FieldOf(const CVarion& v) {
    return varion::detail::Load<T>(varion::detail::Access::Var(v));
}

/// Changes `v` to `target` expecting `code`; a failure must leave the value
/// byte for byte as it was.
inline void ExpectChange(CVarion& v, VARTYPE target, long code, const std::string& what) {
    const auto before = Bytes(v);
    EXPECT_EQ(v.SetType(target), code) << what;
    if (code != RC_OK) { EXPECT_EQ(Bytes(v), before) << what; }
}

/// Calls f.template operator()<VT>() for every numeric type code VT.
template <class F>
void ForEachNumericType(F&& f) {
    [&]<VARTYPE... VT>(std::integer_sequence<VARTYPE, VT...>) { (f.template operator()<VT>(), ...); }(
        std::integer_sequence<VARTYPE, VT_I1, VT_UI1, VT_I2, VT_UI2, VT_I4, VT_UI4, VT_I8, VT_UI8, VT_R4, VT_R8,
                              VT_BOOL>{});
}

static_assert(std::numeric_limits<long double>::digits >= 64, "exact readings need 64-bit mantissas");

/// The number a numeric or date-family value holds, exactly (every 64-bit
/// integer, single and double fits a long double); NaN for other types.
inline long double NumberOf(const CVarion& v) {
    if (CVarion::IsAnyDateType(v.GetType())) return FieldOf<double>(v);
    long double x = std::numeric_limits<long double>::quiet_NaN();
    ForEachNumericType([&]<VARTYPE VT>() {
        if (v.GetType() == VT) x = static_cast<long double>(FieldOf<varion::detail::NumericT<VT>>(v));
    });
    return x;
}

}  // namespace varion::test
