// VARIANT stand-in: initialising, clearing and copying with the Automation
// ownership rules (a VARIANT owns its string and array; an interface pointer
// holds one reference).
#include <varion/platform/automation.h>

#include "platform/safearray_internal.h"

#include <cstring>

namespace {

// The type codes a VARIANT may carry: the Automation base types below VT_VOID
// (except 15), VT_RECORD and VT_CLSID, alone or with VT_ARRAY / VT_BYREF; a
// flag on VT_EMPTY or VT_NULL is not allowed.
HRESULT ValidateType(VARTYPE vt) {
    const VARTYPE extra = vt & (VT_VECTOR | VT_ARRAY | VT_BYREF | VT_RESERVED);
    const VARTYPE base = vt & VT_TYPEMASK;
    if (extra & (VT_VECTOR | VT_RESERVED)) return DISP_E_BADVARTYPE;
    if (base < VT_VOID || base == VT_RECORD || base == VT_CLSID) {
        if ((extra & (VT_BYREF | VT_ARRAY)) && base <= VT_NULL) return DISP_E_BADVARTYPE;
        if (base != 15) return S_OK;
    }
    return DISP_E_BADVARTYPE;
}

// Bytes a by-reference pointer of base type `base` points at (0: not a plain value).
std::size_t ReferencedSize(VARTYPE base) {
    switch (base) {
    case VT_BSTR: case VT_UNKNOWN: case VT_DISPATCH: case VT_VARIANT: return 0;
    case VT_DECIMAL: return 0;  // a DECIMAL fills the whole VARIANT, not its value field
    default: return varion::detail::ArrayElementSize(base);
    }
}

}  // namespace

extern "C" {

void VariantInit(VARIANTARG* pvarg) {
    if (pvarg != nullptr) pvarg->vt = VT_EMPTY;
}

HRESULT VariantClear(VARIANTARG* pvarg) {
    if (pvarg == nullptr) return E_INVALIDARG;
    const HRESULT hr = ValidateType(pvarg->vt);
    if (FAILED(hr)) return hr;
    const VARTYPE vt = pvarg->vt;
    if (!(vt & VT_BYREF)) {
        if (vt & VT_ARRAY) {
            const HRESULT destroyed = SafeArrayDestroy(pvarg->parray);
            if (FAILED(destroyed)) return destroyed;
        } else if (vt == VT_BSTR) {
            SysFreeString(pvarg->bstrVal);
        } else if ((vt == VT_UNKNOWN || vt == VT_DISPATCH) && pvarg->punkVal != nullptr) {
            pvarg->punkVal->Release();
        }
    }
    pvarg->vt = VT_EMPTY;
    return S_OK;
}

HRESULT VariantCopy(VARIANTARG* pvargDest, const VARIANTARG* pvargSrc) {
    if (pvargDest == nullptr || pvargSrc == nullptr) return E_INVALIDARG;
    if (pvargDest == pvargSrc) return S_OK;
    HRESULT hr = ValidateType(pvargSrc->vt);
    if (FAILED(hr)) return hr;
    hr = VariantClear(pvargDest);
    if (FAILED(hr)) return hr;

    VARIANT copy;
    std::memcpy(&copy, pvargSrc, sizeof(copy));
    const VARTYPE vt = pvargSrc->vt;
    if (!(vt & VT_BYREF)) {
        if (vt & VT_ARRAY) {
            hr = SafeArrayCopy(pvargSrc->parray, &copy.parray);
        } else if (vt == VT_BSTR && pvargSrc->bstrVal != nullptr) {
            copy.bstrVal = SysAllocStringByteLen(reinterpret_cast<const char*>(pvargSrc->bstrVal),
                                                 SysStringByteLen(pvargSrc->bstrVal));
            if (copy.bstrVal == nullptr) hr = E_OUTOFMEMORY;
        } else if ((vt == VT_UNKNOWN || vt == VT_DISPATCH) && pvargSrc->punkVal != nullptr) {
            pvargSrc->punkVal->AddRef();
        }
    }
    if (FAILED(hr)) return hr;
    std::memcpy(pvargDest, &copy, sizeof(copy));
    return S_OK;
}

HRESULT VariantCopyInd(VARIANT* pvarDest, const VARIANTARG* pvargSrc) {
    if (pvarDest == nullptr || pvargSrc == nullptr) return E_INVALIDARG;
    if (!(pvargSrc->vt & VT_BYREF)) return VariantCopy(pvarDest, pvargSrc);
    HRESULT hr = ValidateType(pvargSrc->vt);
    if (FAILED(hr)) return hr;
    if (pvargSrc->byref == nullptr) return E_INVALIDARG;

    // Build a plain VARIANT viewing the referenced value, then copy it.
    const VARTYPE vt = pvargSrc->vt & ~VT_BYREF;
    VARIANT view;
    std::memset(&view, 0, sizeof(view));
    view.vt = vt;
    if (vt == VT_VARIANT) {
        const VARIANT* inner = pvargSrc->pvarVal;
        if (inner->vt & VT_BYREF) return E_INVALIDARG;
        view = *inner;
    } else if (vt & VT_ARRAY) {
        view.parray = *pvargSrc->pparray;
    } else if (vt == VT_BSTR) {
        view.bstrVal = *pvargSrc->pbstrVal;
    } else if (vt == VT_UNKNOWN || vt == VT_DISPATCH) {
        view.punkVal = *pvargSrc->ppunkVal;
    } else {
        const std::size_t size = ReferencedSize(vt);
        if (size == 0) return DISP_E_BADVARTYPE;
        std::memcpy(&view.llVal, pvargSrc->byref, size);
    }
    VARIANT result;
    result.vt = VT_EMPTY;
    hr = VariantCopy(&result, &view);
    if (FAILED(hr)) return hr;
    if (pvarDest != pvargSrc) {
        hr = VariantClear(pvarDest);
        if (FAILED(hr)) {
            VariantClear(&result);
            return hr;
        }
    }
    std::memcpy(pvarDest, &result, sizeof(result));
    return S_OK;
}

}  // extern "C"
