#include <varion/varion.h>

#include "platform/alloc.h"
#include "support/test_support.h"
#include "value/access.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

using varion::detail::Access;
using varion::detail::FailAllocationAfter;
using varion::test::Bytes;
using varion::test::Utf8;

namespace {

VARIANT Make(VARTYPE vt, std::uint64_t bits) {
    VARIANT v;
    std::memset(&v, 0, sizeof(v));
    v.vt = vt;
    v.ullVal = bits;
    return v;
}

std::uint64_t Bits(const VARIANT& v, int width) {
    std::uint64_t x = 0;
    std::memcpy(&x, &v.llVal, static_cast<std::size_t>(width));
    return x;
}

std::uint64_t DoubleBits(double d) {
    std::uint64_t x;
    std::memcpy(&x, &d, sizeof(x));
    return x;
}

// An interface that counts the references taken and released on it.
struct CountingUnknown final : IUnknown {
    int addRefs = 0;
    int releases = 0;
    HRESULT QueryInterface(const IID&, void** out) override {
        *out = nullptr;
        return E_NOTIMPL;
    }
    ULONG AddRef() override { return static_cast<ULONG>(++addRefs); }
    ULONG Release() override { return static_cast<ULONG>(++releases); }
};

SAFEARRAY* IntArray(std::initializer_list<std::int32_t> items, bool fixed) {
    SAFEARRAY* psa = SafeArrayCreateVector(VT_I4, 0, static_cast<ULONG>(items.size()));
    LONG i = 0;
    for (std::int32_t x : items) {
        SafeArrayPutElement(psa, &i, &x);
        ++i;
    }
    if (fixed) psa->fFeatures = static_cast<USHORT>(psa->fFeatures | FADF_FIXEDSIZE);
    return psa;
}

std::int32_t IntAt(SAFEARRAY* psa, LONG i) {
    std::int32_t x = 0;
    SafeArrayGetElement(psa, &i, &x);
    return x;
}

}  // namespace

// Every exchangeable scalar: what SetData holds and what GetData gives back.
TEST(VariantExchange, ScalarsRoundTrip) {
    struct Case {
        VARTYPE in;
        std::uint64_t bits;
        int width;          // member bytes compared
        VARTYPE held;       // type code after SetData
        std::uint64_t heldBits;
        VARTYPE out;        // type code after GetData
        std::uint64_t outBits;
    };
    const Case cases[] = {
        {VT_EMPTY, 0, 0, VT_EMPTY, 0, VT_EMPTY, 0},
        {VT_I2, 0x8001, 2, VT_I2, 0x8001, VT_I2, 0x8001},
        {VT_UI2, 0xFFFE, 2, VT_UI2, 0xFFFE, VT_UI2, 0xFFFE},
        {VT_I4, 0x80000001u, 4, VT_I4, 0x80000001u, VT_I4, 0x80000001u},
        {VT_INT, 7, 4, VT_I4, 7, VT_I4, 7},
        {VT_UI4, 0xFFFFFFFEu, 4, VT_UI4, 0xFFFFFFFEu, VT_UI4, 0xFFFFFFFEu},
        {VT_UINT, 0xFFFFFFFFu, 4, VT_UI4, 0xFFFFFFFFu, VT_UI4, 0xFFFFFFFFu},
        {VT_R4, 0x3F800000u, 4, VT_R4, 0x3F800000u, VT_R4, 0x3F800000u},
        {VT_R8, DoubleBits(-2.5), 8, VT_R8, DoubleBits(-2.5), VT_R8, DoubleBits(-2.5)},
        {VT_DATE, DoubleBits(45000.25), 8, VT_DATE, DoubleBits(45000.25), VT_DATE, DoubleBits(45000.25)},
        {VTX_DATETIME_ALT, DoubleBits(1.5), 8, VTX_DATETIME_ALT, DoubleBits(1.5), VTX_DATETIME_ALT, DoubleBits(1.5)},
        {VTX_DATETIME, DoubleBits(2.5), 8, VTX_DATETIME, DoubleBits(2.5), VTX_DATETIME, DoubleBits(2.5)},
        {VT_I1, 0x80, 1, VT_I1, 0x80, VT_I1, 0x80},
        {VT_UI1, 0xFF, 1, VT_UI1, 0xFF, VT_UI1, 0xFF},
        {VT_I8, 0x8000000000000001ull, 8, VT_I8, 0x8000000000000001ull, VT_I8, 0x8000000000000001ull},
        {VT_UI8, 0xFFFFFFFFFFFFFFFFull, 8, VT_UI8, 0xFFFFFFFFFFFFFFFFull, VT_UI8, 0xFFFFFFFFFFFFFFFFull},
        // The Boolean: any non-zero VARIANT_BOOL is true, held as the byte 1 and given out as 1.
        {VT_BOOL, 0xFFFF, 2, VT_BOOL, 1, VT_BOOL, 1},
        {VT_BOOL, 0x0100, 2, VT_BOOL, 1, VT_BOOL, 1},
        {VT_BOOL, 0, 2, VT_BOOL, 0, VT_BOOL, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.in);
        CVarion value("old content");
        ASSERT_EQ(value.SetData(Make(c.in, c.bits)), RC_OK);
        EXPECT_EQ(value.GetType(), c.held);
        const int heldWidth = c.held == VT_BOOL ? 1 : c.width;
        EXPECT_EQ(Bits(Access::Var(value), heldWidth), c.heldBits);

        VARIANT out = Make(VT_I4, 0x5A5A5A5A5A5A5A5Aull);
        ASSERT_EQ(value.GetData(out), RC_OK);
        EXPECT_EQ(out.vt, c.out);
        EXPECT_EQ(Bits(out, c.width), c.outBits);
        EXPECT_EQ(value.GetType(), c.held);  // the value keeps its content
    }
}

