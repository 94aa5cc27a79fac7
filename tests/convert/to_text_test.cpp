// Value to text: the canonical texts of every scalar type and the byte
// array; what a conversion writes, and what a failed one leaves.
#include "convert_test_util.h"

#include "platform/alloc.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <limits>

using namespace varion::test;

namespace {

TEST(ValueToText, CanonicalTextsUnderPointAndCommaLocales) {
    using L = std::numeric_limits<LONGLONG>;
    // Each text under a locale with a decimal point; a comma locale writes "," for ".".
    const struct { CVarion value; const char* text; } cases[] = {
        // Integers come from one writer: a signed and an unsigned row, each at its widest.
        {CVarion(L::min()), "-9223372036854775808"}, {CVarion(std::numeric_limits<ULONGLONG>::max()), "18446744073709551615"},
        // Fifteen decimals, trailing zeros trimmed (the digits are checked for
        // every double elsewhere); a single is written through its double.
        {CVarion(2.5), "2.5"}, {CVarion(0.1f), "0.100000001490116"}, {CVarion(true), "true"}, {CVarion(false), "false"},
        {Raw<std::uint8_t>(VT_BOOL, 2), "true"}, {ByteArray("\x01\xAB\xFF"), "0x01, 0xAB, 0xFF"}, {CVarion(), ""},
    };
    for (const char* locale : {"C", "de_DE.UTF-8"}) {
        ScopedCLocale scoped(locale);
        for (const auto& c : cases) {
            std::string expected = c.text;
            if (std::string(locale) != "C") std::replace(expected.begin(), expected.end(), '.', ',');
            CVarion v(c.value);
            ASSERT_EQ(v.SetType(VT_BSTR), RC_OK) << expected;
            EXPECT_EQ(StringOf(v), expected) << "under " << locale;
        }
    }
}

TEST(ValueToText, TypesWithoutTextFailAndStayUnchanged) {
    const CVarion cases[] = {Raw<LONGLONG>(VT_CY, 12345), Raw<double>(VT_DATE, 1e300)};  // the date has no calendar fields
    for (const CVarion& source : cases) {
        CVarion v;
        std::memcpy(static_cast<void*>(&v), &source, sizeof(v));  // no copy semantics for odd codes
        const auto before = Bytes(v);
        EXPECT_EQ(varion::detail::Access::ChangeToString(v, VT_BSTR), RC_NOT_CONVERTIBLE) << v.GetType();
        EXPECT_EQ(Bytes(v), before);
        varion::detail::Access::Var(v).vt = VT_EMPTY;
    }
}

// A conversion writes the new member's bytes and the type code, nothing else:
// the reserved words and the bytes beyond the member keep what they held.
TEST(ValueToText, ConversionsWriteOnlyTheNewMembersBytes) {
    const struct { VARTYPE target; std::size_t width; } cases[] = {{VT_I1, 1}, {VT_I4, 4}, {VT_BSTR, sizeof(BSTR)}};
    for (const auto& c : cases) {
        CVarion v(-1.0);  // 00 00 00 00 00 00 F0 BF
        auto& var = varion::detail::Access::Var(v);
        var.wReserved1 = 0x1234;
        var.wReserved3 = 0x5678;
        const auto before = Bytes(v);
        ASSERT_EQ(v.SetType(c.target), RC_OK) << c.target;
        const auto after = Bytes(v);
        EXPECT_TRUE(std::equal(before.begin() + 2, before.begin() + 8, after.begin() + 2)) << c.target;
        EXPECT_TRUE(std::equal(before.begin() + 8 + c.width, before.end(), after.begin() + 8 + c.width)) << c.target;
    }
}

// When memory runs out, a conversion to or from text fails with -2 and
// leaves the value byte for byte as it was.
TEST(ValueToText, FailedAllocationsLeaveTheValue) {
    const struct { CVarion source; VARTYPE target; } cases[] = {
        {CVarion(2.5), VT_BSTR}, {ByteArray("\x01\x02"), VT_BSTR}, {CVarion("1, 2, 3"), VT_ARRAY | VT_UI1},
        {CVarion(""), VT_ARRAY | VT_UI1}};
    for (const auto& c : cases) {
        for (long n = 1; n <= 3; ++n) {
            CVarion v(c.source);
            const auto before = Bytes(v);
            varion::detail::FailAllocationAfter(n);
            const long code = v.SetType(c.target);
            varion::detail::FailAllocationAfter(0);
            if (n == 1 || code != RC_OK) {
                EXPECT_EQ(code, RC_NOT_CONVERTIBLE) << c.source.GetType() << " after " << n;
                EXPECT_EQ(Bytes(v), before) << c.source.GetType() << " after " << n;
            }
        }
    }
}

}  // namespace
