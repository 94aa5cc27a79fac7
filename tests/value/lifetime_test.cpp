// Construction, copy, assignment (with the fixed-size array rules), clearing
// and the zero values of InitType.
#include "platform/alloc.h"
#include "support/test_support.h"
#include "value/access.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <vector>

using varion::detail::Access;
using varion::detail::Load;
using varion::test::Bytes;
using varion::test::Utf8;

namespace {

// The elements of a one-dimensional array value, read through the block.
template <class T>
std::vector<T> Elements(const CVarion& v) {
    const SAFEARRAY* psa = Access::Var(v).parray;
    const T* data = static_cast<const T*>(psa->pvData);
    return std::vector<T>(data, data + psa->rgsabound[0].cElements);
}

CVarion ByteArray(std::initializer_list<unsigned char> bytes, bool fixed) {
    CVarion v(VT_UI1, fixed ? static_cast<long>(bytes.size()) : 0, 0);
    long i = 0;
    for (unsigned char b : bytes) v.SetElementValue(&b, i++);
    return v;
}

CVarion IntArray(std::initializer_list<std::int32_t> values, bool fixed) {
    CVarion v(VT_I4, fixed ? static_cast<long>(values.size()) : 0, 0);
    long i = 0;
    for (std::int32_t x : values) v.SetElementValue(&x, i++);
    return v;
}

bool IsFixed(const CVarion& v) { return (Access::Var(v).parray->fFeatures & FADF_FIXEDSIZE) != 0; }

}  // namespace

TEST(Construction, ScalarsTakeTheirTypeAndOnlyTheirBytes) {
    struct Case {
        CVarion value;
        VARTYPE type;
        std::vector<unsigned char> member;
    };
    const Case cases[] = {
        {CVarion(), VT_EMPTY, {}},
        {CVarion(true), VT_BOOL, {1}},
        {CVarion(false), VT_BOOL, {0}},
        {CVarion('A'), VT_I1, {0x41}},
        {CVarion(static_cast<signed char>(-2)), VT_I1, {0xFE}},
        {CVarion(static_cast<unsigned char>(200)), VT_UI1, {200}},
        {CVarion(static_cast<short>(-2)), VT_I2, {0xFE, 0xFF}},
        {CVarion(static_cast<unsigned short>(0x1234)), VT_UI2, {0x34, 0x12}},
        {CVarion(258), VT_I4, {2, 1, 0, 0}},
        {CVarion(4000000000u), VT_UI4, {0x00, 0x28, 0x6B, 0xEE}},
        {CVarion(5L), VT_I4, {5, 0, 0, 0}},
        {CVarion(-5000000000L), VT_I8, {0x00, 0x0E, 0xFA, 0xD5, 0xFE, 0xFF, 0xFF, 0xFF}},
        {CVarion(7UL), VT_UI4, {7, 0, 0, 0}},
        {CVarion(1ULL << 40), VT_UI8, {0, 0, 0, 0, 0, 1, 0, 0}},
        {CVarion(static_cast<LONGLONG>(-1)), VT_I8, {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}},
        {CVarion(1.0f), VT_R4, {0x00, 0x00, 0x80, 0x3F}},
        {CVarion(1.0), VT_R8, {0, 0, 0, 0, 0, 0, 0xF0, 0x3F}},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(c.value.GetType(), c.type);
        const auto b = Bytes(c.value);
        for (std::size_t i = 2; i < 16; ++i) {
            const std::size_t k = i - 8;
            const unsigned char want = (i >= 8 && k < c.member.size()) ? c.member[k] : 0;
            EXPECT_EQ(b[i], want) << "type " << c.type << " byte " << i;
        }
    }
}

TEST(Construction, Strings) {
    EXPECT_EQ(Utf8(static_cast<CString>(CVarion(OLESTR("abc")))), "abc");
    EXPECT_EQ(Utf8(static_cast<CString>(CVarion("Ländereinstellung"))), "Ländereinstellung");
    EXPECT_EQ(Utf8(static_cast<CString>(CVarion(L"\U0001F600x"))), "\U0001F600x");
    EXPECT_EQ(Utf8(static_cast<CString>(CVarion(CString("x")))), "x");
    EXPECT_EQ(CVarion(static_cast<const OLECHAR*>(nullptr)).GetType(), VT_EMPTY);
    EXPECT_EQ(CVarion(static_cast<const char*>(nullptr)).GetType(), VT_EMPTY);
    EXPECT_EQ(CVarion(static_cast<const wchar_t*>(nullptr)).GetType(), VT_EMPTY);
    // A CString's text is taken up to its first zero code unit.
    const OLECHAR withZero[] = {'a', 0, 'b'};
    CVarion v(CString(withZero, 3));
    EXPECT_EQ(SysStringLen(Access::Var(v).bstrVal), 1u);
}

TEST(Construction, FailedStringAllocationGivesEmpty) {
    varion::detail::FailAllocationAfter(1);
    CVarion v(OLESTR("abc"));
    varion::detail::FailAllocationAfter(0);
    EXPECT_EQ(v.GetType(), VT_EMPTY);
}

