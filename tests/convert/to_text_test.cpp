// Value to text: the canonical texts of every scalar type and the byte array.
#include "convert_test_util.h"

#include "platform/alloc.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <limits>

using namespace varion::test;

namespace {

struct TextCase {
    const char* name;
    CVarion value;
    const char* point;  // text under a locale with a decimal point
    const char* comma;  // text under a locale with a decimal comma
};

std::vector<TextCase> TextCases() {
    using L = std::numeric_limits<LONGLONG>;
    return {
        {"I1 -1", CVarion(static_cast<signed char>(-1)), "-1", "-1"},
        {"I1 min", CVarion(static_cast<signed char>(-128)), "-128", "-128"},
        {"UI1 255", CVarion(static_cast<unsigned char>(255)), "255", "255"},
        {"I2 min", CVarion(static_cast<short>(-32768)), "-32768", "-32768"},
        {"UI2 max", CVarion(static_cast<unsigned short>(65535)), "65535", "65535"},
        {"I4 min", CVarion(static_cast<int>(INT32_MIN)), "-2147483648", "-2147483648"},
        {"UI4 max", CVarion(static_cast<unsigned int>(UINT32_MAX)), "4294967295", "4294967295"},
        {"I8 min", CVarion(L::min()), "-9223372036854775808", "-9223372036854775808"},
        {"UI8 max", CVarion(std::numeric_limits<ULONGLONG>::max()), "18446744073709551615", "18446744073709551615"},
        {"R8 2.5", CVarion(2.5), "2.5", "2,5"},
        {"R8 3.0", CVarion(3.0), "3.0", "3,0"},
        {"R8 -0.5", CVarion(-0.5), "-0.5", "-0,5"},
        {"R8 0.1", CVarion(0.1), "0.1", "0,1"},
        {"R8 1.25", CVarion(1.25), "1.25", "1,25"},
        {"R8 100", CVarion(100.0), "100.0", "100,0"},
        {"R8 1/3", CVarion(1.0 / 3.0), "0.333333333333333", "0,333333333333333"},
        {"R8 2/3 rounds", CVarion(2.0 / 3.0), "0.666666666666667", "0,666666666666667"},
        {"R8 1e-16", CVarion(1e-16), "0.0", "0,0"},
        {"R8 1e-20", CVarion(1e-20), "0.0", "0,0"},
        {"R8 -1e-20", CVarion(-1e-20), "-0.0", "-0,0"},
        {"R8 -0.0", CVarion(-0.0), "-0.0", "-0,0"},
        {"R8 1e20", CVarion(1e20), "100000000000000000000.0", "100000000000000000000,0"},
        {"R8 0.1 + 0.2", CVarion(0.1 + 0.2), "0.3", "0,3"},
        {"R8 fifteen decimals", CVarion(0.000000000000001), "0.000000000000001", "0,000000000000001"},
        {"R4 0.1", CVarion(0.1f), "0.100000001490116", "0,100000001490116"},
        {"R4 -2.5", CVarion(-2.5f), "-2.5", "-2,5"},
        {"BOOL true", CVarion(true), "true", "true"},
        {"BOOL false", CVarion(false), "false", "false"},
        {"BOOL byte 2", Raw<std::uint8_t>(VT_BOOL, 2), "true", "true"},
        {"byte array", ByteArray({1, 171, 255}), "0x01, 0xAB, 0xFF", "0x01, 0xAB, 0xFF"},
        {"byte array single", ByteArray({0}), "0x00", "0x00"},
        {"byte array empty", ByteArray({}), "", ""},
    };
}

TEST(ValueToText, CanonicalTextsUnderPointAndCommaLocales) {
    for (const char* locale : {"C", "de_DE.UTF-8"}) {
        ScopedCLocale scoped(locale);
        const bool comma = std::string(locale) != "C";
        for (const TextCase& c : TextCases()) {
            CVarion v(c.value);
            ASSERT_EQ(v.SetType(VT_BSTR), RC_OK) << c.name;
            EXPECT_EQ(StringOf(v), comma ? c.comma : c.point) << c.name << " under " << locale;
            EXPECT_EQ(Utf8(static_cast<CString>(c.value)), comma ? c.comma : c.point) << c.name;
        }
    }
}

TEST(ValueToText, LargestDoubleWritesAllIntegerDigits) {
    CVarion v(DBL_MAX);
    ASSERT_EQ(v.SetType(VT_BSTR), RC_OK);
    const std::string text = StringOf(v);
    EXPECT_EQ(text.size(), 309u + 2u);
    EXPECT_EQ(text.substr(0, 17), "17976931348623157");
    EXPECT_EQ(text.substr(text.size() - 2), ".0");
}

TEST(ValueToText, EmptyBecomesAnEmptyString) {
    CVarion v;
    ASSERT_EQ(varion::detail::Access::ChangeToString(v, VT_BSTR), RC_OK);
    EXPECT_EQ(v.GetType(), VT_BSTR);
    EXPECT_EQ(StringOf(v), "");
}

TEST(ValueToText, TypesWithoutTextFailAndStayUnchanged) {
    const CVarion cases[] = {
        Raw<LONGLONG>(VT_CY, 12345), Raw<std::int32_t>(VT_ERROR, 7), Raw<std::int32_t>(VT_INT, 1),
        Raw<LONGLONG>(static_cast<VARTYPE>(99), 1),
        Raw<double>(VT_DATE, 1e300),  // no calendar fields
        Raw<double>(VT_DATE, std::numeric_limits<double>::quiet_NaN()),
        Raw<double>(VTX_DATETIME, -1e9),
    };
    for (const CVarion& source : cases) {
        CVarion v;
        std::memcpy(static_cast<void*>(&v), &source, sizeof(v));  // no copy semantics for odd codes
        const auto before = Bytes(v);
        EXPECT_EQ(varion::detail::Access::ChangeToString(v, VT_BSTR), RC_NOT_CONVERTIBLE) << v.GetType();
        EXPECT_EQ(Bytes(v), before);
        varion::detail::Access::Var(v).vt = VT_EMPTY;
    }
}

TEST(ValueToText, FailedAllocationLeavesTheValue) {
    const CVarion cases[] = {CVarion(42), CVarion(2.5), CVarion(true), ByteArray({1, 2})};
    for (const CVarion& source : cases) {
        CVarion v(source);
        const auto before = Bytes(v);
        varion::detail::FailAllocationAfter(1);
        EXPECT_EQ(v.SetType(VT_BSTR), RC_NOT_CONVERTIBLE) << v.GetType();
        varion::detail::FailAllocationAfter(0);
        EXPECT_EQ(Bytes(v), before);
    }
}

TEST(ValueToText, TheNewStringIsTheOnlyAllocation) {
    ScopedCLocale comma("de_DE.UTF-8");
    const CVarion cases[] = {CVarion(-123456789), CVarion(2.5), CVarion(1e300), CVarion(0.1f), CVarion(false),
                             CVarion(std::numeric_limits<ULONGLONG>::max()), ByteArray({1, 2, 3})};
    for (const CVarion& source : cases) {
        CVarion v(source);
        const long before = AllocationCount();
        ASSERT_EQ(v.SetType(VT_BSTR), RC_OK);
        EXPECT_EQ(AllocationCount() - before, varion::test::kNewPerString) << StringOf(v);
    }
}

TEST(ValueToText, OnlyThePointerBytesChangeOnSuccess) {
    CVarion v(static_cast<short>(7));
    auto& var = varion::detail::Access::Var(v);
    var.wReserved1 = 0x1234;
    ASSERT_EQ(v.SetType(VT_BSTR), RC_OK);
    EXPECT_EQ(var.wReserved1, 0x1234);
}

}  // namespace
