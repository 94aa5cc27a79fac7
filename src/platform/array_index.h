// How the platform's element access reads an index vector.
//
// The stand-ins keep the model the library is written to: an index vector
// names the index along bound A (rgsabound[0], the dimension that varies
// fastest in the element block and that SafeArrayRedim resizes) first. The
// Windows services name the leftmost dimension of the SafeArrayCreate bound
// list first, which of two dimensions is bound B. The element accessors build
// their index vectors here, so element (i, j) is the same element on both.
#pragma once

#include <varion/platform/automation.h>

namespace varion::detail {

#if defined(_WIN32)
inline constexpr bool kIndexAlongBoundAFirst = false;
#else
inline constexpr bool kIndexAlongBoundAFirst = true;
#endif

/// The index vector of element (i along bound A, j along bound B) of an array
/// of one or two dimensions.
inline void MakeIndexVector(unsigned dims, LONG i, LONG j, LONG vector[2]) noexcept {
    const bool swap = dims == 2 && !kIndexAlongBoundAFirst;
    vector[0] = swap ? j : i;
    vector[1] = swap ? i : j;
}

}  // namespace varion::detail