TEST(Copy, DuplicatesStringsAndArraysAndDropsUnknownCodes) {
    CVarion s(OLESTR("text"));
    CVarion copy(s);
    EXPECT_NE(Access::Var(copy).bstrVal, Access::Var(s).bstrVal);
    EXPECT_EQ(Utf8(static_cast<CString>(copy)), "text");

    CVarion fixed = IntArray({1, 2, 3}, true);
    CVarion fixedCopy(fixed);
    EXPECT_EQ(fixedCopy.GetType(), VT_I4 | VT_ARRAY);
    EXPECT_TRUE(IsFixed(fixedCopy));
    EXPECT_NE(Access::Var(fixedCopy).parray, Access::Var(fixed).parray);
    EXPECT_EQ(Elements<std::int32_t>(fixedCopy), (std::vector<std::int32_t>{1, 2, 3}));

    CVarion odd(1.0);
    for (VARTYPE code : std::initializer_list<VARTYPE>{VT_NULL, VT_CY, VT_DECIMAL, 104, 0x4003}) {
        Access::Var(odd).vt = code;
        EXPECT_EQ(CVarion(odd).GetType(), VT_EMPTY) << code;
    }
    Access::Var(odd).vt = VT_R8;

    CVarion date(45000.5);
    Access::Var(date).vt = VTX_ISO_DATETIME;
    CVarion dateCopy(date);
    EXPECT_EQ(dateCopy.GetType(), VTX_ISO_DATETIME);
    EXPECT_EQ(Load<double>(Access::Var(dateCopy)), 45000.5);
}

TEST(Copy, MoveTakesTheContent) {
    CVarion s(OLESTR("text"));
    const BSTR held = Access::Var(s).bstrVal;
    CVarion moved(std::move(s));
    EXPECT_EQ(s.GetType(), VT_EMPTY);  // NOLINT(bugprone-use-after-move): documented state
    EXPECT_EQ(Access::Var(moved).bstrVal, held);
}

TEST(Assignment, ScalarsStringsAndSelf) {
    CVarion d(OLESTR("old"));
    d = CVarion(7);
    EXPECT_EQ(d.GetType(), VT_I4);
    EXPECT_EQ(static_cast<long>(d), 7);

    CVarion s(OLESTR("new"));
    d = s;
    EXPECT_EQ(Utf8(static_cast<CString>(d)), "new");
    EXPECT_NE(Access::Var(d).bstrVal, Access::Var(s).bstrVal);

    const BSTR held = Access::Var(d).bstrVal;
    CVarion& alias = d;
    d = alias;
    EXPECT_EQ(Access::Var(d).bstrVal, held);
    EXPECT_EQ(Utf8(static_cast<CString>(d)), "new");

    CVarion a = IntArray({1, 2}, false);
    SAFEARRAY* array = Access::Var(a).parray;
    CVarion& arrayAlias = a;
    a = arrayAlias;
    EXPECT_EQ(Access::Var(a).parray, array);
}

TEST(Assignment, CarriesTheReservedWords) {
    CVarion s(1);
    Access::Var(s).wReserved1 = 0x1111;
    Access::Var(s).wReserved3 = 0x3333;
    CVarion d;
    d = s;
    EXPECT_EQ(Access::Var(d).wReserved1, 0x1111);
    EXPECT_EQ(Access::Var(d).wReserved3, 0x3333);
}

TEST(Assignment, FailedStringCopyLeavesAStringWithoutText) {
    CVarion s(OLESTR("abc"));
    CVarion d(1);
    varion::detail::FailAllocationAfter(1);
    d = s;
    varion::detail::FailAllocationAfter(0);
    EXPECT_EQ(d.GetType(), VT_BSTR);
    EXPECT_EQ(Access::Var(d).bstrVal, nullptr);
    EXPECT_EQ(Utf8(static_cast<CString>(d)), "");
}

