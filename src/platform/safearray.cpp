// SAFEARRAY stand-in. A descriptor is allocated with a 16-byte prefix that
// records its element type, so that SafeArrayGetVartype, copying and releasing
// never depend on the flag word (which callers may overwrite). The element
// block is a separate allocation, zero-filled.
#include <varion/platform/automation.h>

#include "platform/alloc.h"
#include "platform/safearray_internal.h"

#include <cstring>
#include <limits>

namespace varion::detail {

std::size_t ArrayElementSize(VARTYPE vt) noexcept {
    switch (vt) {
    case VT_I1: case VT_UI1: return 1;
    case VT_I2: case VT_UI2: case VT_BOOL: return 2;
    case VT_I4: case VT_UI4: case VT_R4: case VT_ERROR: case VT_INT: case VT_UINT: return 4;
    case VT_I8: case VT_UI8: case VT_R8: case VT_CY: case VT_DATE: return 8;
    case VT_DECIMAL: return 16;
    case VT_BSTR: return sizeof(BSTR);
    case VT_UNKNOWN: case VT_DISPATCH: return sizeof(IUnknown*);
    case VT_VARIANT: return sizeof(VARIANT);
    default: return 0;
    }
}

ElementHandling ArrayElementHandling(VARTYPE vt) noexcept {
    switch (vt) {
    case VT_BSTR: return ElementHandling::String;
    case VT_VARIANT: return ElementHandling::Variant;
    case VT_UNKNOWN: case VT_DISPATCH: return ElementHandling::Interface;
    default: return ElementHandling::Raw;
    }
}

}  // namespace varion::detail

