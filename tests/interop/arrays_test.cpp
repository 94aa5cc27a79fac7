// Array values: construction, growth, the fixed-size rules, typed access and
// concatenation.
#include "support/test_support.h"
#include "value/access.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

using varion::detail::Access;
using varion::test::Utf8;

namespace {

template <class T>
std::vector<T> Read(const CVarion& v) {
    std::vector<T> out;
    for (unsigned long i = 0; i < v.GetElementCount(); ++i) {
        T x{};
        v.GetElementValue(&x, static_cast<long>(i));
        out.push_back(x);
    }
    return out;
}

}  // namespace

TEST(ArrayConstructor, ShapesFixednessAndRefusals) {
    const struct { long count1, count2; unsigned dims; unsigned long count; bool fixed; } cases[] = {
        {5, 0, 1, 5, true}, {-1, 0, 1, 0, false}, {0, 0, 1, 0, false}, {0, 7, 1, 0, false},
        {3, 4, 2, 4, true}, {6, -3, 1, 6, true},
    };
    for (const auto& c : cases) {
        CVarion v(VT_I4, c.count1, c.count2);
        ASSERT_EQ(v.GetType(), VT_I4 | VT_ARRAY) << c.count1 << "," << c.count2;
        SAFEARRAY* psa = Access::Var(v).parray;
        EXPECT_TRUE(v.isArray() && SafeArrayGetDim(psa) == c.dims && v.GetElementCount() == c.count);
        EXPECT_EQ((psa->fFeatures & FADF_FIXEDSIZE) != 0, c.fixed);
        EXPECT_TRUE(c.dims != 2 || psa->rgsabound[1].cElements == static_cast<ULONG>(c.count1));  // bound B
    }
    for (VARTYPE t : std::initializer_list<VARTYPE>{VT_EMPTY, VTX_DURATION, VT_RECORD, 0x2003, 0x7FFF})
        EXPECT_EQ(CVarion(t, 3, 0).GetType(), VT_EMPTY) << t;
    EXPECT_EQ(CVarion(VT_I4, -2, 0).GetType(), VT_EMPTY);
    EXPECT_EQ(CVarion(VT_I4, 0x7FFFFFFF, 0x7FFFFFFF).GetType(), VT_EMPTY);  // too large to allocate
    EXPECT_TRUE(CVarion(5).GetElementCount() == 0u && !CVarion(5).isArray());
}

TEST(ArrayAccess, ResizableArraysGrowFixedOnesIgnoreOutOfRange) {
    CVarion v(VT_I4, 0, 0);
    const std::int32_t nine = 9;
    v.SetElementValue(&nine, 9);
    EXPECT_EQ(Read<std::int32_t>(v), (std::vector<std::int32_t>{0, 0, 0, 0, 0, 0, 0, 0, 0, 9}));
    CVarion three(VT_I8, -1, 0);
    std::int64_t got = 77;
    three.GetElementValue(&got, 5);  // a read grows the array too
    EXPECT_TRUE(three.GetElementCount() == 6u && got == 0);

    CVarion fixed(VT_I4, 5, 0);
    std::int32_t untouched = 42;
    // Beyond any 32-bit index where long has 64 bits.
    for (const long index : {5L, -1L, std::numeric_limits<long>::max()}) {
        fixed.SetElementValue(&nine, index);
        fixed.GetElementValue(&untouched, index);
    }
    EXPECT_EQ(untouched, 42);
    EXPECT_EQ(Read<std::int32_t>(fixed), (std::vector<std::int32_t>{0, 0, 0, 0, 0}));
}

TEST(ArrayAccess, TwoDimensionalElements) {
    CVarion v(VT_I2, 2, 3);  // bound B 2 rows, bound A 3 columns
    for (long j = 0; j < 2; ++j)
        for (long i = 0; i < 3; ++i) {
            const auto x = static_cast<std::int16_t>(10 * j + i);
            v.SetElementValue(&x, i, j);
        }
    const auto* block = static_cast<const std::int16_t*>(Access::Var(v).parray->pvData);
    // (1, 1) lies at 1 + 1 x 3 where bound A varies fastest (the stand-ins),
    // at 1 + 1 x 2 where bound B does (the Windows services).
    EXPECT_EQ(block[varion::test::kStandInServices ? 4 : 3], 11);
    std::int16_t got = -1;
    v.GetElementValue(&got, 2, 1);
    EXPECT_EQ(got, 12);
    const std::int16_t y = 99;
    v.SetElementValue(&y, 0, 2);  // j beyond bound B: nothing written
    EXPECT_EQ(Read<std::int16_t>(v), (std::vector<std::int16_t>{0, 1, 2}));  // one index reads (i, 0)
}

