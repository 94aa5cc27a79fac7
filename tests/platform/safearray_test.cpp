// SAFEARRAY: bound order, element access, copying, resizing and refusals.
#include "platform/alloc.h"
#include "platform/array_index.h"

#include "support/test_support.h"

#include <varion/platform/automation.h>

#include <gtest/gtest.h>

#include <cstdint>

using varion::test::CountingUnknown;

TEST(SafeArray, BoundsListMostSignificantFirst) {
    SAFEARRAYBOUND bounds[2] = {{2, 10}, {3, 20}};  // B, then A
    SAFEARRAY* psa = SafeArrayCreate(VT_I4, 2, bounds);
    ASSERT_NE(psa, nullptr);
    EXPECT_EQ(psa->rgsabound[0].cElements, 3u);
    EXPECT_EQ(psa->rgsabound[0].lLbound, 20);
    EXPECT_EQ(psa->rgsabound[1].cElements, 2u);
    EXPECT_EQ(SafeArrayGetDim(psa), 2u);
    EXPECT_EQ(SafeArrayGetElemsize(psa), 4u);
    LONG lb = 0, ub = 0;
    EXPECT_EQ(SafeArrayGetLBound(psa, 1, &lb), S_OK);
    EXPECT_EQ(SafeArrayGetUBound(psa, 1, &ub), S_OK);
    EXPECT_EQ(lb, 10);
    EXPECT_EQ(ub, 11);
    EXPECT_EQ(SafeArrayGetLBound(psa, 2, &lb), S_OK);
    EXPECT_EQ(lb, 20);
    EXPECT_EQ(SafeArrayGetLBound(psa, 3, &lb), DISP_E_BADINDEX);
    VARTYPE vt = 0;
    EXPECT_EQ(SafeArrayGetVartype(psa, &vt), S_OK);
    EXPECT_EQ(vt, VT_I4);

    // The stand-ins take index vectors least significant first, the index
    // along rgsabound[0] (which varies fastest) first: (i, j) lies at
    // i + j * countA. The Windows services take the leftmost dimension first,
    // and it varies fastest there: (j, i) lies at j + i * countB.
    const bool aFirst = varion::test::kStandInServices;
    LONG index[2] = {aFirst ? 21 : 11, aFirst ? 11 : 21};
    std::int32_t x = 7;
    EXPECT_EQ(SafeArrayPutElement(psa, index, &x), S_OK);
    EXPECT_EQ(static_cast<std::int32_t*>(psa->pvData)[aFirst ? 1 + 1 * 3 : 1 + 1 * 2], 7);
    LONG outside[2] = {aFirst ? 23 : 11, aFirst ? 11 : 23};
    EXPECT_EQ(SafeArrayPutElement(psa, outside, &x), DISP_E_BADINDEX);
    std::int32_t got = -1;
    EXPECT_EQ(SafeArrayGetElement(psa, outside, &got), DISP_E_BADINDEX);
    EXPECT_EQ(got, -1);
    EXPECT_EQ(SafeArrayDestroy(psa), S_OK);
}

TEST(SafeArray, RefusedElementTypes) {
    for (VARTYPE vt : std::initializer_list<VARTYPE>{VT_EMPTY, VT_NULL, 100, 101, 102, 103, 104, 105, 106,
                                                     VT_RECORD, 0x2003, 0xFFFF}) {
        EXPECT_EQ(SafeArrayCreateVector(vt, 0, 1), nullptr) << vt;
    }
    SAFEARRAY* decimals = SafeArrayCreateVector(VT_DECIMAL, 0, 2);  // 16-byte elements
    ASSERT_NE(decimals, nullptr);
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
}

TEST(SafeArray, StringsAndVariantsAreCopiedInAndOut) {
    SAFEARRAY* psa = SafeArrayCreateVector(VT_BSTR, 0, 2);
    BSTR s = SysAllocString(OLESTR("hello"));
    LONG i = 1;
    EXPECT_EQ(SafeArrayPutElement(psa, &i, s), S_OK);
    SysFreeString(s);  // the array holds its own copy
    BSTR out = nullptr;
    EXPECT_EQ(SafeArrayGetElement(psa, &i, &out), S_OK);
    ASSERT_NE(out, nullptr);
    EXPECT_EQ(SysStringLen(out), 5u);
    SysFreeString(out);

    SAFEARRAY* copy = nullptr;
    EXPECT_EQ(SafeArrayCopy(psa, &copy), S_OK);
    BSTR a = nullptr;
    BSTR b = nullptr;
    SafeArrayPtrOfIndex(psa, &i, reinterpret_cast<void**>(&a));
    SafeArrayPtrOfIndex(copy, &i, reinterpret_cast<void**>(&b));
    EXPECT_NE(*reinterpret_cast<BSTR*>(a), *reinterpret_cast<BSTR*>(b));
    SafeArrayDestroy(copy);
    SafeArrayDestroy(psa);

    SAFEARRAY* variants = SafeArrayCreateVector(VT_VARIANT, 0, 1);
    VARIANT v;
    VariantInit(&v);
    v.vt = VT_BSTR;
    v.bstrVal = SysAllocString(OLESTR("x"));
    LONG zero = 0;
    EXPECT_EQ(SafeArrayPutElement(variants, &zero, &v), S_OK);
    VariantClear(&v);
    VARIANT back;
    VariantInit(&back);
    EXPECT_EQ(SafeArrayGetElement(variants, &zero, &back), S_OK);
    EXPECT_EQ(back.vt, VT_BSTR);
    EXPECT_EQ(SysStringLen(back.bstrVal), 1u);
    VariantClear(&back);
    SafeArrayDestroy(variants);
}

