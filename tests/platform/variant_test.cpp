// VARIANT: clearing, copying and by-reference copying.
#include "support/test_support.h"

#include <varion/platform/automation.h>

#include <gtest/gtest.h>

using varion::test::CountingUnknown;

TEST(Variant, ClearReleasesWhatItOwns) {
    VARIANT v;
    VariantInit(&v);
    EXPECT_EQ(v.vt, VT_EMPTY);
    v.vt = VT_BSTR;
    v.bstrVal = SysAllocString(OLESTR("x"));
    EXPECT_EQ(VariantClear(&v), S_OK);
    EXPECT_EQ(v.vt, VT_EMPTY);
    v.vt = VT_ARRAY | VT_I4;
    v.parray = SafeArrayCreateVector(VT_I4, 0, 3);
    EXPECT_EQ(VariantClear(&v), S_OK);
    CountingUnknown unknown;
    v.vt = VT_UNKNOWN;
    v.punkVal = &unknown;
    unknown.AddRef();
    EXPECT_EQ(VariantClear(&v), S_OK);
    EXPECT_EQ(unknown.refs, 1u);
    VARION_STANDIN_ONLY(EXPECT_EQ(VariantClear(nullptr), E_INVALIDARG));
}

TEST(Variant, ClearRefusesCodesAVariantCannotHold) {
    VARIANT v;
    for (VARTYPE vt : std::initializer_list<VARTYPE>{15, VT_VOID, 100, 106, VT_VECTOR | VT_I4, VT_ARRAY | VT_EMPTY,
                                                     VT_BYREF | VT_NULL}) {
        v.vt = vt;
        EXPECT_EQ(VariantClear(&v), DISP_E_BADVARTYPE) << vt;
        EXPECT_EQ(v.vt, vt);
    }
}

TEST(Variant, CopyDuplicates) {
    VARIANT src;
    VariantInit(&src);
    src.vt = VT_BSTR;
    src.bstrVal = SysAllocString(OLESTR("abc"));
    VARIANT dst;
    VariantInit(&dst);
    dst.vt = VT_BSTR;
    dst.bstrVal = SysAllocString(OLESTR("old"));  // released by the copy
    EXPECT_EQ(VariantCopy(&dst, &src), S_OK);
    EXPECT_NE(dst.bstrVal, src.bstrVal);
    EXPECT_EQ(SysStringLen(dst.bstrVal), 3u);
    VariantClear(&dst);
    VariantClear(&src);

    src.vt = VT_R8;
    src.dblVal = 2.5;
    EXPECT_EQ(VariantCopy(&dst, &src), S_OK);
    EXPECT_EQ(dst.dblVal, 2.5);
    src.vt = 100;
    EXPECT_EQ(VariantCopy(&dst, &src), DISP_E_BADVARTYPE);
}

TEST(Variant, CopyIndResolvesReferences) {
    LONG target = 42;
    VARIANT ref;
    ref.vt = VT_BYREF | VT_I4;
    ref.plVal = &target;
    VARIANT dst;
    VariantInit(&dst);
    EXPECT_EQ(VariantCopyInd(&dst, &ref), S_OK);
    EXPECT_EQ(dst.vt, VT_I4);
    EXPECT_EQ(dst.lVal, 42);

    BSTR text = SysAllocString(OLESTR("ref"));
    ref.vt = VT_BYREF | VT_BSTR;
    ref.pbstrVal = &text;
    EXPECT_EQ(VariantCopyInd(&dst, &ref), S_OK);
    EXPECT_EQ(dst.vt, VT_BSTR);
    EXPECT_NE(dst.bstrVal, text);
    VariantClear(&dst);
    SysFreeString(text);

    VARIANT inner;
    inner.vt = VT_R4;
    inner.fltVal = 1.5f;
    ref.vt = VT_BYREF | VT_VARIANT;
    ref.pvarVal = &inner;
    EXPECT_EQ(VariantCopyInd(&dst, &ref), S_OK);
    EXPECT_EQ(dst.vt, VT_R4);
    EXPECT_EQ(dst.fltVal, 1.5f);
    VARIANT nested;
    nested.vt = VT_BYREF | VT_VARIANT;
    nested.pvarVal = &ref;  // a reference to a reference is refused
    EXPECT_EQ(VariantCopyInd(&dst, &nested), E_INVALIDARG);
    ref.vt = VT_BYREF | VT_I4;
    ref.plVal = nullptr;
    VARION_STANDIN_ONLY(EXPECT_EQ(VariantCopyInd(&dst, &ref), E_INVALIDARG));

    // In place: the reference is replaced by the value.
    ref.plVal = &target;
    EXPECT_EQ(VariantCopyInd(&ref, &ref), S_OK);
    EXPECT_EQ(ref.vt, VT_I4);
    EXPECT_EQ(ref.lVal, 42);
}
