// The allocation-failure hook on Windows: a malloc spy on the COM task
// allocator, through which the system's BSTR and SAFEARRAY services take
// their blocks. The spy is registered when the hook is first armed and stays
// registered; while no failure is armed it passes every call through.
#include "platform/alloc.h"

#include <windows.h>
#include <objidl.h>
#include <oleauto.h>

// Switches the process's BSTR cache off. The import library names it without
// an argument-size decoration; with no arguments the calling conventions agree.
extern "C" __declspec(dllimport) void SetOaNoCache(void);

namespace varion::detail {
namespace {

thread_local long t_failCountdown = 0;

class FailingSpy final : public IMallocSpy {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** object) override {
        if (object == nullptr) return E_POINTER;
        if (IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, IID_IMallocSpy)) {
            *object = static_cast<IMallocSpy*>(this);
            return S_OK;
        }
        *object = nullptr;
        return E_NOINTERFACE;
    }
    // The spy is a static object: references are not counted.
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }

    // Returning 0 for a non-empty request makes the allocation fail.
    SIZE_T STDMETHODCALLTYPE PreAlloc(SIZE_T request) override {
        if (request != 0 && t_failCountdown > 0 && --t_failCountdown == 0) return 0;
        return request;
    }
    void* STDMETHODCALLTYPE PostAlloc(void* actual) override { return actual; }
    void* STDMETHODCALLTYPE PreFree(void* request, BOOL) override { return request; }
    void STDMETHODCALLTYPE PostFree(BOOL) override {}
    // Reallocations pass: a size of 0 here would free the block instead.
    SIZE_T STDMETHODCALLTYPE PreRealloc(void* request, SIZE_T size, void** newRequest, BOOL) override {
        *newRequest = request;
        return size;
    }
    void* STDMETHODCALLTYPE PostRealloc(void* actual, BOOL) override { return actual; }
    void* STDMETHODCALLTYPE PreGetSize(void* request, BOOL) override { return request; }
    SIZE_T STDMETHODCALLTYPE PostGetSize(SIZE_T actual, BOOL) override { return actual; }
    void* STDMETHODCALLTYPE PreDidAlloc(void* request, BOOL) override { return request; }
    int STDMETHODCALLTYPE PostDidAlloc(void*, BOOL, int actual) override { return actual; }
    void STDMETHODCALLTYPE PreHeapMinimize() override {}
    void STDMETHODCALLTYPE PostHeapMinimize() override {}
};

FailingSpy g_spy;

bool EnsureSpy() noexcept {
    // Thread-safe once: the first caller registers, later callers see the result.
    static const bool registered = [] {
        SetOaNoCache();  // every string then comes from the task allocator
        if (FAILED(CoRegisterMallocSpy(&g_spy))) return false;
        // One block through the spy first: Wine's allocator reads its table of
        // spied blocks, which the first spied allocation creates, when it is
        // asked a block's size.
        CoTaskMemFree(CoTaskMemAlloc(1));
        return true;
    }();
    return registered;
}

}  // namespace

void FailAllocationAfter(long count) noexcept {
    if (count > 0 && !EnsureSpy()) return;
    t_failCountdown = count > 0 ? count : 0;
}

}  // namespace varion::detail
