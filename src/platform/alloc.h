// Heap blocks of the platform stand-ins (strings and arrays).
//
// Every block goes through these two functions, so that tests can make the
// n-th allocation fail and check that nothing is lost or left half-changed.
#pragma once

#include <cstddef>

namespace varion::detail {

/// A block of `size` bytes, or null when it cannot be had. Never throws.
void* PlatformAlloc(std::size_t size) noexcept;
/// Frees a block of PlatformAlloc; null is ignored.
void PlatformFree(void* block) noexcept;

/// Test hook: the `count`-th following PlatformAlloc on this thread fails
/// (1 = the next one); 0 switches the failure off.
void FailAllocationAfter(long count) noexcept;

/// Largest block the stand-ins ask for: a string or an array element block
/// above this size is refused, as the 32-bit platform would refuse it.
constexpr std::size_t kMaxBlockSize = 0x7FFFFFF0u;

}  // namespace varion::detail
