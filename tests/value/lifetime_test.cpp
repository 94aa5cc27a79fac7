// Construction, copy, assignment (with the fixed-size array rules), clearing
// and the zero values of InitType.
#include "platform/alloc.h"
#include "support/test_support.h"
#include "value/access.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <tuple>
#include <utility>
#include <vector>

using varion::detail::Access;
using varion::detail::FailAllocationAfter;
using varion::detail::IsArrayType;
using varion::detail::Load;
using varion::test::Bytes;
using varion::test::Utf8;

namespace {

// A one-dimensional VT_I4 or VT_UI1 array value and its elements.
CVarion Array(VARTYPE t, std::initializer_list<long> values, bool fixed) {
    CVarion v(t, fixed ? static_cast<long>(values.size()) : 0, 0);
    long i = 0;
    for (long x : values) {
        const std::int32_t word = static_cast<std::int32_t>(x);
        const unsigned char byte = static_cast<unsigned char>(x);
        if (t == VT_UI1) v.SetElementValue(&byte, i++);
        else v.SetElementValue(&word, i++);
    }
    return v;
}

std::vector<long> Elements(const CVarion& v) {
    const SAFEARRAY* psa = Access::Var(v).parray;
    std::vector<long> out;
    for (ULONG i = 0; i < psa->rgsabound[0].cElements; ++i)
        out.push_back(psa->cbElements == 1 ? static_cast<const unsigned char*>(psa->pvData)[i]
                                           : static_cast<const std::int32_t*>(psa->pvData)[i]);
    return out;
}

bool IsFixed(const CVarion& v) { return (Access::Var(v).parray->fFeatures & FADF_FIXEDSIZE) != 0; }

}  // namespace

TEST(Construction, ScalarsTakeTheirTypeAndOnlyTheirBytes) {
    struct Case { CVarion value; VARTYPE type; std::vector<unsigned char> member; };
    const Case cases[] = {
        {CVarion(), VT_EMPTY, {}},                                {CVarion(true), VT_BOOL, {1}},
        {CVarion('A'), VT_I1, {0x41}},                            {CVarion(static_cast<signed char>(-2)), VT_I1, {0xFE}},
        {CVarion(static_cast<unsigned char>(200)), VT_UI1, {200}}, {CVarion(static_cast<short>(-2)), VT_I2, {0xFE, 0xFF}},
        {CVarion(static_cast<unsigned short>(0x1234)), VT_UI2, {0x34, 0x12}},
        {CVarion(258), VT_I4, {2, 1, 0, 0}},                      {CVarion(4000000000u), VT_UI4, {0x00, 0x28, 0x6B, 0xEE}},
        {CVarion(7UL), VT_UI4, {7, 0, 0, 0}},
        {CVarion(-5000000000L), VT_I8, {0x00, 0x0E, 0xFA, 0xD5, 0xFE, 0xFF, 0xFF, 0xFF}},
        {CVarion(1ULL << 40), VT_UI8, {0, 0, 0, 0, 0, 1, 0, 0}},  {CVarion(1.0), VT_R8, {0, 0, 0, 0, 0, 0, 0xF0, 0x3F}},
        {CVarion(1.0f), VT_R4, {0x00, 0x00, 0x80, 0x3F}},  // a single, not widened
    };
    for (const Case& c : cases) {
        std::array<unsigned char, 16> want{};
        std::memcpy(want.data(), &c.type, sizeof c.type);
        std::copy(c.member.begin(), c.member.end(), want.begin() + 8);
        EXPECT_EQ(Bytes(c.value), want) << "type " << c.type;
    }
}

TEST(Construction, Strings) {
    EXPECT_EQ(Utf8(static_cast<CString>(CVarion("Ländereinstellung"))), "Ländereinstellung");
    EXPECT_EQ(Utf8(static_cast<CString>(CVarion(L"\U0001F600x"))), "\U0001F600x");
    for (const CVarion& none : {CVarion(static_cast<const OLECHAR*>(nullptr)), CVarion(static_cast<const char*>(nullptr)),
                                CVarion(static_cast<const wchar_t*>(nullptr))})
        EXPECT_EQ(none.GetType(), VT_EMPTY);
    // A CString's text is taken up to its first zero code unit.
    const OLECHAR withZero[] = {'a', 0, 'b'};
    CVarion v(CString(withZero, 3));
    EXPECT_EQ(SysStringLen(Access::Var(v).bstrVal), 1u);
    // No string could be made: an empty value.
    FailAllocationAfter(1);
    CVarion failed(OLESTR("abc"));
    FailAllocationAfter(0);
    EXPECT_EQ(failed.GetType(), VT_EMPTY);
}