namespace {

using varion::detail::ElementHandling;

constexpr std::size_t kPrefix = 16;
constexpr UINT kMaxDims = 64;

struct Prefix {
    VARTYPE vt;
};

std::size_t DescriptorSize(UINT dims) {
    return offsetof(SAFEARRAY, rgsabound) + dims * sizeof(SAFEARRAYBOUND);
}

Prefix* PrefixOf(SAFEARRAY* psa) {
    return reinterpret_cast<Prefix*>(reinterpret_cast<unsigned char*>(psa) - kPrefix);
}

VARTYPE ElementType(SAFEARRAY* psa) { return PrefixOf(psa)->vt; }

// Element count of all dimensions, or max() when it overflows the block limit.
std::size_t TotalElements(const SAFEARRAY* psa) {
    std::size_t total = 1;
    for (USHORT d = 0; d < psa->cDims; ++d) {
        const std::size_t n = psa->rgsabound[d].cElements;
        if (n != 0 && total > varion::detail::kMaxBlockSize / n) return std::numeric_limits<std::size_t>::max();
        total *= n;
    }
    return total;
}

bool BlockSize(const SAFEARRAY* psa, std::size_t* bytes) {
    const std::size_t total = TotalElements(psa);
    if (total == std::numeric_limits<std::size_t>::max()) return false;
    if (psa->cbElements != 0 && total > varion::detail::kMaxBlockSize / psa->cbElements) return false;
    *bytes = total * psa->cbElements;
    return true;
}

// A descriptor for `dims` dimensions of `vt`, without an element block.
SAFEARRAY* AllocateDescriptor(VARTYPE vt, UINT dims) {
    const std::size_t elemSize = varion::detail::ArrayElementSize(vt);
    if (elemSize == 0 || dims == 0 || dims > kMaxDims) return nullptr;
    auto* block = static_cast<unsigned char*>(varion::detail::PlatformAlloc(kPrefix + DescriptorSize(dims)));
    if (block == nullptr) return nullptr;
    std::memset(block, 0, kPrefix + DescriptorSize(dims));
    reinterpret_cast<Prefix*>(block)->vt = vt;
    auto* psa = reinterpret_cast<SAFEARRAY*>(block + kPrefix);
    psa->cDims = static_cast<USHORT>(dims);
    psa->cbElements = static_cast<ULONG>(elemSize);
    USHORT features = FADF_HAVEVARTYPE;
    switch (vt) {
    case VT_BSTR: features |= FADF_BSTR; break;
    case VT_VARIANT: features |= FADF_VARIANT; break;
    case VT_UNKNOWN: features |= FADF_UNKNOWN; break;
    case VT_DISPATCH: features |= FADF_DISPATCH; break;
    default: break;
    }
    psa->fFeatures = features;
    return psa;
}

void FreeDescriptor(SAFEARRAY* psa) { varion::detail::PlatformFree(PrefixOf(psa)); }

// Allocates the zero-filled element block for the bounds already set.
bool AllocateData(SAFEARRAY* psa) {
    std::size_t bytes = 0;
    if (!BlockSize(psa, &bytes)) return false;
    void* data = varion::detail::PlatformAlloc(bytes);
    if (data == nullptr) return false;
    std::memset(data, 0, bytes);
    psa->pvData = data;
    return true;
}

// Releases what `count` elements at `data` own (strings, variants, interfaces).
void ReleaseElements(VARTYPE vt, ULONG elemSize, unsigned char* data, std::size_t count) {
    switch (varion::detail::ArrayElementHandling(vt)) {
    case ElementHandling::Raw:
        return;
    case ElementHandling::String:
        for (std::size_t k = 0; k < count; ++k) {
            BSTR s;
            std::memcpy(&s, data + k * elemSize, sizeof(s));
            SysFreeString(s);
        }
        return;
    case ElementHandling::Variant:
        for (std::size_t k = 0; k < count; ++k) VariantClear(reinterpret_cast<VARIANT*>(data + k * elemSize));
        return;
    case ElementHandling::Interface:
        for (std::size_t k = 0; k < count; ++k) {
            IUnknown* p;
            std::memcpy(&p, data + k * elemSize, sizeof(p));
            if (p != nullptr) p->Release();
        }
        return;
    }
}

// Copies one element from `src` into the zero-filled slot `dst`.
HRESULT CopyElement(VARTYPE vt, ULONG elemSize, unsigned char* dst, const unsigned char* src) {
    switch (varion::detail::ArrayElementHandling(vt)) {
    case ElementHandling::Raw:
        std::memcpy(dst, src, elemSize);
        return S_OK;
    case ElementHandling::String: {
        BSTR s;
        std::memcpy(&s, src, sizeof(s));
        BSTR copy = nullptr;
        if (s != nullptr) {
            copy = SysAllocStringByteLen(reinterpret_cast<const char*>(s), SysStringByteLen(s));
            if (copy == nullptr) return E_OUTOFMEMORY;
        }
        std::memcpy(dst, &copy, sizeof(copy));
        return S_OK;
    }
    case ElementHandling::Variant:
        return VariantCopy(reinterpret_cast<VARIANT*>(dst), reinterpret_cast<const VARIANT*>(src));
    case ElementHandling::Interface: {
        IUnknown* p;
        std::memcpy(&p, src, sizeof(p));
        if (p != nullptr) p->AddRef();
        std::memcpy(dst, &p, sizeof(p));
        return S_OK;
    }
    }
    return E_UNEXPECTED;
}

// Byte offset of the element at `indices` (least significant first: the index
// along rgsabound[0] first), or DISP_E_BADINDEX. rgsabound[0] varies fastest
// in the element block.
HRESULT ElementOffset(const SAFEARRAY* psa, const LONG* indices, std::size_t* offset) {
    std::size_t position = 0;
    for (int d = psa->cDims - 1; d >= 0; --d) {
        const SAFEARRAYBOUND& b = psa->rgsabound[d];
        const long long index = static_cast<long long>(indices[d]) - b.lLbound;
        if (index < 0 || index >= static_cast<long long>(b.cElements)) return DISP_E_BADINDEX;
        position = position * b.cElements + static_cast<std::size_t>(index);
    }
    *offset = position * psa->cbElements;
    return S_OK;
}

}  // namespace

