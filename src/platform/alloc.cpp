#include "platform/alloc.h"

#include <new>

namespace varion::detail {
namespace {
thread_local long t_failCountdown = 0;
}

void* PlatformAlloc(std::size_t size) noexcept {
    if (size > kMaxBlockSize) return nullptr;
    if (t_failCountdown > 0 && --t_failCountdown == 0) return nullptr;
    return ::operator new(size == 0 ? 1 : size, std::nothrow);
}

void PlatformFree(void* block) noexcept { ::operator delete(block); }

void FailAllocationAfter(long count) noexcept { t_failCountdown = count > 0 ? count : 0; }

}  // namespace varion::detail