// For every code that is not a string or an array the copy keeps the type
// and the value field and zeroes the reserved words, or (VT_EMPTY, VT_NULL,
// codes without a value of their own) is all zero bytes.
TEST(Copy, EveryCodeWithoutContent) {
    for (unsigned code = 0; code <= 0xFFFF; ++code) {
        const auto t = static_cast<VARTYPE>(code);
        if (t == VT_BSTR || IsArrayType(t)) continue;  // their content is duplicated
        CVarion source(0x1122334455667788LL);
        VARIANT& var = Access::Var(source);
        var.vt = t;
        var.wReserved1 = 0xAAAA;
        var.wReserved2 = 0xBBBB;
        var.wReserved3 = 0xCCCC;
        std::array<unsigned char, 16> expected{};
        if (CVarion::IsNumericType(t) || CVarion::IsAnyDateType(t) || t == VT_UNKNOWN) {
            std::memcpy(expected.data(), &t, sizeof t);
            std::memcpy(expected.data() + 8, &var.llVal, 8);
        }
        const CVarion copy(source);
        ASSERT_EQ(Bytes(copy), expected) << code;
        var.vt = VT_EMPTY;  // the pattern is no pointer to release
    }
}

// A copy duplicates a string (an array's copy, with its flags, is what the
// array assignment table starts from); a move takes it.
TEST(Copy, DuplicatesStringsMoveTakesThem) {
    CVarion s(OLESTR("text"));
    CVarion copy(s);
    EXPECT_NE(Access::Var(copy).bstrVal, Access::Var(s).bstrVal);
    EXPECT_EQ(Utf8(static_cast<CString>(copy)), "text");
    const BSTR held = Access::Var(s).bstrVal;
    CVarion moved(std::move(s));
    EXPECT_EQ(s.GetType(), VT_EMPTY);  // NOLINT(bugprone-use-after-move): documented state
    EXPECT_EQ(Access::Var(moved).bstrVal, held);
}

TEST(Assignment, ScalarsStringsSelfAndReservedWords) {
    CVarion d(OLESTR("old"));
    d = CVarion(7);
    EXPECT_EQ(Bytes(d), Bytes(CVarion(7)));
    CVarion s(OLESTR("new"));
    Access::Var(s).wReserved1 = 0x1111;
    Access::Var(s).wReserved3 = 0x3333;
    d = s;
    EXPECT_EQ(Utf8(static_cast<CString>(d)), "new");
    EXPECT_NE(Access::Var(d).bstrVal, Access::Var(s).bstrVal);
    EXPECT_EQ(std::make_pair(Access::Var(d).wReserved1, Access::Var(d).wReserved3),
              std::make_pair(WORD{0x1111}, WORD{0x3333}));  // assignment carries the reserved words
    CVarion a = Array(VT_I4, {1, 2}, false);
    for (CVarion* v : {&d, &a}) {  // assigned to itself, a value keeps its string or array
        const auto before = Bytes(*v);
        const CVarion& alias = *v;
        *v = alias;
        EXPECT_EQ(Bytes(*v), before);
    }
    // No copy of the string could be made: a string type without a string.
    CVarion other(1);
    FailAllocationAfter(1);
    other = s;
    FailAllocationAfter(0);
    EXPECT_EQ(other.GetType(), VT_BSTR);
    EXPECT_EQ(Access::Var(other).bstrVal, nullptr);
}

