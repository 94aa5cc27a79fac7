// A global operator new that counts every allocation of the program, for
// checks that code allocates nothing. Include it in exactly one source file
// of a program; AllocationsSoFar() reads the count.
#pragma once

#include <atomic>
#include <cstdlib>
#include <new>

namespace varion::test {
inline std::atomic<long> g_allocationsSoFar{0};
inline long AllocationsSoFar() { return g_allocationsSoFar.load(std::memory_order_relaxed); }
}  // namespace varion::test

void* operator new(std::size_t size) {
    varion::test::g_allocationsSoFar.fetch_add(1, std::memory_order_relaxed);
    if (void* p = std::malloc(size == 0 ? 1 : size)) return p;
    throw std::bad_alloc();
}
void* operator new[](std::size_t size) { return ::operator new(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    varion::test::g_allocationsSoFar.fetch_add(1, std::memory_order_relaxed);
    return std::malloc(size == 0 ? 1 : size);
}
void* operator new[](std::size_t size, const std::nothrow_t& tag) noexcept { return ::operator new(size, tag); }
void operator delete(void* p) noexcept { std::free(p); }
void operator delete[](void* p) noexcept { std::free(p); }
void operator delete(void* p, std::size_t) noexcept { std::free(p); }
void operator delete[](void* p, std::size_t) noexcept { std::free(p); }
void operator delete(void* p, const std::nothrow_t&) noexcept { std::free(p); }
void operator delete[](void* p, const std::nothrow_t&) noexcept { std::free(p); }
