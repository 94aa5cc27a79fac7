#include <varion/varion.h>

#include "platform/alloc.h"
#include "support/test_support.h"
#include "value/access.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

using varion::detail::Access;
using varion::detail::FailAllocationAfter;
using varion::test::Bytes;
using varion::test::Utf8;

namespace {

using Record = std::vector<unsigned char>;

Record Write(const CVarion& v) {
    const long len = v.GetLen();
    if (len < 0) return {};
    Record r(static_cast<std::size_t>(len) + 4, 0xEE);  // guard bytes after the record
    const long written = v.GetTypeValue(reinterpret_cast<char*>(r.data()));
    EXPECT_EQ(written, len);
    for (std::size_t k = static_cast<std::size_t>(len); k < r.size(); ++k) EXPECT_EQ(r[k], 0xEE) << "wrote past";
    r.resize(static_cast<std::size_t>(len));
    return r;
}

long ReadBounded(CVarion& v, const Record& r) {
    return v.SetTypeValue(reinterpret_cast<const char*>(r.data()), r.size());
}

long ReadUnbounded(CVarion& v, const Record& r) { return v.SetTypeValue(reinterpret_cast<const char*>(r.data())); }

// A value of type `vt` holding the 8 raw bytes `bits` (only its member's are kept).
CVarion Raw(VARTYPE vt, std::uint64_t bits, int width) {
    CVarion v;
    VARIANT& var = Access::Var(v);
    std::memcpy(&var.llVal, &bits, static_cast<std::size_t>(width));
    var.vt = vt;
    return v;
}

std::uint64_t DoubleBits(double d) {
    std::uint64_t x;
    std::memcpy(&x, &d, sizeof(x));
    return x;
}

CVarion StringArray(std::initializer_list<const OLECHAR*> items) {
    CVarion v(static_cast<unsigned short>(VT_BSTR), static_cast<long>(items.size()), 0);
    long i = 0;
    for (const OLECHAR* s : items) {
        const CString text(s);
        v.SetElementValue(&text, i++);
    }
    return v;
}

}  // namespace

