// Helpers for the conversion tests: values built byte by byte and described
// without going through the conversions under test.
#pragma once

#include <varion/varion.h>

#include "support/test_support.h"
#include "value/access.h"

#include <cstdint>
#include <string>

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
inline CVarion ByteArray(std::initializer_list<std::uint8_t> bytes) {
    CVarion a(static_cast<unsigned short>(VT_UI1), 0L, 0L);
    long i = 0;
    for (std::uint8_t b : bytes) a.SetElementValue(&b, i++);
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

}  // namespace varion::test