// The four codes without a VARIANT code are held as they come; the others
// carry their double both ways.
TEST(VariantExchange, OwnCodesAreHeldAsTheyCome) {
    for (VARTYPE vt : {VTX_DURATION, VTX_DURATION_MSF, VTX_ISO_DURATION, VTX_ISO_DATETIME}) {
        CVarion value;
        ASSERT_EQ(value.SetData(Make(vt, DoubleBits(1.25))), RC_OK);
        EXPECT_EQ(value.GetType(), vt);
        EXPECT_EQ(Bits(Access::Var(value), 8), DoubleBits(1.25));
    }
}

TEST(VariantExchange, RefusedCodesLeaveEmpty) {
    for (VARTYPE vt : std::initializer_list<VARTYPE>{VT_NULL, VT_CY, VT_DISPATCH, VT_ERROR, VT_VARIANT, VT_DECIMAL, VARTYPE(15), VT_VOID,
                       VARTYPE(99), VARTYPE(104), VARTYPE(107), VARTYPE(0x1FFF)}) {
        SCOPED_TRACE(vt);
        CVarion value("held before");
        EXPECT_EQ(value.SetData(Make(vt, 0x1234)), RC_NOT_CONVERTIBLE);
        EXPECT_EQ(value.GetType(), VT_EMPTY);
    }
}

TEST(VariantExchange, ByReferenceIsRefusedBothWays) {
    CVarion value("kept");
    const auto before = Bytes(value);
    LONG referenced = 5;
    VARIANT byRef = Make(VT_I4 | VT_BYREF, 0);
    byRef.plVal = &referenced;
    EXPECT_EQ(value.SetData(byRef), RC_NOT_APPLICABLE);
    EXPECT_EQ(Bytes(value), before);
    EXPECT_EQ(Utf8(static_cast<CString>(value)), "kept");

    // A by-reference code can only come from a raw record.
    const unsigned char record[] = {6, 0, 0, 0, 0x03, 0x40};
    CVarion odd;
    odd.SetTypeValue(reinterpret_cast<const char*>(record));
    ASSERT_EQ(odd.GetType(), VT_I4 | VT_BYREF);
    VARIANT target = Make(VT_R8, DoubleBits(3.0));
    EXPECT_EQ(odd.GetData(target), RC_NOT_APPLICABLE);
    EXPECT_EQ(target.vt, VT_R8);
    EXPECT_EQ(target.dblVal, 3.0);
}