TEST(Record, ExactBytes) {
    struct Case {
        const char* name;
        CVarion value;
        Record bytes;
    };
    const Case cases[] = {
        {"I4 258", CVarion(258), {0x0A, 0, 0, 0, 0x03, 0, 0x02, 0x01, 0, 0}},
        {"BSTR AB", CVarion(OLESTR("AB")), {0x0C, 0, 0, 0, 0x08, 0, 0x41, 0, 0x42, 0, 0, 0}},
        {"BSTR U+20AC", CVarion(OLESTR("\u20AC")), {0x0A, 0, 0, 0, 0x08, 0, 0xAC, 0x20, 0, 0}},
        {"empty BSTR", CVarion(OLESTR("")), {0x08, 0, 0, 0, 0x08, 0, 0, 0}},
        {"EMPTY", CVarion(), {0x06, 0, 0, 0, 0, 0}},
        {"BOOL true", CVarion(true), {0x08, 0, 0, 0, 0x0B, 0, 0x01, 0}},
        {"UI2", CVarion(static_cast<unsigned short>(0xABCD)), {0x08, 0, 0, 0, 0x12, 0, 0xCD, 0xAB}},
        {"I1 -2", CVarion(static_cast<signed char>(-2)), {0x07, 0, 0, 0, 0x10, 0, 0xFE}},
        {"I8 -2", CVarion(static_cast<LONGLONG>(-2)),
         {0x0E, 0, 0, 0, 0x14, 0, 0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}},
        {"R4 1.0", CVarion(1.0f), {0x0A, 0, 0, 0, 0x04, 0, 0, 0, 0x80, 0x3F}},
        {"R8 1.0", CVarion(1.0), {0x0E, 0, 0, 0, 0x05, 0, 0, 0, 0, 0, 0, 0, 0xF0, 0x3F}},
        {"ISO date-time 2.0", Raw(VTX_ISO_DATETIME, DoubleBits(2.0), 8),
         {0x0E, 0, 0, 0, 0x6A, 0, 0, 0, 0, 0, 0, 0, 0, 0x40}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(Write(c.value), c.bytes);
    }
}

TEST(Record, LengthAndStorageOfScalars) {
    struct Case {
        VARTYPE vt;
        long len;
        int size;
    };
    const Case cases[] = {
        {VT_EMPTY, 6, 0},  {VT_I1, 7, 1},     {VT_UI1, 7, 1},    {VT_BOOL, 8, 1},   {VT_I2, 8, 2},
        {VT_UI2, 8, 2},    {VT_I4, 10, 4},    {VT_R4, 10, 4},    {VT_UI4, 10, 4},   {VT_R8, 14, 8},
        {VT_I8, 14, 8},    {VT_UI8, 14, 8},   {VT_DATE, 14, 8},  {VTX_DURATION, 14, 8},
        {VTX_DURATION_MSF, 14, 8},            {VTX_DATETIME_ALT, 14, 8},            {VTX_DATETIME, 14, 8},
        {VTX_ISO_DURATION, 14, 8},            {VTX_ISO_DATETIME, 14, 8},
        // No record and no size.
        {VT_NULL, -1, -1}, {VT_UNKNOWN, -1, -1}, {VT_DISPATCH, -1, -1}, {VT_INT, -1, -1},
        {VARTYPE(104), -1, -1}, {VARTYPE(107), -1, -1}, {VT_BYREF | VT_I4, -1, -1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.vt);
        const CVarion v = Raw(c.vt, 0, 8);
        EXPECT_EQ(v.GetLen(), c.len);
        EXPECT_EQ(v.SizeOf(), c.size);
        std::vector<char> buffer(32, 0x55);
        EXPECT_EQ(v.GetTypeValue(buffer.data()), c.len);
        if (c.len < 0) {
            EXPECT_EQ(buffer, std::vector<char>(32, 0x55));
        }
    }
    const CVarion text(OLESTR("AB"));
    EXPECT_EQ(text.GetLen(), 12);
    EXPECT_EQ(text.SizeOf(), 6);
    EXPECT_EQ(CVarion(1).GetTypeValue(nullptr), -1);
}

TEST(Record, LengthAndStorageOfArrays) {
    struct Case {
        const char* name;
        CVarion value;
        long len;
        int size;
    };
    const Case cases[] = {
        {"5 bytes", CVarion(static_cast<unsigned short>(VT_UI1), 5, 0), 11, 5},
        {"3 Booleans", CVarion(static_cast<unsigned short>(VT_BOOL), 3, 0), 12, 3},
        {"2 UI2", CVarion(static_cast<unsigned short>(VT_UI2), 2, 0), 10, 4},
        {"I4 3 rows of 4", CVarion(static_cast<unsigned short>(VT_I4), 3, 4), 22, 16},
        {"2 dates", CVarion(static_cast<unsigned short>(VT_DATE), 2, 0), 22, 16},
        {"empty R8", CVarion(static_cast<unsigned short>(VT_R8), 0, 0), 6, 0},
        {"strings A BC", StringArray({OLESTR("A"), OLESTR("BC")}), 14, 8},
        {"no strings", CVarion(static_cast<unsigned short>(VT_BSTR), 0, 0), 8, 2},
        {"VARIANTs", CVarion(static_cast<unsigned short>(VT_VARIANT), 2, 0), -1, -1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        ASSERT_TRUE(c.value.isArray());
        EXPECT_EQ(c.value.GetLen(), c.len);
        EXPECT_EQ(c.value.SizeOf(), c.size);
        char buffer[64] = {};
        EXPECT_EQ(c.value.GetTypeValue(buffer), -1);
    }
}

// Every type with a record: written, read back by both readers into a value
// that held a string, and compared member for member.
TEST(Record, RoundTripEveryScalarType) {
    struct Case {
        VARTYPE vt;
        std::uint64_t bits;
        int width;
    };
    const Case cases[] = {
        {VT_EMPTY, 0, 0},
        {VT_I1, 0x80, 1},
        {VT_UI1, 0xFF, 1},
        {VT_BOOL, 1, 1},
        {VT_BOOL, 0, 1},
        {VT_I2, 0x8001, 2},
        {VT_UI2, 0xFFFE, 2},
        {VT_I4, 0x80000001u, 4},
        {VT_UI4, 0xDEADBEEFu, 4},
        {VT_R4, 0x7FC12345u, 4},  // a NaN with a payload
        {VT_R4, 0x80000000u, 4},  // -0.0f
        {VT_R8, DoubleBits(-1e300), 8},
        {VT_R8, 0x7FF0000000000001ull, 8},  // a signalling NaN
        {VT_I8, 0x8000000000000000ull, 8},
        {VT_UI8, 0xFFFFFFFFFFFFFFFFull, 8},
        {VT_DATE, DoubleBits(45000.5), 8},
        {VTX_DURATION, DoubleBits(-1.25), 8},
        {VTX_DURATION_MSF, DoubleBits(0.001), 8},
        {VTX_DATETIME_ALT, DoubleBits(2.0), 8},
        {VTX_DATETIME, DoubleBits(3.0), 8},
        {VTX_ISO_DURATION, DoubleBits(4.0), 8},
        {VTX_ISO_DATETIME, DoubleBits(5.0), 8},
    };
    for (const Case& c : cases) {
        for (bool bounded : {true, false}) {
            SCOPED_TRACE(::testing::Message() << c.vt << (bounded ? " bounded" : " unbounded"));
            const CVarion original = Raw(c.vt, c.bits, c.width);
            const Record r = Write(original);
            ASSERT_FALSE(r.empty());
            CVarion restored(OLESTR("previous string"));
            EXPECT_EQ(bounded ? ReadBounded(restored, r) : ReadUnbounded(restored, r), static_cast<long>(r.size()));
            EXPECT_EQ(restored.GetType(), c.vt);
            std::uint64_t got = 0;
            std::memcpy(&got, &Access::Var(restored).llVal, static_cast<std::size_t>(c.width));
            EXPECT_EQ(got, c.bits);
            EXPECT_EQ(Write(restored), r);
        }
    }
}

TEST(Record, StringsRoundTripExactly) {
    const OLECHAR withZero[] = {u'a', 0, u'b', 0};
    struct Case {
        const char* name;
        CString text;
    };
    const Case cases[] = {
        {"empty", CString()},
        {"ascii", CString(OLESTR("12,5"))},
        {"surrogate pair", CString(OLESTR("\U0001F600x"))},
        {"embedded and trailing zero", CString(withZero, 4)},
    };
    for (const Case& c : cases) {
        for (bool bounded : {true, false}) {
            SCOPED_TRACE(::testing::Message() << c.name << (bounded ? " bounded" : " unbounded"));
            CVarion original;
            VARIANT& o = Access::Var(original);
            o.bstrVal = SysAllocStringLen(c.text.GetString(), static_cast<UINT>(c.text.GetLength()));
            o.vt = VT_BSTR;
            const Record r = Write(original);
            CVarion restored(7);
            EXPECT_EQ(bounded ? ReadBounded(restored, r) : ReadUnbounded(restored, r), static_cast<long>(r.size()));
            ASSERT_EQ(restored.GetType(), VT_BSTR);
            BSTR s = Access::Var(restored).bstrVal;
            ASSERT_NE(s, nullptr);
            EXPECT_EQ(OleStringView(s, SysStringLen(s)), c.text.View());
        }
    }
    // A hand-written record without a terminator still gives the text.
    const Record bare = {10, 0, 0, 0, 8, 0, 0x41, 0, 0x42, 0};
    CVarion v;
    EXPECT_EQ(ReadUnbounded(v, bare), 10);
    EXPECT_EQ(Utf8(Access::Var(v).bstrVal), "AB");
}

TEST(Record, BoundedReaderRefusesBadRecordsUntouched) {
    struct Case {
        const char* name;
        Record bytes;
        std::size_t size;  // the size passed; the whole vector when 0
    };
    const Case cases[] = {
        {"no header", {6, 0, 0, 0, 0}, 0},
        {"header beyond size", {6, 0, 0, 0, 0, 0}, 5},
        {"length below header", {5, 0, 0, 0, 0, 0}, 0},
        {"length beyond buffer", {11, 0, 0, 0, 3, 0, 1, 2, 3, 4}, 0},
        {"length beyond size", {10, 0, 0, 0, 3, 0, 1, 2, 3, 4}, 9},
        {"I4 payload too short", {9, 0, 0, 0, 3, 0, 1, 2, 3}, 0},
        {"I4 payload too long", {11, 0, 0, 0, 3, 0, 1, 2, 3, 4, 5}, 0},
        {"EMPTY with payload", {7, 0, 0, 0, 0, 0, 1}, 0},
        {"Boolean byte 2", {8, 0, 0, 0, 11, 0, 2, 0}, 0},
        {"string without terminator", {10, 0, 0, 0, 8, 0, 0x41, 0, 0x42, 0}, 0},
        {"string of odd length", {9, 0, 0, 0, 8, 0, 0x41, 0, 0}, 0},
        {"string shorter than its terminator", {7, 0, 0, 0, 8, 0, 0}, 0},
        {"huge length", {0xFF, 0xFF, 0xFF, 0xFF, 8, 0, 0, 0}, 0},
        {"code without a record", {6, 0, 0, 0, 9, 0}, 0},
        {"VT_NULL", {6, 0, 0, 0, 1, 0}, 0},
        {"byte array", {6, 0, 0, 0, 0x11, 0x20}, 0},
        {"by reference", {10, 0, 0, 0, 3, 0x40, 1, 2, 3, 4}, 0},
        {"VT_UNKNOWN", {14, 0, 0, 0, 13, 0, 1, 2, 3, 4, 5, 6, 7, 8}, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        CVarion value(OLESTR("untouched"));
        const auto before = Bytes(value);
        const std::size_t size = c.size != 0 ? c.size : c.bytes.size();
        EXPECT_EQ(value.SetTypeValue(reinterpret_cast<const char*>(c.bytes.data()), size), RC_NOT_CONVERTIBLE);
        EXPECT_EQ(Bytes(value), before);
        EXPECT_EQ(Utf8(Access::Var(value).bstrVal), "untouched");
    }
    CVarion value(1);
    EXPECT_EQ(value.SetTypeValue(nullptr, 100), RC_NOT_CONVERTIBLE);
    EXPECT_EQ(value.SetTypeValue(nullptr), RC_NOT_CONVERTIBLE);
    EXPECT_EQ(static_cast<long>(value), 1);
}

TEST(Record, BoundedReaderTakesARecordFromALargerBuffer) {
    const Record buffer = {10, 0, 0, 0, 3, 0, 2, 1, 0, 0, 0xAA, 0xBB, 0xCC};
    CVarion value;
    EXPECT_EQ(ReadBounded(value, buffer), 10);
    EXPECT_EQ(value.GetType(), VT_I4);
    EXPECT_EQ(static_cast<long>(value), 258);
}

TEST(Record, UnboundedReaderOnCodesWithoutARecord) {
    struct Case {
        VARTYPE code;
        VARTYPE held;
    };
    const Case cases[] = {
        {VT_DISPATCH, VT_DISPATCH},  // set as it stands; the value field is kept
        {VT_NULL, VT_NULL},
        {VARTYPE(104), VARTYPE(104)},
        {VT_UNKNOWN, VT_EMPTY},  // no interface pointer comes from bytes
        {VT_ARRAY | VT_UI1, VT_EMPTY},
        {VT_ARRAY | VT_BSTR, VT_EMPTY},
        {VT_ARRAY | VT_BYREF | VT_I4, VT_EMPTY},
    };
    for (const Case& c : cases) {
        for (bool heldArray : {false, true}) {
            SCOPED_TRACE(::testing::Message() << c.code << (heldArray ? " over an array" : " over an I4"));
            const Record r = {6, 0, 0, 0, static_cast<unsigned char>(c.code), static_cast<unsigned char>(c.code >> 8)};
            CVarion value = heldArray ? CVarion(static_cast<unsigned short>(VT_UI1), 4, 0) : CVarion(0x01020304);
            const auto before = Bytes(value);
            EXPECT_EQ(ReadUnbounded(value, r), 6);  // the held array is released (leak check)
            EXPECT_EQ(value.GetType(), c.held);
            if (c.held != VT_EMPTY && !heldArray) {
                auto after = Bytes(value);
                EXPECT_TRUE(std::equal(before.begin() + 8, before.end(), after.begin() + 8)) << "value field kept";
            }
        }
    }
}

TEST(Record, UnboundedReaderTrustsTheTypeOverTheLength) {
    // The length field is answered as read; the payload is the type's own.
    const Record r = {0x40, 0, 0, 0, 3, 0, 4, 3, 2, 1};
    CVarion value;
    EXPECT_EQ(ReadUnbounded(value, r), 0x40);
    EXPECT_EQ(static_cast<long>(value), 0x01020304);
    // Any non-zero Boolean byte reads as true.
    CVarion flag;
    ReadUnbounded(flag, {8, 0, 0, 0, 11, 0, 7, 0});
    EXPECT_EQ(Access::Var(flag).bVal, 1);
}

TEST(Record, StringAllocationFailure) {
    const Record r = {10, 0, 0, 0, 8, 0, 0x41, 0, 0, 0};
    CVarion bounded(OLESTR("kept"));
    const auto before = Bytes(bounded);
    FailAllocationAfter(1);
    EXPECT_EQ(ReadBounded(bounded, r), RC_NOT_CONVERTIBLE);
    FailAllocationAfter(0);
    EXPECT_EQ(Bytes(bounded), before);

    // The unbounded reader has no failure result: it never leaves a string
    // type without a string.
    CVarion unbounded(OLESTR("released"));
    FailAllocationAfter(1);
    EXPECT_EQ(ReadUnbounded(unbounded, r), 10);
    FailAllocationAfter(0);
    EXPECT_EQ(unbounded.GetType(), VT_EMPTY);
}

TEST(Record, ToByteArray) {
    struct Case {
        const char* name;
        CVarion value;
        Record bytes;
    };
    const Case cases[] = {
        {"R8 1.0", CVarion(1.0), {0x3F, 0xF0, 0, 0, 0, 0, 0, 0}},
        {"I4 258", CVarion(258), {0, 0, 0, 0, 0, 0, 0x01, 0x02}},
        {"I8 -2", CVarion(static_cast<LONGLONG>(-2)), {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFE}},
        {"R4 -0.0", CVarion(-0.0f), {0, 0, 0, 0, 0x80, 0, 0, 0}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        CByteArray out;
        out.SetSize(8);
        ASSERT_TRUE(c.value.ToByteArray(out));
        EXPECT_EQ(Record(out.GetData(), out.GetData() + 8), c.bytes);
    }
    for (long size : {0L, 7L, 9L}) {
        SCOPED_TRACE(size);
        CByteArray out;
        out.SetSize(size);
        for (long k = 0; k < size; ++k) out.SetAt(k, 0x77);
        EXPECT_FALSE(CVarion(1.0).ToByteArray(out));
        EXPECT_EQ(out.GetSize(), size);
        for (long k = 0; k < size; ++k) EXPECT_EQ(out.GetAt(k), 0x77);
    }
}