TEST(ArrayAccess, BooleansStringsAndVariants) {
    CVarion flags(VT_BOOL, 2, 0);
    const bool yes = true;
    flags.SetElementValue(&yes, 1);
    const auto* raw = static_cast<const VARIANT_BOOL*>(Access::Var(flags).parray->pvData);
    EXPECT_TRUE(raw[1] == VARIANT_TRUE && raw[0] == 0);
    EXPECT_EQ(Read<bool>(flags), (std::vector<bool>{false, true}));

    CVarion texts(VT_BSTR, 0, 0);
    const CString a("alpha");
    texts.SetElementValue(&a, 1);  // a null element reads as the empty text
    EXPECT_EQ(Read<CString>(texts), (std::vector<CString>{CString(), a}));

    CVarion values(VT_VARIANT, 3, 0);
    const CVarion text(OLESTR("in"));
    values.SetElementValue(&text, 2);
    CVarion out(7);
    values.GetElementValue(&out, 2);
    EXPECT_EQ(Utf8(static_cast<CString>(out)), "in");
}

TEST(ArrayAccess, TypedAccessorsRefuseMismatchedElements) {
    CVarion v(VT_I4, 2, 0);
    const std::int32_t x = 0x01020304;
    v.SetElementValue(&x, 0);
    std::int64_t wide = 77;
    bool flag = false;
    CString text("keep");
    v.GetElementValue(&wide, 0);
    v.GetElementValue(&flag, 0);
    v.GetElementValue(&text, 0);
    EXPECT_TRUE(wide == 77 && !flag && Utf8(text) == "keep");
    float f = 0;  // same size as the element: accepted as raw bytes
    v.GetElementValue(&f, 0);
    std::int32_t bits = 0;
    std::memcpy(&bits, &f, 4);
    EXPECT_EQ(bits, 0x01020304);
    std::int32_t untouched = 3;
    CVarion(5).GetElementValue(&untouched, 0);  // not an array
    EXPECT_EQ(untouched, 3);
}

TEST(Concat, JoinsArraysOfOneTypeCodeAndRefusesOthers) {
    CVarion a(VT_UI1, 0, 0);
    CVarion b(VT_UI1, 0, 0);
    for (unsigned char x : std::initializer_list<unsigned char>{1, 2})
        a.SetElementValue(&x, static_cast<long>(a.GetElementCount()));
    const unsigned char three = 3;
    b.SetElementValue(&three, 0);
    const CVarion joined = a.CONCAT_ARRAY(b);
    EXPECT_TRUE(joined.GetType() == 0x2011 && Read<unsigned char>(joined) == (std::vector<unsigned char>{1, 2, 3}));
    EXPECT_EQ(a.GetElementCount(), 2u);  // operands unchanged

    CVarion s1(VT_BSTR, 0, 0);
    CVarion s2(VT_BSTR, 2, 0);
    const CString x("x");
    s1.SetElementValue(&x, 0);
    s2.SetElementValue(&x, 1);
    const CVarion strings = s1.CONCAT_ARRAY(s2);
    EXPECT_NE(Access::Var(strings).parray, Access::Var(s1).parray);
    EXPECT_EQ(Read<CString>(strings), (std::vector<CString>{CString("x"), CString(), CString("x")}));

    const CVarion ints(VT_I4, 2, 0);
    for (const CVarion& r : {ints.CONCAT_ARRAY(CVarion(VT_R8, 2, 0)), ints.CONCAT_ARRAY(CVarion(5)),
                             CVarion(5).CONCAT_ARRAY(CVarion(5)), CVarion(VT_I4, 2, 2).CONCAT_ARRAY(ints)})
        EXPECT_TRUE(r.GetType() == VT_I2 && static_cast<short>(r) == -1);
}