TEST(VariantExchange, StringsAreDuplicatedEachWay) {
    VARIANT source = Make(VT_BSTR, 0);
    source.bstrVal = SysAllocString(OLESTR("12,5"));
    CVarion value;
    ASSERT_EQ(value.SetData(source), RC_OK);
    ASSERT_EQ(value.GetType(), VT_BSTR);
    EXPECT_NE(Access::Var(value).bstrVal, source.bstrVal);
    EXPECT_EQ(source.vt, VT_BSTR);  // the caller's VARIANT is neither changed nor released
    VariantClear(&source);
    EXPECT_EQ(Utf8(Access::Var(value).bstrVal), "12,5");

    VARIANT target;
    VariantInit(&target);
    ASSERT_EQ(value.GetData(target), RC_OK);
    ASSERT_EQ(target.vt, VT_BSTR);
    EXPECT_NE(target.bstrVal, Access::Var(value).bstrVal);
    value.Clear();
    EXPECT_EQ(Utf8(target.bstrVal), "12,5");
    VariantClear(&target);
}

TEST(VariantExchange, StringIsCopiedUpToItsFirstZero) {
    const OLECHAR text[] = {u'a', u'b', 0, u'c'};
    VARIANT source = Make(VT_BSTR, 0);
    source.bstrVal = SysAllocStringLen(text, 4);
    CVarion value(source);
    VariantClear(&source);
    ASSERT_EQ(value.GetType(), VT_BSTR);
    EXPECT_EQ(SysStringLen(Access::Var(value).bstrVal), 2u);
}

TEST(VariantExchange, NullStringIsRefused) {
    CVarion value(1.5);
    EXPECT_EQ(value.SetData(Make(VT_BSTR, 0)), RC_NOT_CONVERTIBLE);
    EXPECT_EQ(value.GetType(), VT_EMPTY);
}

TEST(VariantExchange, ArraysAreDuplicatedWithTheirFlags) {
    struct Case {
        bool fixed;
    };
    for (const Case c : {Case{false}, Case{true}}) {
        SCOPED_TRACE(c.fixed);
        VARIANT source = Make(VT_ARRAY | VT_I4, 0);
        source.parray = IntArray({1, 2, 3}, c.fixed);
        CVarion value;
        ASSERT_EQ(value.SetData(source), RC_OK);
        ASSERT_EQ(value.GetType(), VT_ARRAY | VT_I4);
        SAFEARRAY* held = Access::Var(value).parray;
        ASSERT_NE(held, source.parray);
        EXPECT_EQ(held->fFeatures, source.parray->fFeatures);
        VariantClear(&source);
        EXPECT_EQ(IntAt(held, 2), 3);

        VARIANT target;
        VariantInit(&target);
        ASSERT_EQ(value.GetData(target), RC_OK);
        ASSERT_EQ(target.vt, VT_ARRAY | VT_I4);
        ASSERT_NE(target.parray, held);
        EXPECT_EQ(target.parray->fFeatures, held->fFeatures);
        EXPECT_EQ((target.parray->fFeatures & FADF_FIXEDSIZE) != 0, c.fixed);
        std::int32_t changed = 9;
        LONG i = 0;
        SafeArrayPutElement(target.parray, &i, &changed);
        EXPECT_EQ(IntAt(held, 0), 1);
        VariantClear(&target);
        EXPECT_EQ(IntAt(Access::Var(value).parray, 1), 2);
    }
}

TEST(VariantExchange, ArraysOfAnyElementTypeKeepTheirCode) {
    for (VARTYPE element : {VT_VARIANT, VT_BSTR, VT_UI1, VT_R8}) {
        SCOPED_TRACE(element);
        VARIANT source = Make(VT_ARRAY | element, 0);
        source.parray = SafeArrayCreateVector(element, 0, 2);
        CVarion value;
        EXPECT_EQ(value.SetData(source), RC_OK);
        EXPECT_EQ(value.GetType(), VT_ARRAY | element);
        EXPECT_EQ(value.GetElementCount(), 2u);
        VariantClear(&source);
    }
    // An array code without an array is nothing to hold.
    CVarion value("x");
    EXPECT_EQ(value.SetData(Make(VT_ARRAY | VT_I4, 0)), RC_NOT_CONVERTIBLE);
    EXPECT_EQ(value.GetType(), VT_EMPTY);
}

