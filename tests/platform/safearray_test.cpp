// SAFEARRAY: bound order, element access, copying, resizing and refusals.
#include "platform/alloc.h"
#include "platform/array_index.h"

#include "support/test_support.h"

#include <varion/platform/automation.h>

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <string>

using varion::test::CountingUnknown;
using varion::test::Utf8;

namespace {

// The index vector of element (i along rgsabound[0], j along rgsabound[1]).
struct At {
    LONG v[2];
    At(LONG i, LONG j) { varion::detail::MakeIndexVector(2, i, j, v); }
};

}  // namespace

TEST(SafeArray, BoundsListMostSignificantFirstAndIndicesAreChecked) {
    SAFEARRAYBOUND bounds[2] = {{2, 10}, {3, 20}};  // B, then A
    SAFEARRAY* psa = SafeArrayCreate(VT_I4, 2, bounds);
    ASSERT_NE(psa, nullptr);
    LONG lb1 = 0, ub1 = 0, lb2 = 0;
    VARTYPE vt = 0;
    const HRESULT answers[] = {SafeArrayGetLBound(psa, 1, &lb1), SafeArrayGetUBound(psa, 1, &ub1),
                               SafeArrayGetLBound(psa, 2, &lb2), SafeArrayGetVartype(psa, &vt)};
    EXPECT_EQ((std::array<long long, 8>{psa->rgsabound[0].cElements, psa->rgsabound[0].lLbound, psa->rgsabound[1].cElements,
                                   lb1, ub1, lb2, SafeArrayGetDim(psa), SafeArrayGetElemsize(psa)}),
              (std::array<long long, 8>{3, 20, 2, 10, 11, 20, 2, 4}));
    for (const HRESULT hr : answers) EXPECT_EQ(hr, S_OK);
    EXPECT_EQ(vt, VT_I4);
    EXPECT_EQ(SafeArrayGetLBound(psa, 3, &lb2), DISP_E_BADINDEX);
    // Element (1, 1) of A (3 from 20) by B (2 from 10) lies at 1 + 1 * 3 in
    // the stand-ins, where A varies fastest; Windows varies its leftmost
    // dimension (B) fastest: 1 + 1 * 2.
    std::int32_t x = 7;
    EXPECT_EQ(SafeArrayPutElement(psa, At(21, 11).v, &x), S_OK);
    EXPECT_EQ(static_cast<std::int32_t*>(psa->pvData)[varion::test::kStandInServices ? 1 + 1 * 3 : 1 + 1 * 2], 7);
    for (At outside : {At(23, 11), At(19, 11), At(20, 12), At(20, 9)}) {
        std::int32_t got = -1;
        EXPECT_EQ(SafeArrayPutElement(psa, outside.v, &x), DISP_E_BADINDEX);
        EXPECT_EQ(SafeArrayGetElement(psa, outside.v, &got), DISP_E_BADINDEX);
        EXPECT_EQ(got, -1);
    }
    EXPECT_EQ(SafeArrayDestroy(psa), S_OK);
}

TEST(SafeArray, RefusedElementTypesSizesAndFailedAllocations) {
    for (VARTYPE vt : {VARTYPE(VT_EMPTY), VARTYPE(VT_RECORD), VARTYPE(VT_ARRAY | VT_I4)})
        EXPECT_EQ(SafeArrayCreateVector(vt, 0, 1), nullptr) << vt;
    SAFEARRAY* decimals = SafeArrayCreateVector(VT_DECIMAL, 0, 2);
    EXPECT_EQ(SafeArrayGetElemsize(decimals), 16u);
    SafeArrayDestroy(decimals);
    SAFEARRAYBOUND b{1, 0};
    EXPECT_EQ(SafeArrayCreate(VT_I4, 0, &b), nullptr);
    VARION_STANDIN_ONLY(EXPECT_EQ(SafeArrayCreate(VT_I4, 1, nullptr), nullptr));
    VARION_STANDIN_ONLY(EXPECT_EQ(SafeArrayCreateVector(VT_R8, 0, 0x40000000u), nullptr));  // 8 GiB
    // Every allocation the creation makes may fail; each failure answers null.
    for (long n = 1;; ++n) {
        varion::detail::FailAllocationAfter(n);
        SAFEARRAY* psa = SafeArrayCreate(VT_R8, 1, &b);
        varion::detail::FailAllocationAfter(0);
        if (psa != nullptr) {
            EXPECT_GT(n, 1) << "the first allocation did not fail";
            SafeArrayDestroy(psa);
            break;
        }
        ASSERT_LT(n, 10);
    }
    EXPECT_EQ(SafeArrayDestroy(nullptr), S_OK);
    SAFEARRAY* out = reinterpret_cast<SAFEARRAY*>(1);
    EXPECT_EQ(SafeArrayCopy(nullptr, &out), S_OK);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(SafeArrayGetDim(nullptr), 0u);
    EXPECT_EQ(SafeArrayLock(nullptr), E_INVALIDARG);
    VARION_STANDIN_ONLY(EXPECT_EQ(SafeArrayRedim(nullptr, nullptr), E_INVALIDARG));
    VARION_STANDIN_ONLY(EXPECT_EQ(SafeArrayGetElement(nullptr, &b.lLbound, &b.lLbound), E_INVALIDARG));
}