TEST(Assignment, ArrayDestinationRules) {
    // Another type code or a scalar empties an array destination.
    CVarion d = IntArray({1, 2, 3}, false);
    d = CVarion(4);
    EXPECT_EQ(d.GetType(), VT_EMPTY);
    d = IntArray({1, 2, 3}, false);
    d = ByteArray({1}, false);
    EXPECT_EQ(d.GetType(), VT_EMPTY);

    // A resizable destination takes a copy with the source's flags.
    d = IntArray({1}, false);
    d = IntArray({7, 8, 9}, true);
    EXPECT_EQ(Elements<std::int32_t>(d), (std::vector<std::int32_t>{7, 8, 9}));
    EXPECT_TRUE(IsFixed(d));

    // A fixed-size destination keeps its size: a smaller source is enlarged.
    CVarion fixed = IntArray({0, 0, 0, 0, 0}, true);
    fixed = IntArray({1, 2, 3}, false);
    EXPECT_EQ(Elements<std::int32_t>(fixed), (std::vector<std::int32_t>{1, 2, 3, 0, 0}));
    EXPECT_TRUE(IsFixed(fixed));
    // ... also when the smaller source is itself fixed-size.
    fixed = IntArray({4, 5}, true);
    EXPECT_EQ(Elements<std::int32_t>(fixed), (std::vector<std::int32_t>{4, 5, 0, 0, 0}));
    EXPECT_TRUE(IsFixed(fixed));
    // A source of the same size is copied with the copy's own flags.
    fixed = IntArray({6, 7, 8, 9, 10}, false);
    EXPECT_EQ(Elements<std::int32_t>(fixed), (std::vector<std::int32_t>{6, 7, 8, 9, 10}));
    EXPECT_FALSE(IsFixed(fixed));
    // A larger source empties a fixed-size destination.
    CVarion small = IntArray({0, 0, 0, 0, 0}, true);
    small = IntArray({1, 2, 3, 4, 5, 6, 7}, false);
    EXPECT_EQ(small.GetType(), VT_EMPTY);

    // A fixed byte array keeps its size either way.
    CVarion bytes = ByteArray({9, 9, 9, 9, 9}, true);
    bytes = ByteArray({1, 2, 3}, false);
    EXPECT_EQ(Elements<unsigned char>(bytes), (std::vector<unsigned char>{1, 2, 3, 0, 0}));
    EXPECT_TRUE(IsFixed(bytes));
    bytes = ByteArray({1, 2, 3, 4, 5, 6, 7}, false);
    EXPECT_EQ(Elements<unsigned char>(bytes), (std::vector<unsigned char>{1, 2, 3, 4, 5}));
    EXPECT_TRUE(IsFixed(bytes));
}

TEST(Assignment, TwoDimensionalFixedArrays) {
    CVarion d(VT_I4, 2, 3);  // bound B 2, bound A 3
    CVarion small(VT_I4, 1, 2);
    std::int32_t x = 42;
    small.SetElementValue(&x, 1, 0);
    d = small;
    ASSERT_EQ(d.GetType(), VT_I4 | VT_ARRAY);
    const SAFEARRAY* psa = Access::Var(d).parray;
    EXPECT_EQ(psa->rgsabound[0].cElements, 3u);  // bound A back at the destination's count
    EXPECT_EQ(psa->rgsabound[1].cElements, 1u);  // bound B keeps the source's
    std::int32_t got = 0;
    d.GetElementValue(&got, 1, 0);
    EXPECT_EQ(got, 42);

    CVarion d2(VT_I4, 2, 3);
    d2 = CVarion(VT_I4, 3, 3);  // larger along bound B
    EXPECT_EQ(d2.GetType(), VT_EMPTY);
    CVarion d3(VT_I4, 2, 3);
    d3 = CVarion(VT_I4, 5, 0);  // another number of dimensions
    EXPECT_EQ(d3.GetType(), VT_EMPTY);
}

TEST(Clear, ReleasesAndEmpties) {
    CVarion s(OLESTR("x"));
    s.Clear();
    EXPECT_EQ(s.GetType(), VT_EMPTY);
    CVarion a = IntArray({1}, true);
    a.Clear();
    EXPECT_EQ(a.GetType(), VT_EMPTY);
    a.Clear();
    EXPECT_EQ(a.GetType(), VT_EMPTY);
}

TEST(InitType, ZeroValuesAndRefusals) {
    for (unsigned code = 0; code <= 0xFFFF; ++code) {
        const auto t = static_cast<VARTYPE>(code);
        CVarion v;
        const long rc = varion::detail::Access::InitType(v, t);
        const bool known = code == 0 || CVarion::IsNumericType(t) || CVarion::IsAnyDateType(t) || code == 8 ||
                           code == 0x2011;
        ASSERT_EQ(rc, known ? RC_OK : RC_NOT_CONVERTIBLE) << code;
        ASSERT_EQ(v.GetType(), known ? t : VARTYPE{VT_EMPTY}) << code;
        if (known && code != 0) {
            if (code == 8)
                ASSERT_EQ(SysStringLen(Access::Var(v).bstrVal), 0u);
            else if (code == 0x2011)
                ASSERT_EQ(v.GetElementCount(), 0u);
            else
                ASSERT_EQ(Load<std::uint64_t>(Access::Var(v)), 0u) << code;
        }
    }
}

TEST(InitType, ClearsWhatItHeld) {
    CVarion v(OLESTR("x"));
    EXPECT_EQ(varion::detail::Access::InitType(v, VT_NULL), RC_NOT_CONVERTIBLE);
    EXPECT_EQ(v.GetType(), VT_EMPTY);
}

TEST(IsNull, FollowsTheBooleanReading) {
    EXPECT_EQ(CVarion(0).IsNull(), 1);
    EXPECT_EQ(CVarion(5).IsNull(), 0);
    EXPECT_EQ(CVarion().IsNull(), 1);
    EXPECT_EQ(CVarion(-0.0).IsNull(), 1);
    EXPECT_EQ(CVarion(std::numeric_limits<double>::quiet_NaN()).IsNull(), 0);
    EXPECT_EQ(CVarion(VT_I4, 2, 0).IsNull(), 1);  // an array cannot become a Boolean
}
