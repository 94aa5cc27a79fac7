// A count of the heap allocations each benchmark makes per iteration,
// reported as allocs_per_iter through Google Benchmark's memory manager. The
// count covers operator new, which varion's strings and
// arrays, the standard library and Poco allocate through; Qt allocates its
// strings with malloc, which it does not see.
#include "contenders.h"

#include <cstdint>
#include <cstdlib>
#include <new>

namespace {

// The benchmarks run on one thread; the memory manager switches counting on
// only around its own measuring run, so the timed runs pay one test of a flag.
bool g_counting = false;
std::int64_t g_allocations = 0;
std::int64_t g_bytes = 0;

void* Allocate(std::size_t size) noexcept {
    if (g_counting) {
        ++g_allocations;
        g_bytes += static_cast<std::int64_t>(size);
    }
    return std::malloc(size == 0 ? 1 : size);
}

class CountingMemoryManager : public benchmark::MemoryManager {
public:
    void Start() override {
        g_allocations = 0;
        g_bytes = 0;
        g_counting = true;
    }
    void Stop(Result& result) override {
        g_counting = false;
        result.num_allocs = g_allocations;
        result.total_allocated_bytes = g_bytes;
        result.max_bytes_used = 0;
        result.net_heap_growth = 0;
    }
    // Google Benchmark 1.7 still declares the older form as the one to define.
    void Stop(Result* result) override { Stop(*result); }
};

CountingMemoryManager g_manager;
[[maybe_unused]] const bool g_registered = [] {
    benchmark::RegisterMemoryManager(&g_manager);
    return true;
}();

}  // namespace

void* operator new(std::size_t size) {
    if (void* p = Allocate(size)) return p;
    throw std::bad_alloc();
}
void* operator new[](std::size_t size) { return ::operator new(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }
void operator delete(void* p) noexcept { std::free(p); }
void operator delete[](void* p) noexcept { std::free(p); }
void operator delete(void* p, std::size_t) noexcept { std::free(p); }
void operator delete[](void* p, std::size_t) noexcept { std::free(p); }
void operator delete(void* p, const std::nothrow_t&) noexcept { std::free(p); }
void operator delete[](void* p, const std::nothrow_t&) noexcept { std::free(p); }
