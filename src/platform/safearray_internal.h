// What the array and variant stand-ins share about element types.
#pragma once

#include <varion/platform/automation.h>

#include <cstddef>

namespace varion::detail {

/// How an element is copied and released.
enum class ElementHandling { Raw, String, Variant, Interface };

/// Size in bytes of one element of type `vt`, or 0 when an array cannot hold it
/// (VT_EMPTY, VT_NULL, VT_DECIMAL, VT_RECORD, varion's own codes, unknown codes).
std::size_t ArrayElementSize(VARTYPE vt) noexcept;
ElementHandling ArrayElementHandling(VARTYPE vt) noexcept;

}  // namespace varion::detail