TEST(VariantExchange, InterfacePointersPassWithoutReferences) {
    CountingUnknown unknown;
    VARIANT source = Make(VT_UNKNOWN, 0);
    source.punkVal = &unknown;
    {
        CVarion value(source);
        ASSERT_EQ(value.GetType(), VT_UNKNOWN);
        EXPECT_EQ(Access::Var(value).punkVal, &unknown);
        CVarion copy(value);
        CVarion assigned;
        assigned = value;
        VARIANT target;
        VariantInit(&target);
        ASSERT_EQ(value.GetData(target), RC_OK);
        EXPECT_EQ(target.vt, VT_UNKNOWN);
        EXPECT_EQ(target.punkVal, &unknown);
        // A receiver must not release a pointer obtained this way.
        target.vt = VT_EMPTY;
        value.Clear();
        copy.SetData(Make(VT_I4, 1));
    }
    EXPECT_EQ(unknown.addRefs, 0);
    EXPECT_EQ(unknown.releases, 0);
}

TEST(VariantExchange, GetDataReleasesWhatTheTargetHeld) {
    VARIANT target = Make(VT_BSTR, 0);
    target.bstrVal = SysAllocString(OLESTR("to be released"));
    CVarion value(static_cast<short>(4));
    ASSERT_EQ(value.GetData(target), RC_OK);  // the leak check sees the string freed
    EXPECT_EQ(target.vt, VT_I2);
    EXPECT_EQ(target.iVal, 4);

    // A target carrying one of this library's own codes holds a double only.
    VARIANT own = Make(VTX_DATETIME, DoubleBits(2.0));
    ASSERT_EQ(value.GetData(own), RC_OK);
    EXPECT_EQ(own.vt, VT_I2);

    // A target whose content cannot be released is left alone.
    VARIANT unknownCode = Make(0x0FFF, 77);
    EXPECT_EQ(value.GetData(unknownCode), RC_NOT_CONVERTIBLE);
    EXPECT_EQ(unknownCode.vt, 0x0FFF);
    EXPECT_EQ(unknownCode.llVal, 77);
    // ... and the copy made for it is released again (leak check).
    const CVarion text("copied, then released");
    EXPECT_EQ(text.GetData(unknownCode), RC_NOT_CONVERTIBLE);
    EXPECT_EQ(unknownCode.llVal, 77);
}

TEST(VariantExchange, CodesWithoutAVariantFormEmptyTheTarget) {
    // Codes a record can set but a VARIANT cannot take.
    for (VARTYPE vt : std::initializer_list<VARTYPE>{VT_NULL, VT_DISPATCH, VT_INT, VARTYPE(104)}) {
        SCOPED_TRACE(vt);
        const unsigned char record[] = {6, 0, 0, 0, static_cast<unsigned char>(vt), 0};
        CVarion value;
        value.SetTypeValue(reinterpret_cast<const char*>(record));
        ASSERT_EQ(value.GetType(), vt);
        VARIANT target = Make(VT_BSTR, 0);
        target.bstrVal = SysAllocString(OLESTR("released"));
        EXPECT_EQ(value.GetData(target), RC_NOT_CONVERTIBLE);
        EXPECT_EQ(target.vt, VT_EMPTY);
    }
}

TEST(VariantExchange, FailedCopiesEmptyTheReceiver) {
    VARIANT text = Make(VT_BSTR, 0);
    text.bstrVal = SysAllocString(OLESTR("abc"));
    VARIANT array = Make(VT_ARRAY | VT_I4, 0);
    array.parray = IntArray({1, 2}, false);
    for (const VARIANT* source : {&text, &array}) {
        SCOPED_TRACE(source->vt);
        CVarion value("held");
        FailAllocationAfter(1);
        EXPECT_EQ(value.SetData(*source), RC_NOT_CONVERTIBLE);
        FailAllocationAfter(0);
        EXPECT_EQ(value.GetType(), VT_EMPTY);

        ASSERT_EQ(value.SetData(*source), RC_OK);
        VARIANT target = Make(VT_BSTR, 0);
        target.bstrVal = SysAllocString(OLESTR("old"));
        FailAllocationAfter(1);
        EXPECT_EQ(value.GetData(target), RC_NOT_CONVERTIBLE);
        FailAllocationAfter(0);
        EXPECT_EQ(target.vt, VT_EMPTY);
        EXPECT_EQ(value.GetType(), source->vt);
    }
    VariantClear(&text);
    VariantClear(&array);
}

