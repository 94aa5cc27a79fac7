// Values handed in and out as Automation VARIANTs: what is copied, what is
// refused, and what is released on the way.
#include <varion/varion.h>

#include "platform/alloc.h"
#include "support/test_support.h"
#include "value/access.h"

#include <gtest/gtest.h>

#include <bit>
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

std::uint64_t DoubleBits(double d) { return std::bit_cast<std::uint64_t>(d); }

VARIANT Text(const OLECHAR* text) {
    VARIANT v = Make(VT_BSTR, 0);
    v.bstrVal = SysAllocString(text);
    return v;
}

// A value made from a raw record of six bytes: the way to any type code.
CVarion Tagged(VARTYPE vt) {
    const unsigned char record[] = {6, 0, 0, 0, static_cast<unsigned char>(vt), static_cast<unsigned char>(vt >> 8)};
    CVarion value;
    value.SetTypeValue(reinterpret_cast<const char*>(record));
    return value;
}

// A fixed-size array of three VT_I4 elements 1, 2, 3.
SAFEARRAY* FixedIntArray() {
    SAFEARRAY* psa = SafeArrayCreateVector(VT_I4, 0, 3);
    const std::int32_t items[] = {1, 2, 3};
    std::memcpy(psa->pvData, items, sizeof items);
    psa->fFeatures = static_cast<USHORT>(psa->fFeatures | FADF_FIXEDSIZE);
    return psa;
}

std::int32_t IntAt(SAFEARRAY* psa, LONG i) { return static_cast<const std::int32_t*>(psa->pvData)[i]; }

// An interface that counts the references taken and released on it.
struct CountingUnknown final : IUnknown {
    int calls = 0;
    HRESULT QueryInterface(const IID&, void** out) override { return *out = nullptr, E_NOTIMPL; }
    ULONG AddRef() override { return static_cast<ULONG>(++calls); }
    ULONG Release() override { return static_cast<ULONG>(++calls); }
};

}  // namespace

// Every exchangeable scalar: what SetData holds and what GetData gives back.
TEST(VariantExchange, ScalarsRoundTrip) {
    const struct {
        VARTYPE in;
        std::uint64_t bits;
        int width;  // member bytes compared
        VARTYPE held;
        std::uint64_t heldBits;  // held and given back
    } cases[] = {
        {VT_EMPTY, 0, 0, VT_EMPTY, 0},        {VT_I2, 0x8001, 2, VT_I2, 0x8001},   {VT_INT, 7, 4, VT_I4, 7},
        {VT_UINT, 0xFFFFFFFFu, 4, VT_UI4, 0xFFFFFFFFu},  {VT_R4, 0x3F800000u, 4, VT_R4, 0x3F800000u},
        {VT_DATE, DoubleBits(45000.25), 8, VT_DATE, DoubleBits(45000.25)}, {VT_I1, 0x80, 1, VT_I1, 0x80},
        {VT_UI8, 0xFFFFFFFFFFFFFFFFull, 8, VT_UI8, 0xFFFFFFFFFFFFFFFFull},
        // Any non-zero VARIANT_BOOL is true, held as the byte 1 and given out as 1.
        {VT_BOOL, 0xFFFF, 2, VT_BOOL, 1}, {VT_BOOL, 0x0100, 2, VT_BOOL, 1}, {VT_BOOL, 0, 2, VT_BOOL, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.in);
        CVarion value("old content");
        ASSERT_EQ(value.SetData(Make(c.in, c.bits)), RC_OK);
        EXPECT_TRUE(value.GetType() == c.held && Bits(Access::Var(value), c.held == VT_BOOL ? 1 : c.width) == c.heldBits);
        VARIANT out = Make(VT_I4, 0x5A5A5A5A5A5A5A5Aull);
        ASSERT_EQ(value.GetData(out), RC_OK);
        EXPECT_TRUE(out.vt == c.held && Bits(out, c.width) == c.heldBits) << out.vt;
        EXPECT_EQ(value.GetType(), c.held);  // the value keeps its content
    }
}

