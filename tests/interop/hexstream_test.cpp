// Hex digit streams over the bits of integers, singles and doubles.
#include <varion/varion.h>

#include "support/test_support.h"
#include "value/access.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <bit>
#include <cstring>
#include <vector>

using varion::detail::Access;
using varion::detail::Load;
using varion::test::Bytes;
using varion::test::Utf8;

namespace {

std::uint64_t BitsOf(const CVarion& v) {
    return v.GetType() == VT_R4 ? Load<std::uint32_t>(Access::Var(v)) : Load<std::uint64_t>(Access::Var(v));
}

}  // namespace

TEST(HexStream, WritesTheBytesMostSignificantFirst) {
    const struct { CVarion value; const char* start; const char* expected; } cases[] = {
        // Floating values append to the text; integers replace it.
        {CVarion(1.0f), "xy", "xy3f800000"},
        {CVarion(-2.0), "3f", "3fc000000000000000"},
        {CVarion(static_cast<short>(0x1234)), "old", "1234"},
        {CVarion(-2), "", "fffffffe"},
        {CVarion(static_cast<signed char>(-1)), "old", "ff"},
        {CVarion(static_cast<ULONGLONG>(0x0123456789ABCDEFull)), "", "0123456789abcdef"},
    };
    for (const auto& c : cases) {
        CString s(c.start);
        EXPECT_TRUE(c.value.Value2HexStream(s) && Utf8(s) == c.expected) << c.expected << " " << Utf8(s);
    }
    // Types without a hex form leave the text alone, a date held as a double too.
    CVarion none[] = {CVarion(true), CVarion(OLESTR("12")), CVarion(),
                      CVarion(static_cast<unsigned short>(VT_UI1), 2, 0), CVarion(1.0)};
    Access::Var(none[4]).vt = VT_DATE;
    for (const CVarion& v : none) {
        CString s(OLESTR("kept"));
        EXPECT_TRUE(!v.Value2HexStream(s) && Utf8(s) == "kept") << v.GetType();
    }
}

// Writing then reading restores the exact bits of singles and doubles: zeros
// of both signs, infinities, quiet and signalling NaNs with payloads,
// denormals and the largest finite values.
TEST(HexStream, RoundTripKeepsEveryBit) {
    const std::uint32_t singles[] = {0x80000000u, 0xFF800000u, 0xFFC00001u, 0x7F800001u, 0x00000001u, 0x7F7FFFFFu};
    const std::uint64_t doubles[] = {0x8000000000000000ull, 0x7FF0000000000000ull, 0x7FF8DEADBEEF0001ull,
                                     0x7FF4000000000000ull, 0x800FFFFFFFFFFFFFull, 0x7FEFFFFFFFFFFFFFull};
    std::vector<CVarion> values;
    for (std::uint32_t bits : singles) values.push_back(CVarion(std::bit_cast<float>(bits)));
    for (std::uint64_t bits : doubles) values.push_back(CVarion(std::bit_cast<double>(bits)));
    for (const CVarion& value : values) {
        CString digits;
        ASSERT_TRUE(value.Value2HexStream(digits));
        CVarion back(value.GetType() == VT_R4 ? CVarion(2.5) : CVarion(1.5f));  // converted first, then overwritten
        ASSERT_TRUE(back.HexStream2Value(digits, value.GetType())) << Utf8(digits);
        EXPECT_TRUE(back.GetType() == value.GetType() && BitsOf(back) == BitsOf(value)) << Utf8(digits);
    }
}

TEST(HexStream, ReadsEachPairAsTheCLibrarysWcstolDoes) {
    const struct { const OLECHAR* digits; std::uint64_t bits; } cases[] = {
        {OLESTR("\tf000000"), 0x0F000000u},  // leading white space
        {OLESTR("+f000000"), 0x0F000000u},  // a sign
        {OLESTR("-f000000"), 0xF1000000u},  // -15: its low 8 bits
        {OLESTR("1g000000"), 0x01000000u},  // stops at the first non-digit
        {OLESTR("g1000000"), 0x00000000u},  // no digit reads as 0
        {OLESTR("--0x0000"), 0x00000000u},
    };
    for (const auto& c : cases) {
        const CString digits(c.digits);
        CVarion v;
        ASSERT_TRUE(v.HexStream2Value(digits, VT_R4)) << Utf8(digits);
        EXPECT_TRUE(v.GetType() == VT_R4 && BitsOf(v) == c.bits) << Utf8(digits);
    }
}

TEST(HexStream, RefusalsAndWhatTheyLeave) {
    const struct {
        CVarion start;
        const OLECHAR* digits;
        VARTYPE type;
        VARTYPE left;  // type code afterwards; 0xFFFF: untouched byte for byte
    } cases[] = {
        {CVarion(2.0), OLESTR("3f80000"), VT_R4, 0xFFFF},  // an odd length changes nothing
        // A wrong length or type refuses after the change of type.
        {CVarion(2.0f), OLESTR("3f800000"), VT_R8, VT_R8},
        {CVarion(2.0), OLESTR("4000000000000000"), VT_R4, VT_R4},
        {CVarion(2.0), OLESTR("00000001"), VT_I4, VT_I4},
        // A failed change of type keeps the old content.
        {CVarion(OLESTR("abc")), OLESTR("3f800000"), VT_R4, 0xFFFF},
        {CVarion(2.0), OLESTR("3f800000"), VARTYPE(99), 0xFFFF},
    };
    for (const auto& c : cases) {
        CVarion v(c.start);
        const auto before = Bytes(v);
        EXPECT_FALSE(v.HexStream2Value(CString(c.digits), c.type)) << Utf8(CString(c.digits));
        EXPECT_TRUE(c.left == 0xFFFF ? Bytes(v) == before : v.GetType() == c.left) << Utf8(CString(c.digits));
    }
    CVarion v(2.0f);  // the converted value keeps its converted content
    EXPECT_FALSE(v.HexStream2Value(CString(OLESTR("3f800000")), VT_R8));
    EXPECT_EQ(static_cast<double>(v), 2.0);
}

TEST(HexStream, StringToBinaryStream) {
    const struct { const OLECHAR* text; int base; const char* expected; } cases[] = {
        {OLESTR("A1"), 16, "10100001"}, {OLESTR("0x1F"), 16, "000000011111"}, {OLESTR("fF09"), 16, "1111111100001001"},
        {OLESTR("g-z "), 16, ""},       {OLESTR("any text"), 2, "any text"},  {OLESTR("101"), 10, ""},
    };
    for (const auto& c : cases)
        EXPECT_EQ(Utf8(Access::StringToBinaryStream(CString(c.text), c.base)), c.expected) << c.base;
}