extern "C" {

SAFEARRAY* SafeArrayCreate(VARTYPE vt, UINT cDims, SAFEARRAYBOUND* rgsabound) {
    if (rgsabound == nullptr) return nullptr;
    SAFEARRAY* psa = AllocateDescriptor(vt, cDims);
    if (psa == nullptr) return nullptr;
    for (UINT d = 0; d < cDims; ++d) psa->rgsabound[d] = rgsabound[cDims - 1 - d];
    if (!AllocateData(psa)) {
        FreeDescriptor(psa);
        return nullptr;
    }
    return psa;
}

SAFEARRAY* SafeArrayCreateVector(VARTYPE vt, LONG lLbound, ULONG cElements) {
    SAFEARRAYBOUND bound{cElements, lLbound};
    return SafeArrayCreate(vt, 1, &bound);
}

HRESULT SafeArrayDestroy(SAFEARRAY* psa) {
    if (psa == nullptr) return S_OK;
    if (psa->cLocks > 0) return DISP_E_ARRAYISLOCKED;
    if (psa->pvData != nullptr) {
        ReleaseElements(ElementType(psa), psa->cbElements, static_cast<unsigned char*>(psa->pvData), TotalElements(psa));
        varion::detail::PlatformFree(psa->pvData);
    }
    FreeDescriptor(psa);
    return S_OK;
}

HRESULT SafeArrayCopy(SAFEARRAY* psa, SAFEARRAY** ppsaOut) {
    if (ppsaOut == nullptr) return E_INVALIDARG;
    *ppsaOut = nullptr;
    if (psa == nullptr) return S_OK;
    const VARTYPE vt = ElementType(psa);
    SAFEARRAY* copy = AllocateDescriptor(vt, psa->cDims);
    if (copy == nullptr) return E_OUTOFMEMORY;
    for (USHORT d = 0; d < psa->cDims; ++d) copy->rgsabound[d] = psa->rgsabound[d];
    copy->fFeatures = static_cast<USHORT>((psa->fFeatures & ~(FADF_AUTO | FADF_STATIC | FADF_EMBEDDED)) |
                                          FADF_HAVEVARTYPE);
    if (!AllocateData(copy)) {
        FreeDescriptor(copy);
        return E_OUTOFMEMORY;
    }
    const std::size_t count = TotalElements(psa);
    auto* dst = static_cast<unsigned char*>(copy->pvData);
    const auto* src = static_cast<const unsigned char*>(psa->pvData);
    for (std::size_t k = 0; k < count && src != nullptr; ++k) {
        const HRESULT hr = CopyElement(vt, psa->cbElements, dst + k * psa->cbElements, src + k * psa->cbElements);
        if (FAILED(hr)) {
            SafeArrayDestroy(copy);
            return hr;
        }
    }
    *ppsaOut = copy;
    return S_OK;
}

HRESULT SafeArrayRedim(SAFEARRAY* psa, SAFEARRAYBOUND* psaboundNew) {
    if (psa == nullptr || psaboundNew == nullptr) return E_INVALIDARG;
    if (psa->cLocks > 0 || (psa->fFeatures & FADF_FIXEDSIZE)) return DISP_E_ARRAYISLOCKED;
    // rgsabound[0] varies fastest: the block is `rows` runs of its count, and
    // every run keeps or drops elements at its end.
    const std::size_t oldCount = psa->rgsabound[0].cElements;
    const std::size_t newCount = psaboundNew->cElements;
    std::size_t rows = 1;
    for (USHORT d = 1; d < psa->cDims; ++d) rows *= psa->rgsabound[d].cElements;
    SAFEARRAYBOUND oldBound = psa->rgsabound[0];
    psa->rgsabound[0] = *psaboundNew;
    void* oldData = psa->pvData;
    if (!AllocateData(psa)) {
        psa->rgsabound[0] = oldBound;
        psa->pvData = oldData;
        return E_OUTOFMEMORY;
    }
    const ULONG size = psa->cbElements;
    const std::size_t kept = oldCount < newCount ? oldCount : newCount;
    auto* dst = static_cast<unsigned char*>(psa->pvData);
    auto* src = static_cast<unsigned char*>(oldData);
    if (src != nullptr) {
        for (std::size_t r = 0; r < rows; ++r) {
            // Ownership of the kept elements moves with their bytes.
            std::memcpy(dst + r * newCount * size, src + r * oldCount * size, kept * size);
            if (oldCount > kept)
                ReleaseElements(ElementType(psa), size, src + (r * oldCount + kept) * size, oldCount - kept);
        }
        varion::detail::PlatformFree(oldData);
    }
    return S_OK;
}

UINT SafeArrayGetDim(SAFEARRAY* psa) { return psa == nullptr ? 0 : psa->cDims; }

UINT SafeArrayGetElemsize(SAFEARRAY* psa) { return psa == nullptr ? 0 : psa->cbElements; }

HRESULT SafeArrayPtrOfIndex(SAFEARRAY* psa, LONG* rgIndices, void** ppvData) {
    if (psa == nullptr || rgIndices == nullptr || ppvData == nullptr || psa->pvData == nullptr) return E_INVALIDARG;
    std::size_t offset = 0;
    const HRESULT hr = ElementOffset(psa, rgIndices, &offset);
    if (FAILED(hr)) return hr;
    *ppvData = static_cast<unsigned char*>(psa->pvData) + offset;
    return S_OK;
}

HRESULT SafeArrayGetElement(SAFEARRAY* psa, LONG* rgIndices, void* pv) {
    if (pv == nullptr) return E_INVALIDARG;
    void* element = nullptr;
    const HRESULT hr = SafeArrayPtrOfIndex(psa, rgIndices, &element);
    if (FAILED(hr)) return hr;
    const VARTYPE vt = ElementType(psa);
    const auto* src = static_cast<const unsigned char*>(element);
    switch (varion::detail::ArrayElementHandling(vt)) {
    case ElementHandling::Variant:
        return VariantCopy(static_cast<VARIANT*>(pv), reinterpret_cast<const VARIANT*>(src));
    case ElementHandling::String: {
        // The destination receives a new string of its own.
        unsigned char slot[sizeof(BSTR)] = {};
        const HRESULT copied = CopyElement(vt, psa->cbElements, slot, src);
        if (SUCCEEDED(copied)) std::memcpy(pv, slot, sizeof(BSTR));
        return copied;
    }
    default:
        return CopyElement(vt, psa->cbElements, static_cast<unsigned char*>(pv), src);
    }
}

HRESULT SafeArrayPutElement(SAFEARRAY* psa, LONG* rgIndices, void* pv) {
    void* element = nullptr;
    const HRESULT hr = SafeArrayPtrOfIndex(psa, rgIndices, &element);
    if (FAILED(hr)) return hr;
    const VARTYPE vt = ElementType(psa);
    auto* dst = static_cast<unsigned char*>(element);
    switch (varion::detail::ArrayElementHandling(vt)) {
    case ElementHandling::Raw:
        if (pv == nullptr) return E_INVALIDARG;
        std::memcpy(dst, pv, psa->cbElements);
        return S_OK;
    case ElementHandling::Variant:
        if (pv == nullptr) return E_INVALIDARG;
        return VariantCopy(reinterpret_cast<VARIANT*>(dst), static_cast<const VARIANT*>(pv));
    case ElementHandling::String: {
        // pv is the string itself.
        BSTR copy = nullptr;
        if (pv != nullptr) {
            BSTR s = static_cast<BSTR>(pv);
            copy = SysAllocStringByteLen(reinterpret_cast<const char*>(s), SysStringByteLen(s));
            if (copy == nullptr) return E_OUTOFMEMORY;
        }
        ReleaseElements(vt, psa->cbElements, dst, 1);
        std::memcpy(dst, &copy, sizeof(copy));
        return S_OK;
    }
    case ElementHandling::Interface: {
        auto* p = static_cast<IUnknown*>(pv);
        if (p != nullptr) p->AddRef();
        ReleaseElements(vt, psa->cbElements, dst, 1);
        std::memcpy(dst, &p, sizeof(p));
        return S_OK;
    }
    }
    return E_UNEXPECTED;
}

HRESULT SafeArrayGetLBound(SAFEARRAY* psa, UINT nDim, LONG* plLbound) {
    if (psa == nullptr || plLbound == nullptr) return E_INVALIDARG;
    if (nDim == 0 || nDim > psa->cDims) return DISP_E_BADINDEX;
    *plLbound = psa->rgsabound[psa->cDims - nDim].lLbound;
    return S_OK;
}

HRESULT SafeArrayGetUBound(SAFEARRAY* psa, UINT nDim, LONG* plUbound) {
    if (psa == nullptr || plUbound == nullptr) return E_INVALIDARG;
    if (nDim == 0 || nDim > psa->cDims) return DISP_E_BADINDEX;
    const SAFEARRAYBOUND& b = psa->rgsabound[psa->cDims - nDim];
    *plUbound = static_cast<LONG>(static_cast<long long>(b.lLbound) + b.cElements - 1);
    return S_OK;
}

HRESULT SafeArrayGetVartype(SAFEARRAY* psa, VARTYPE* pvt) {
    if (psa == nullptr || pvt == nullptr) return E_INVALIDARG;
    *pvt = ElementType(psa);
    return S_OK;
}

HRESULT SafeArrayLock(SAFEARRAY* psa) {
    if (psa == nullptr) return E_INVALIDARG;
    if (psa->cLocks == std::numeric_limits<ULONG>::max()) return E_UNEXPECTED;
    ++psa->cLocks;
    return S_OK;
}

HRESULT SafeArrayUnlock(SAFEARRAY* psa) {
    if (psa == nullptr) return E_INVALIDARG;
    if (psa->cLocks == 0) return E_UNEXPECTED;
    --psa->cLocks;
    return S_OK;
}

}  // extern "C"