TEST(VariantExchange, Refusals) {
    const VARIANT refused[] = {
        Make(VT_NULL, 0x1234), Make(VT_DISPATCH, 0x1234), Make(VT_DECIMAL, 0x1234), Make(104, 0x1234),
        Make(0x1FFF, 0x1234),
        Make(VT_BSTR, 0),            // a null string
        Make(VT_ARRAY | VT_I4, 0),   // an array code without an array
    };
    for (const VARIANT& source : refused) {
        CVarion value("held before");
        EXPECT_EQ(value.SetData(source), RC_NOT_CONVERTIBLE) << source.vt;
        EXPECT_TRUE(value.GetType() == VT_EMPTY && CVarion(source).GetType() == VT_EMPTY) << source.vt;
    }
    EXPECT_EQ(CVarion(static_cast<const VARIANT*>(nullptr)).GetType(), VT_EMPTY);
    // Codes a record can set but a VARIANT cannot take empty the target.
    for (VARTYPE vt : std::initializer_list<VARTYPE>{VT_NULL, VT_INT, VARTYPE(104)}) {
        const CVarion value = Tagged(vt);
        ASSERT_EQ(value.GetType(), vt);
        VARIANT target = Text(OLESTR("released"));
        EXPECT_TRUE(value.GetData(target) == RC_NOT_CONVERTIBLE && target.vt == VT_EMPTY) << vt;
    }
    // By reference is refused both ways, and nothing changes.
    CVarion value("kept");
    const auto before = Bytes(value);
    LONG referenced = 5;
    VARIANT byRef = Make(VT_I4 | VT_BYREF, 0);
    byRef.plVal = &referenced;
    EXPECT_EQ(value.SetData(byRef), RC_NOT_APPLICABLE);
    EXPECT_EQ(Bytes(value), before);
    EXPECT_EQ(CVarion(byRef).GetType(), VT_EMPTY);
    VARIANT target = Make(VT_R8, DoubleBits(3.0));
    EXPECT_EQ(Tagged(VT_I4 | VT_BYREF).GetData(target), RC_NOT_APPLICABLE);
    EXPECT_TRUE(target.vt == VT_R8 && Bits(target, 8) == DoubleBits(3.0));
}

// Strings and arrays are copied each way; a failed copy empties the receiver.
TEST(VariantExchange, OwnedContentIsDuplicatedEachWay) {
    const OLECHAR text[] = {OLESTR('a'), OLESTR('b'), 0, OLESTR('c')};
    VARIANT sources[2] = {Make(VT_BSTR, 0), Make(VT_ARRAY | VT_I4, 0)};
    sources[0].bstrVal = SysAllocStringLen(text, 4);  // copied up to its first zero
    sources[1].parray = FixedIntArray();
    for (VARIANT& source : sources) {
        SCOPED_TRACE(source.vt);
        const VARIANT given = source;
        CVarion value("held");
        FailAllocationAfter(1);
        EXPECT_EQ(value.SetData(source), RC_NOT_CONVERTIBLE);
        FailAllocationAfter(0);
        EXPECT_EQ(value.GetType(), VT_EMPTY);
        ASSERT_EQ(value.SetData(source), RC_OK);
        ASSERT_EQ(value.GetType(), source.vt);
        EXPECT_NE(Access::Var(value).llVal, source.llVal);
        VARIANT target = Text(OLESTR("old"));
        FailAllocationAfter(1);
        EXPECT_EQ(value.GetData(target), RC_NOT_CONVERTIBLE);
        FailAllocationAfter(0);
        EXPECT_EQ(target.vt, VT_EMPTY);
        ASSERT_EQ(value.GetData(target), RC_OK);
        ASSERT_EQ(target.vt, source.vt);
        EXPECT_NE(target.llVal, Access::Var(value).llVal);
        EXPECT_EQ(std::memcmp(&given, &source, sizeof given), 0);  // the caller's VARIANT is neither changed
        if ((source.vt & VT_ARRAY) != 0) {
            SAFEARRAY* held = Access::Var(value).parray;
            EXPECT_EQ(held->fFeatures, source.parray->fFeatures);
            EXPECT_EQ(target.parray->fFeatures, held->fFeatures);
            VariantClear(&source);  // ... nor released
            static_cast<std::int32_t*>(target.parray->pvData)[0] = 9;
            EXPECT_EQ(IntAt(held, 0), 1);
            VariantClear(&target);
            EXPECT_EQ(IntAt(held, 2), 3);
        } else {
            VariantClear(&source);
            EXPECT_EQ(SysStringLen(Access::Var(value).bstrVal), 2u);
            value.Clear();
            EXPECT_EQ(Utf8(target.bstrVal), "ab");
            VariantClear(&target);
        }
    }
}