TEST(SafeArray, StringsVariantsAndInterfacesAreOwnedOncePerArray) {
    // Put copies in, the copy of the array copies again, Get hands out a copy:
    // every text is freed once (the leak checker counts), each by its owner.
    LONG zero = 0;
    VARIANT v;
    v.vt = VT_BSTR;
    v.bstrVal = SysAllocString(OLESTR("hello"));
    for (const VARTYPE vt : {VARTYPE(VT_BSTR), VARTYPE(VT_VARIANT)}) {
        SAFEARRAY* psa = SafeArrayCreateVector(vt, 0, 2);
        void* in = vt == VT_BSTR ? static_cast<void*>(v.bstrVal) : &v;
        EXPECT_EQ(SafeArrayPutElement(psa, &zero, in), S_OK);
        SAFEARRAY* copy = nullptr;
        EXPECT_EQ(SafeArrayCopy(psa, &copy), S_OK);
        SafeArrayDestroy(psa);
        VARIANT out{};
        EXPECT_EQ(SafeArrayGetElement(copy, &zero, vt == VT_BSTR ? static_cast<void*>(&out.bstrVal) : &out), S_OK);
        EXPECT_NE(out.bstrVal, v.bstrVal);
        EXPECT_EQ(Utf8(out.bstrVal), "hello") << vt;
        SysFreeString(out.bstrVal);
        SafeArrayDestroy(copy);
    }
    VariantClear(&v);
    CountingUnknown unknown;
    SAFEARRAY* interfaces = SafeArrayCreateVector(VT_UNKNOWN, 0, 1);
    SAFEARRAY* copy = nullptr;
    SafeArrayPutElement(interfaces, &zero, static_cast<IUnknown*>(&unknown));
    SafeArrayCopy(interfaces, &copy);
    EXPECT_EQ(unknown.refs, 3u);
    SafeArrayDestroy(copy);
    SafeArrayDestroy(interfaces);
    EXPECT_EQ(unknown.refs, 1u);
}

TEST(SafeArray, RedimResizesBoundAKeepsElementsAndRespectsLocks) {
    SAFEARRAYBOUND bounds[2] = {{2, 0}, {2, 0}};
    SAFEARRAY* psa = SafeArrayCreate(VT_BSTR, 2, bounds);
    for (LONG k = 0; k < 4; ++k) {  // (0, 0) "a", (1, 0) "b", (0, 1) "c", (1, 1) "d"
        const OLECHAR text[] = {static_cast<OLECHAR>(OLESTR('a') + k), 0};
        BSTR s = SysAllocString(text);
        SafeArrayPutElement(psa, At(k % 2, k / 2).v, s);
        SysFreeString(s);
    }
    const auto element = [psa](LONG i, LONG j) {
        BSTR got = nullptr;
        const HRESULT hr = SafeArrayGetElement(psa, At(i, j).v, &got);
        const std::string text = FAILED(hr) ? "<bad index>" : got == nullptr ? "<null>" : Utf8(got);
        SysFreeString(got);
        return text;
    };
    SAFEARRAYBOUND wider{3, 0};
    ASSERT_EQ(SafeArrayRedim(psa, &wider), S_OK);
    EXPECT_EQ(element(1, 0) + element(1, 1) + element(0, 1), "bdc");
    EXPECT_EQ(element(2, 1), "<null>");  // the added element is empty
    SAFEARRAYBOUND narrower{1, 0};  // drops (and frees) "b" and "d"
    ASSERT_EQ(SafeArrayRedim(psa, &narrower), S_OK);
    EXPECT_EQ(element(0, 0) + element(0, 1), "ac");
    EXPECT_EQ(element(1, 1), "<bad index>");
    psa->fFeatures |= FADF_FIXEDSIZE;
    EXPECT_EQ(SafeArrayRedim(psa, &wider), DISP_E_ARRAYISLOCKED);
    EXPECT_EQ(SafeArrayLock(psa), S_OK);
    EXPECT_EQ(SafeArrayDestroy(psa), DISP_E_ARRAYISLOCKED);
    EXPECT_EQ(SafeArrayUnlock(psa), S_OK);
    EXPECT_EQ(SafeArrayUnlock(psa), E_UNEXPECTED);
    EXPECT_EQ(SafeArrayDestroy(psa), S_OK);
}
