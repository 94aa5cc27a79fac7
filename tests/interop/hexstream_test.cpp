#include <varion/varion.h>

#include "support/test_support.h"
#include "value/access.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <limits>

using varion::detail::Access;
using varion::detail::Load;
using varion::test::Bytes;
using varion::test::Utf8;

namespace {

CVarion FloatFromBits(std::uint32_t bits) {
    float f;
    std::memcpy(&f, &bits, sizeof(f));
    return CVarion(f);
}

CVarion DoubleFromBits(std::uint64_t bits) {
    double d;
    std::memcpy(&d, &bits, sizeof(d));
    return CVarion(d);
}

std::string HexOf(const CVarion& v, const char* start = "") {
    CString s(start);
    if (!v.Value2HexStream(s)) return "<false>";
    return Utf8(s);
}

}  // namespace

TEST(HexStream, WritesTheBytesMostSignificantFirst) {
    struct Case {
        const char* name;
        CVarion value;
        const char* start;
        const char* expected;
    };
    const Case cases[] = {
        // Floating values append to the text.
        {"R4 1.0", CVarion(1.0f), "", "3f800000"},
        {"R4 appends", CVarion(1.0f), "xy", "xy3f800000"},
        {"R8 1.0", CVarion(1.0), "", "3ff0000000000000"},
        {"R8 appends", CVarion(-2.0), "3f", "3fc000000000000000"},
        // Integers replace it.
        {"I2", CVarion(static_cast<short>(0x1234)), "old", "1234"},
        {"UI2", CVarion(static_cast<unsigned short>(0xBEEF)), "old", "beef"},
        {"UI4 1", CVarion(1u), "old", "00000001"},
        {"I4 -2", CVarion(-2), "", "fffffffe"},
        {"I1 -1", CVarion(static_cast<signed char>(-1)), "old", "ff"},
        {"UI1 10", CVarion(static_cast<unsigned char>(10)), "", "0a"},
        {"I8 -2", CVarion(static_cast<LONGLONG>(-2)), "old", "fffffffffffffffe"},
        {"UI8", CVarion(static_cast<ULONGLONG>(0x0123456789ABCDEFull)), "", "0123456789abcdef"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(HexOf(c.value, c.start), c.expected);
    }
    // Twice on the same text: the digits appear twice.
    CString twice;
    ASSERT_TRUE(CVarion(1.0f).Value2HexStream(twice));
    ASSERT_TRUE(CVarion(1.0f).Value2HexStream(twice));
    EXPECT_EQ(Utf8(twice), "3f8000003f800000");
}

TEST(HexStream, TypesWithoutHexFormLeaveTheTextAlone) {
    const CVarion values[] = {
        CVarion(true), CVarion(OLESTR("12")), CVarion(),
        CVarion(static_cast<unsigned short>(VT_UI1), 2, 0),
    };
    for (const CVarion& v : values) {
        SCOPED_TRACE(v.GetType());
        CString s(OLESTR("kept"));
        EXPECT_FALSE(v.Value2HexStream(s));
        EXPECT_EQ(Utf8(s), "kept");
    }
    for (VARTYPE vt : {VARTYPE(VT_DATE), VARTYPE(VTX_DURATION), VARTYPE(VTX_ISO_DATETIME)}) {
        CVarion v(1.0);
        Access::Var(v).vt = vt;
        CString s(OLESTR("kept"));
        EXPECT_FALSE(v.Value2HexStream(s));
        EXPECT_EQ(Utf8(s), "kept");
    }
}

// Writing then reading restores the exact bits of singles and doubles.
TEST(HexStream, RoundTripKeepsEveryBit) {
    const std::uint32_t singles[] = {
        0x3F800000u, 0x00000000u, 0x80000000u,  // 1.0, +0.0, -0.0
        0x7F800000u, 0xFF800000u,               // +inf, -inf
        0x7FC00000u, 0xFFC00001u, 0x7FC12345u,  // quiet NaNs with payloads
        0x7F800001u, 0x7FA00000u,               // signalling NaNs
        0x00000001u, 0x807FFFFFu, 0x7F7FFFFFu,  // denormals, largest finite
    };
    for (std::uint32_t bits : singles) {
        SCOPED_TRACE(::testing::Message() << std::hex << bits);
        CString digits;
        ASSERT_TRUE(FloatFromBits(bits).Value2HexStream(digits));
        CVarion back;
        ASSERT_TRUE(back.HexStream2Value(digits, VT_R4));
        EXPECT_EQ(back.GetType(), VT_R4);
        EXPECT_EQ(Load<std::uint32_t>(Access::Var(back)), bits);
    }
    const std::uint64_t doubles[] = {
        0x3FF0000000000000ull, 0x0000000000000000ull, 0x8000000000000000ull,
        0x7FF0000000000000ull, 0xFFF0000000000000ull,
        0x7FF8000000000000ull, 0xFFF8000000000001ull, 0x7FF8DEADBEEF0001ull,
        0x7FF0000000000001ull, 0x7FF4000000000000ull,
        0x0000000000000001ull, 0x800FFFFFFFFFFFFFull, 0x7FEFFFFFFFFFFFFFull,
    };
    for (std::uint64_t bits : doubles) {
        SCOPED_TRACE(::testing::Message() << std::hex << bits);
        CString digits;
        ASSERT_TRUE(DoubleFromBits(bits).Value2HexStream(digits));
        CVarion back(1.5f);  // converted to VT_R8 first, then overwritten
        ASSERT_TRUE(back.HexStream2Value(digits, VT_R8));
        EXPECT_EQ(back.GetType(), VT_R8);
        EXPECT_EQ(Load<std::uint64_t>(Access::Var(back)), bits);
    }
}

TEST(HexStream, ReadsSinglesAndDoubles) {
    struct Case {
        const OLECHAR* digits;
        VARTYPE type;
        std::uint64_t bits;
    };
    const Case cases[] = {
        {OLESTR("3f800000"), VT_R4, 0x3F800000u},
        {OLESTR("3F800000"), VT_R4, 0x3F800000u},
        {OLESTR("4000000000000000"), VT_R8, 0x4000000000000000ull},
        {OLESTR("C0490FDB"), VT_R4, 0xC0490FDBu},
        // Each pair is read on its own as the C library's wcstol reads it.
        {OLESTR(" f000000"), VT_R4, 0x0F000000u},    // leading white space
        {OLESTR("\tf000000"), VT_R4, 0x0F000000u},
        {OLESTR("+f000000"), VT_R4, 0x0F000000u},    // a sign
        {OLESTR("-1000000"), VT_R4, 0xFF000000u},    // -1: its low 8 bits
        {OLESTR("-f000000"), VT_R4, 0xF1000000u},    // -15
        {OLESTR("1g000000"), VT_R4, 0x01000000u},    // stops at the first non-digit
        {OLESTR("g1000000"), VT_R4, 0x00000000u},    // no digit reads as 0
        {OLESTR("0x000000"), VT_R4, 0x00000000u},
        {OLESTR(" -000000"), VT_R4, 0x00000000u},
        {OLESTR("--000000"), VT_R4, 0x00000000u},
        {OLESTR("000000zz"), VT_R4, 0x00000000u},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(Utf8(CString(c.digits)));
        CVarion v;
        ASSERT_TRUE(v.HexStream2Value(CString(c.digits), c.type));
        EXPECT_EQ(v.GetType(), c.type);
        if (c.type == VT_R4)
            EXPECT_EQ(Load<std::uint32_t>(Access::Var(v)), c.bits);
        else
            EXPECT_EQ(Load<std::uint64_t>(Access::Var(v)), c.bits);
    }
    CVarion one;
    ASSERT_TRUE(one.HexStream2Value(CString(OLESTR("3f800000")), VT_R4));
    EXPECT_EQ(static_cast<float>(one), 1.0f);
}

TEST(HexStream, RefusalsAndWhatTheyLeave) {
    struct Case {
        const char* name;
        CVarion start;
        const OLECHAR* digits;
        VARTYPE type;
        VARTYPE left;  // type code afterwards; 0xFFFF: untouched byte for byte
    };
    const Case cases[] = {
        // An odd length changes nothing.
        {"odd length", CVarion(2.0f), OLESTR("3f80000"), VT_R4, 0xFFFF},
        // A wrong length or type refuses after the change of type.
        {"8 digits as R8", CVarion(2.0f), OLESTR("3f800000"), VT_R8, VT_R8},
        {"16 digits as R4", CVarion(2.0), OLESTR("4000000000000000"), VT_R4, VT_R4},
        {"6 digits as R4", CVarion(2.0), OLESTR("3f8000"), VT_R4, VT_R4},
        {"empty as R8", CVarion(), OLESTR(""), VT_R8, VT_R8},
        {"I4 target", CVarion(2.0), OLESTR("00000001"), VT_I4, VT_I4},
        // A failed change of type keeps the old content.
        {"R8 beyond single range", CVarion(1e300), OLESTR("3f800000"), VT_R4, 0xFFFF},
        {"I4 array", CVarion(static_cast<unsigned short>(VT_I4), 2, 0), OLESTR("3f800000"), VT_R4, 0xFFFF},
        {"text that is no number", CVarion(OLESTR("abc")), OLESTR("3f800000"), VT_R4, 0xFFFF},
        {"unknown target type", CVarion(2.0), OLESTR("3f800000"), VARTYPE(99), 0xFFFF},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        CVarion v(c.start);
        const auto before = Bytes(v);
        EXPECT_FALSE(v.HexStream2Value(CString(c.digits), c.type));
        if (c.left == 0xFFFF)
            EXPECT_EQ(Bytes(v), before);
        else
            EXPECT_EQ(v.GetType(), c.left);
    }
    // The converted value keeps its converted content.
    CVarion v(2.0f);
    EXPECT_FALSE(v.HexStream2Value(CString(OLESTR("3f800000")), VT_R8));
    EXPECT_EQ(static_cast<double>(v), 2.0);
}

TEST(HexStream, StringToBinaryStream) {
    struct Case {
        const OLECHAR* text;
        int base;
        const char* expected;
    };
    const Case cases[] = {
        {OLESTR("A1"), 16, "10100001"},
        {OLESTR("a1"), 16, "10100001"},
        {OLESTR("0x1F"), 16, "000000011111"},
        {OLESTR("fF"), 16, "11111111"},
        {OLESTR("09"), 16, "00001001"},
        {OLESTR("g-z "), 16, ""},
        {OLESTR(""), 16, ""},
        {OLESTR("101"), 2, "101"},
        {OLESTR("any text"), 2, "any text"},
        {OLESTR("101"), 10, ""},
        {OLESTR("101"), 8, ""},
        {OLESTR("101"), 0, ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(::testing::Message() << Utf8(CString(c.text)) << " base " << c.base);
        EXPECT_EQ(Utf8(Access::StringToBinaryStream(CString(c.text), c.base)), c.expected);
    }
}