TEST(VariantExchange, InterfacePointersPassWithoutReferences) {
    CountingUnknown unknown;
    VARIANT source = Make(VT_UNKNOWN, 0);
    source.punkVal = &unknown;
    {
        CVarion value(source);
        CVarion copy(value);
        CVarion assigned;
        assigned = value;
        EXPECT_EQ(Access::Var(assigned).punkVal, &unknown);
        VARIANT target = Make(VT_EMPTY, 0);  // a receiver must not release a pointer obtained this way
        ASSERT_EQ(value.GetData(target), RC_OK);
        EXPECT_TRUE(target.vt == VT_UNKNOWN && target.punkVal == &unknown);
        value.Clear();
        copy.SetData(Make(VT_I4, 1));
    }
    EXPECT_EQ(unknown.calls, 0);
}

TEST(VariantExchange, GetDataReleasesWhatTheTargetHeld) {
    VARIANT target = Text(OLESTR("to be released"));
    CVarion value(static_cast<short>(4));
    ASSERT_EQ(value.GetData(target), RC_OK);  // the leak check sees the string freed
    EXPECT_TRUE(target.vt == VT_I2 && target.iVal == 4);
    // A target carrying one of this library's own codes holds a double only.
    VARIANT own = Make(VTX_DATETIME, DoubleBits(2.0));
    ASSERT_EQ(value.GetData(own), RC_OK);
    EXPECT_EQ(own.vt, VT_I2);
    // A target whose content cannot be released is left alone, and the copy
    // made for it is released again (leak check).
    VARIANT unknownCode = Make(0x0FFF, 77);
    for (const CVarion& v : {value, CVarion("copied, then released")}) {
        EXPECT_EQ(v.GetData(unknownCode), RC_NOT_CONVERTIBLE);
        EXPECT_TRUE(unknownCode.vt == 0x0FFF && unknownCode.llVal == 77);
    }
}

TEST(VariantExchange, ValueHandedItsOwnVariant) {
    CVarion value("self");
    EXPECT_TRUE(value.SetData(Access::Var(value)) == RC_OK && Utf8(Access::Var(value).bstrVal) == "self");
    CVarion array(static_cast<unsigned short>(VT_I4), 3, 0);
    EXPECT_TRUE(array.SetData(Access::Var(array)) == RC_OK && array.GetElementCount() == 3u);
    // GetData into the value's own VARIANT: the copy is made before the clear.
    EXPECT_TRUE(value.GetData(Access::Var(value)) == RC_OK && Utf8(Access::Var(value).bstrVal) == "self");
    // Both constructors zero the bytes beyond the member.
    VARIANT source = Make(VT_I2, 0);
    source.iVal = -3;
    EXPECT_EQ(Bytes(CVarion(source)), Bytes(CVarion(static_cast<short>(-3))));
    EXPECT_EQ(Bytes(CVarion(&source)), Bytes(CVarion(static_cast<short>(-3))));
}

// Durations and ISO date-times are held as they come but have no VARIANT
// code: they leave as their text; 102 and 103 leave under their own codes.
TEST(VariantExchange, OwnCodes) {
    const struct { VARTYPE vt; double days; const char* text; } cases[] = {
        {VTX_DURATION, 1.5, "1 12:00:00"},
        {VTX_ISO_DATETIME, 45000.5, "2023-03-15T12:00:00"},
        {VTX_DATETIME, 2.0, nullptr},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.vt);
        CVarion value;
        ASSERT_EQ(value.SetData(Make(c.vt, DoubleBits(c.days))), RC_OK);
        ASSERT_TRUE(value.GetType() == c.vt && Bits(Access::Var(value), 8) == DoubleBits(c.days));
        const auto before = Bytes(value);
        VARIANT target = Text(OLESTR("released first"));
        ASSERT_EQ(value.GetData(target), RC_OK);
        if (c.text == nullptr) {
            EXPECT_TRUE(target.vt == c.vt && Bits(target, 8) == DoubleBits(c.days));
            continue;
        }
        ASSERT_EQ(target.vt, VT_BSTR);
        EXPECT_TRUE(Utf8(target.bstrVal) == c.text && Bytes(value) == before);
        VariantClear(&target);
        // No memory for the text: refused with an empty target.
        target = Make(VT_I4, 5);
        FailAllocationAfter(1);
        EXPECT_EQ(value.GetData(target), RC_NOT_CONVERTIBLE);
        FailAllocationAfter(0);
        EXPECT_TRUE(target.vt == VT_EMPTY && Bytes(value) == before);
    }
}