TEST(VariantExchange, ValueHandedItsOwnVariant) {
    CVarion value("self");
    EXPECT_EQ(value.SetData(Access::Var(value)), RC_OK);
    EXPECT_EQ(Utf8(Access::Var(value).bstrVal), "self");

    CVarion array(static_cast<unsigned short>(VT_I4), 3, 0);
    EXPECT_EQ(array.SetData(Access::Var(array)), RC_OK);
    EXPECT_EQ(array.GetElementCount(), 3u);

    // GetData into the value's own VARIANT: the copy is made before the clear.
    EXPECT_EQ(value.GetData(Access::Var(value)), RC_OK);
    EXPECT_EQ(Utf8(Access::Var(value).bstrVal), "self");
}

TEST(VariantExchange, Constructors) {
    VARIANT source = Make(VT_I2, 0);
    source.iVal = -3;
    const CVarion fromRef(source);
    const CVarion fromPtr(&source);
    EXPECT_EQ(fromRef.GetType(), VT_I2);
    EXPECT_EQ(static_cast<short>(fromRef), -3);
    EXPECT_EQ(Bytes(fromRef), Bytes(fromPtr));
    // Bytes beyond the member are zero.
    auto expected = Bytes(CVarion(static_cast<short>(-3)));
    EXPECT_EQ(Bytes(fromRef), expected);

    EXPECT_EQ(CVarion(static_cast<const VARIANT*>(nullptr)).GetType(), VT_EMPTY);
    EXPECT_EQ(CVarion(Make(VT_NULL, 0)).GetType(), VT_EMPTY);
    VARIANT byRef = Make(VT_BYREF | VT_I2, 0);
    EXPECT_EQ(CVarion(byRef).GetType(), VT_EMPTY);
}

// Durations and ISO date-times have no VARIANT code: they leave as their text.
TEST(VariantExchange, OwnCodesLeaveAsText) {
    struct Case {
        VARTYPE vt;
        double days;
        const char* text;
    };
    const Case cases[] = {
        {VTX_DURATION, 1.5, "1 12:00:00"},
        {VTX_DURATION_MSF, 0.5, "12:00:00"},
        {VTX_ISO_DURATION, 1.0, "PT86400S"},
        {VTX_ISO_DATETIME, 45000.5, "2023-03-15T12:00:00"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        const CVarion value(Make(c.vt, DoubleBits(c.days)));
        ASSERT_EQ(value.GetType(), c.vt);
        const auto before = Bytes(value);
        VARIANT target = Make(VT_BSTR, 0);
        target.bstrVal = SysAllocString(OLESTR("released first"));
        ASSERT_EQ(value.GetData(target), RC_OK);
        ASSERT_EQ(target.vt, VT_BSTR);
        EXPECT_EQ(Utf8(target.bstrVal), c.text);
        EXPECT_EQ(Bytes(value), before);
        VariantClear(&target);

        // No memory for the text: refused with an empty target.
        target = Make(VT_I4, 5);
        FailAllocationAfter(1);
        EXPECT_EQ(value.GetData(target), RC_NOT_CONVERTIBLE);
        FailAllocationAfter(0);
        EXPECT_EQ(target.vt, VT_EMPTY);
        EXPECT_EQ(Bytes(value), before);
    }
    // 102 and 103 leave under their own codes.
    for (VARTYPE vt : {VARTYPE(VTX_DATETIME_ALT), VARTYPE(VTX_DATETIME)}) {
        VARIANT target;
        VariantInit(&target);
        ASSERT_EQ(CVarion(Make(vt, DoubleBits(2.0))).GetData(target), RC_OK);
        EXPECT_EQ(target.vt, vt);
        EXPECT_EQ(target.dblVal, 2.0);
    }
}