// An array destination: another type code empties it; a resizable one takes
// a copy; a fixed-size one keeps its size (a smaller source is enlarged with
// zeros, a larger one empties it, except a byte array, which takes the first
// bytes); a source of the same size is copied with its own flags.
TEST(Assignment, ArrayDestinationRules) {
    struct Case {
        CVarion dest, source;
        std::vector<long> want;  // empty: the destination becomes VT_EMPTY
        bool fixed;
    };
    const Case cases[] = {
        {Array(VT_I4, {1, 2, 3}, false), CVarion(4), {}, false},
        {Array(VT_I4, {1, 2, 3}, false), Array(VT_UI1, {1}, false), {}, false},
        {Array(VT_I4, {1}, false), Array(VT_I4, {7, 8, 9}, true), {7, 8, 9}, true},
        {Array(VT_I4, {9, 9, 9, 9, 9}, true), Array(VT_I4, {1, 2, 3}, false), {1, 2, 3, 0, 0}, true},
        {Array(VT_I4, {9, 9, 9, 9, 9}, true), Array(VT_I4, {6, 7, 8, 9, 10}, false), {6, 7, 8, 9, 10}, false},
        {Array(VT_I4, {9, 9, 9, 9, 9}, true), Array(VT_I4, {1, 2, 3, 4, 5, 6, 7}, false), {}, false},
        {Array(VT_UI1, {9, 9, 9, 9, 9}, true), Array(VT_UI1, {1, 2, 3, 4, 5, 6, 7}, false), {1, 2, 3, 4, 5}, true},
    };
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        CVarion d = cases[i].dest;
        d = cases[i].source;
        const bool array = d.isArray();
        EXPECT_EQ(std::make_tuple(array ? Elements(d) : std::vector<long>{}, array && IsFixed(d), d.GetType() == VT_EMPTY),
                  std::make_tuple(cases[i].want, cases[i].fixed, cases[i].want.empty())) << i;
    }
}

TEST(Assignment, TwoDimensionalFixedArrays) {
    CVarion d(VT_I4, 2, 3);  // bound B 2, bound A 3
    CVarion small(VT_I4, 1, 2);
    std::int32_t x = 42;
    small.SetElementValue(&x, 1, 0);
    d = small;
    ASSERT_EQ(d.GetType(), VT_I4 | VT_ARRAY);
    const SAFEARRAY* psa = Access::Var(d).parray;
    std::int32_t got = 0;
    d.GetElementValue(&got, 1, 0);
    // Bound A back at the destination's count, bound B the source's.
    EXPECT_EQ(std::make_tuple(psa->rgsabound[0].cElements, psa->rgsabound[1].cElements, got), std::make_tuple(3u, 1u, 42));
    for (const CVarion& larger : {CVarion(VT_I4, 3, 3), CVarion(VT_I4, 5, 0)}) {  // bound B, dimensions
        CVarion e(VT_I4, 2, 3);
        e = larger;
        EXPECT_EQ(e.GetType(), VT_EMPTY);
    }
}

TEST(InitType, ZeroValuesAndRefusalsOverEveryCode) {
    for (unsigned code = 0; code <= 0xFFFF; ++code) {
        const auto t = static_cast<VARTYPE>(code);
        CVarion v(OLESTR("held"));  // released either way (leak check)
        const bool known = code == 0 || CVarion::IsNumericType(t) || CVarion::IsAnyDateType(t) || code == 8 ||
                           code == 0x2011;
        ASSERT_EQ(Access::InitType(v, t), known ? RC_OK : RC_NOT_CONVERTIBLE) << code;
        ASSERT_EQ(v.GetType(), known ? t : VARTYPE{VT_EMPTY}) << code;
        if (!known || code == 0) continue;
        const std::uint64_t content = code == 8        ? SysStringLen(Access::Var(v).bstrVal)
                                      : code == 0x2011 ? v.GetElementCount()
                                                       : Load<std::uint64_t>(Access::Var(v));
        ASSERT_EQ(content, 0u) << code;
    }
    CVarion a = Array(VT_I4, {1}, true);
    a.Clear();
    a.Clear();
    EXPECT_EQ(a.GetType(), VT_EMPTY);
}

// IsNull follows the Boolean reading; an array cannot become a Boolean.
TEST(IsNull, FollowsTheBooleanReading) {
    for (const CVarion& v : {CVarion(0), CVarion(), CVarion(-0.0), CVarion(VT_I4, 2, 0)}) EXPECT_EQ(v.IsNull(), 1);
    for (const CVarion& v : {CVarion(5), CVarion(std::numeric_limits<double>::quiet_NaN())}) EXPECT_EQ(v.IsNull(), 0);
}