TEST(SafeArray, InterfacesHoldOneReferencePerElement) {
    CountingUnknown unknown;
    SAFEARRAY* psa = SafeArrayCreateVector(VT_UNKNOWN, 0, 1);
    LONG zero = 0;
    SafeArrayPutElement(psa, &zero, static_cast<IUnknown*>(&unknown));
    EXPECT_EQ(unknown.refs, 2u);
    SAFEARRAY* copy = nullptr;
    SafeArrayCopy(psa, &copy);
    EXPECT_EQ(unknown.refs, 3u);
    SafeArrayDestroy(copy);
    SafeArrayDestroy(psa);
    EXPECT_EQ(unknown.refs, 1u);
}

TEST(SafeArray, RedimResizesBoundAAndKeepsElements) {
    SAFEARRAY* psa = SafeArrayCreateVector(VT_I2, 5, 3);
    for (LONG i = 5; i < 8; ++i) {
        auto x = static_cast<std::int16_t>(i);
        SafeArrayPutElement(psa, &i, &x);
    }
    SAFEARRAYBOUND grow{5, 5};
    EXPECT_EQ(SafeArrayRedim(psa, &grow), S_OK);
    const auto* data = static_cast<const std::int16_t*>(psa->pvData);
    EXPECT_EQ(data[2], 7);
    EXPECT_EQ(data[3], 0);
    EXPECT_EQ(data[4], 0);
    SAFEARRAYBOUND shrink{1, 5};
    EXPECT_EQ(SafeArrayRedim(psa, &shrink), S_OK);
    EXPECT_EQ(psa->rgsabound[0].cElements, 1u);
    psa->fFeatures |= FADF_FIXEDSIZE;
    EXPECT_EQ(SafeArrayRedim(psa, &grow), DISP_E_ARRAYISLOCKED);
    EXPECT_EQ(SafeArrayLock(psa), S_OK);
    EXPECT_EQ(SafeArrayDestroy(psa), DISP_E_ARRAYISLOCKED);
    EXPECT_EQ(SafeArrayUnlock(psa), S_OK);
    EXPECT_EQ(SafeArrayUnlock(psa), E_UNEXPECTED);
    EXPECT_EQ(SafeArrayDestroy(psa), S_OK);
}

TEST(SafeArray, RedimOfTwoDimensionsKeepsElements) {
    // texts[j][i] is element (i along rgsabound[0], j along rgsabound[1]).
    SAFEARRAYBOUND bounds[2] = {{2, 0}, {2, 0}};
    SAFEARRAY* psa = SafeArrayCreate(VT_BSTR, 2, bounds);
    const OLECHAR* texts[2][2] = {{OLESTR("a"), OLESTR("b")}, {OLESTR("c"), OLESTR("d")}};
    const auto at = [](LONG i, LONG j, LONG vector[2]) { varion::detail::MakeIndexVector(2, i, j, vector); };
    for (LONG j = 0; j < 2; ++j)
        for (LONG i = 0; i < 2; ++i) {
            LONG index[2];
            at(i, j, index);
            BSTR s = SysAllocString(texts[j][i]);
            SafeArrayPutElement(psa, index, s);
            SysFreeString(s);
        }
    SAFEARRAYBOUND wider{3, 0};
    ASSERT_EQ(SafeArrayRedim(psa, &wider), S_OK);
    LONG index[2];
    at(1, 1, index);
    BSTR got = nullptr;
    SafeArrayGetElement(psa, index, &got);
    EXPECT_EQ(got[0], 'd');
    SysFreeString(got);
    at(2, 1, index);
    SafeArrayGetElement(psa, index, &got);
    EXPECT_EQ(got, nullptr);  // the added element is empty
    SAFEARRAYBOUND narrower{1, 0};  // drops (and frees) "b" and "d"
    ASSERT_EQ(SafeArrayRedim(psa, &narrower), S_OK);
    at(0, 1, index);
    SafeArrayGetElement(psa, index, &got);
    EXPECT_EQ(got[0], 'c');
    SysFreeString(got);
    at(1, 1, index);
    EXPECT_EQ(SafeArrayGetElement(psa, index, &got), DISP_E_BADINDEX);
    SafeArrayDestroy(psa);
}

TEST(SafeArray, NullArguments) {
    EXPECT_EQ(SafeArrayDestroy(nullptr), S_OK);
    SAFEARRAY* out = reinterpret_cast<SAFEARRAY*>(1);
    EXPECT_EQ(SafeArrayCopy(nullptr, &out), S_OK);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(SafeArrayGetDim(nullptr), 0u);
    VARION_STANDIN_ONLY(EXPECT_EQ(SafeArrayRedim(nullptr, nullptr), E_INVALIDARG));
    EXPECT_EQ(SafeArrayLock(nullptr), E_INVALIDARG);
    [[maybe_unused]] LONG i = 0;
    VARION_STANDIN_ONLY(EXPECT_EQ(SafeArrayGetElement(nullptr, &i, &i), E_INVALIDARG));
}
