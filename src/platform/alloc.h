// Heap blocks of the Automation strings and arrays, and the test hook that
// makes them fail.
//
// The stand-ins take every block through PlatformAlloc and PlatformFree. On
// Windows the system's services allocate through the COM task allocator, and
// the hook reaches them there, so the same tests run on both platforms.
#pragma once

#include <cstddef>

namespace varion::detail {

/// A block of `size` bytes, or null when it cannot be had. Never throws.
/// (Stand-ins only.)
void* PlatformAlloc(std::size_t size) noexcept;
/// Frees a block of PlatformAlloc; null is ignored. (Stand-ins only.)
void PlatformFree(void* block) noexcept;

/// Test hook: the `count`-th following allocation of a string or array
/// block on this thread fails (1 = the next one); 0 switches the failure
/// off. On Windows it counts the task allocator's allocations, which the
/// system's string cache is switched off for once the hook is first armed.
void FailAllocationAfter(long count) noexcept;

/// Largest block the stand-ins ask for: a string or an array element block
/// above this size is refused, as the 32-bit platform would refuse it.
constexpr std::size_t kMaxBlockSize = 0x7FFFFFF0u;

}  // namespace varion::detail
