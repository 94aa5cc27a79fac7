// VARIANT: clearing, copying and by-reference copying.
#include "support/test_support.h"

#include <varion/platform/automation.h>

#include <gtest/gtest.h>

using varion::test::CountingUnknown;
using varion::test::Utf8;

TEST(Variant, ClearReleasesWhatItOwnsAndRefusesCodesItCannotHold) {
    CountingUnknown unknown;
    unknown.AddRef();  // the reference the last variant owns
    VARIANT owners[3] = {};
    owners[0].vt = VT_BSTR;
    owners[0].bstrVal = SysAllocString(OLESTR("x"));  // leaks if not freed
    owners[1].vt = VT_ARRAY | VT_I4;
    owners[1].parray = SafeArrayCreateVector(VT_I4, 0, 3);
    owners[2].vt = VT_UNKNOWN;
    owners[2].punkVal = &unknown;
    for (VARIANT& v : owners) {
        EXPECT_EQ(VariantClear(&v), S_OK);
        EXPECT_EQ(v.vt, VT_EMPTY);
    }
    EXPECT_EQ(unknown.refs, 1u);
    VARION_STANDIN_ONLY(EXPECT_EQ(VariantClear(nullptr), E_INVALIDARG));
    // 15, the first code past the base types, a vector, and flags on VT_EMPTY or VT_NULL.
    for (VARTYPE vt : {VARTYPE(15), VARTYPE(VT_VOID), VARTYPE(VT_VECTOR | VT_I4), VARTYPE(VT_ARRAY | VT_EMPTY),
                       VARTYPE(VT_BYREF | VT_NULL)}) {
        VARIANT v;
        v.vt = vt;
        EXPECT_EQ(VariantClear(&v), DISP_E_BADVARTYPE) << vt;
        EXPECT_EQ(v.vt, vt);
    }
}

TEST(Variant, CopyDuplicatesAndReleasesTheOldDestination) {
    VARIANT src, dst;
    src.vt = dst.vt = VT_BSTR;
    src.bstrVal = SysAllocString(OLESTR("abc"));
    dst.bstrVal = SysAllocString(OLESTR("old"));  // leaks if the copy does not release it
    EXPECT_EQ(VariantCopy(&dst, &src), S_OK);
    EXPECT_NE(dst.bstrVal, src.bstrVal);
    EXPECT_EQ(Utf8(dst.bstrVal), "abc");
    VariantClear(&src);
    src.vt = 100;
    EXPECT_EQ(VariantCopy(&dst, &src), DISP_E_BADVARTYPE);
    EXPECT_EQ(Utf8(dst.bstrVal), "abc");  // a refused copy leaves the destination alone
    VariantClear(&dst);
}

TEST(Variant, CopyIndResolvesOneLevelOfReference) {
    LONG target = 42;
    BSTR text = SysAllocString(OLESTR("ref"));
    VARIANT inner, ref, dst;
    inner.vt = VT_R4;
    inner.fltVal = 1.5f;
    VariantInit(&dst);
    ref.vt = VT_BYREF | VT_BSTR;
    ref.pbstrVal = &text;
    ASSERT_EQ(VariantCopyInd(&dst, &ref), S_OK);
    EXPECT_EQ(dst.vt, VT_BSTR);
    EXPECT_NE(dst.bstrVal, text);  // a copy of the string, not the string
    SysFreeString(text);
    ref.vt = VT_BYREF | VT_VARIANT;
    ref.pvarVal = &inner;
    ASSERT_EQ(VariantCopyInd(&dst, &ref), S_OK);  // releases the copied string
    EXPECT_EQ(dst.vt, VT_R4);
    EXPECT_EQ(dst.fltVal, 1.5f);
    VARIANT nested;
    nested.vt = VT_BYREF | VT_VARIANT;
    nested.pvarVal = &ref;  // a reference to a reference is refused
    EXPECT_EQ(VariantCopyInd(&dst, &nested), E_INVALIDARG);
    ref.vt = VT_BYREF | VT_I4;
    ref.plVal = nullptr;
    VARION_STANDIN_ONLY(EXPECT_EQ(VariantCopyInd(&dst, &ref), E_INVALIDARG));
    ref.plVal = &target;
    EXPECT_EQ(VariantCopyInd(&ref, &ref), S_OK);  // in place: the reference becomes the value
    EXPECT_EQ(ref.vt, VT_I4);
    EXPECT_EQ(ref.lVal, 42);
}
