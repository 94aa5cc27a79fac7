// The raw byte record (GetLen, SizeOf, GetTypeValue, both SetTypeValue
// readers) and the big-endian byte view.
#include "platform/alloc.h"
#include "support/test_support.h"
#include "value/access.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <tuple>
#include <utility>
#include <vector>

using varion::detail::Access;
using varion::detail::FailAllocationAfter;
using varion::test::Bytes;
using varion::test::Utf8;

namespace {

using Record = std::vector<unsigned char>;

// The record of a value, checking that nothing is written past its length.
Record Write(const CVarion& v) {
    const long len = v.GetLen();
    if (len < 0) return {};
    Record r(static_cast<std::size_t>(len) + 4, 0xEE);
    EXPECT_EQ(v.GetTypeValue(reinterpret_cast<char*>(r.data())), len);
    for (std::size_t k = static_cast<std::size_t>(len); k < r.size(); ++k) EXPECT_EQ(r[k], 0xEE) << "wrote past";
    r.resize(static_cast<std::size_t>(len));
    return r;
}

long Read(CVarion& v, const Record& r, bool bounded) {
    const char* bytes = reinterpret_cast<const char*>(r.data());
    return bounded ? v.SetTypeValue(bytes, r.size()) : v.SetTypeValue(bytes);
}

// A value of type `vt` holding the raw bytes `bits` (only its member's are kept).
CVarion Raw(VARTYPE vt, std::uint64_t bits, int width) {
    CVarion v;
    std::memcpy(&Access::Var(v).llVal, &bits, static_cast<std::size_t>(width));
    Access::Var(v).vt = vt;
    return v;
}

CVarion Sized(VARTYPE t, long a, long b = 0) { return CVarion(static_cast<unsigned short>(t), a, b); }

}  // namespace

TEST(Record, ExactBytes) {
    struct Case { CVarion value; Record bytes; };
    const Case cases[] = {
        {CVarion(258), {0x0A, 0, 0, 0, 0x03, 0, 0x02, 0x01, 0, 0}},
        {CVarion(OLESTR("AB")), {0x0C, 0, 0, 0, 0x08, 0, 0x41, 0, 0x42, 0, 0, 0}},
        {CVarion(true), {0x08, 0, 0, 0, 0x0B, 0, 0x01, 0}},
        {CVarion(static_cast<LONGLONG>(-2)), {0x0E, 0, 0, 0, 0x14, 0, 0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}},
    };
    for (const Case& c : cases) EXPECT_EQ(Write(c.value), c.bytes) << c.value.GetType();
}

// Every scalar type: its record length and storage size; with a record,
// written and read back by both readers into a value that held a string (the
// same type, bits and record); without one, nothing written.
TEST(Record, EveryScalarType) {
    struct Case {
        VARTYPE vt;
        std::uint64_t bits;
        int size;  // -1: no record
        long len;
    };
    const Case cases[] = {
        {VT_EMPTY, 0, 0, 6},                        {VT_I1, 0x80, 1, 7},
        {VT_UI1, 0xFF, 1, 7},                       {VT_BOOL, 1, 1, 8},
        {VT_I2, 0x8001, 2, 8},                      {VT_UI2, 0xFFFE, 2, 8},
        {VT_I4, 0x80000001u, 4, 10},                {VT_UI4, 0xDEADBEEFu, 4, 10},
        {VT_R4, 0x7FC12345u, 4, 10},  // a NaN with a payload
        {VT_R8, 0x7FF0000000000001ull, 8, 14},  // a signalling NaN
        {VT_I8, 0x8000000000000000ull, 8, 14},      {VT_UI8, 0xFFFFFFFFFFFFFFFFull, 8, 14},
        {VT_DATE, 0x40E5F91000000000ull, 8, 14},    {VTX_DURATION, 0xBFF4000000000000ull, 8, 14},
        {VTX_DURATION_MSF, 1, 8, 14},               {VTX_DATETIME_ALT, 2, 8, 14},
        {VTX_DATETIME, 3, 8, 14},                   {VTX_ISO_DURATION, 4, 8, 14},
        {VTX_ISO_DATETIME, 5, 8, 14},               {VT_NULL, 0, -1, -1},
        {VT_UNKNOWN, 0, -1, -1},                    {VT_INT, 0, -1, -1},
        {104, 0, -1, -1},                           {VT_BYREF | VT_I4, 0, -1, -1},
    };
    for (const Case& c : cases) {
        const CVarion original = Raw(c.vt, c.bits, c.size < 0 ? 8 : c.size);
        EXPECT_EQ(original.GetLen(), c.len) << c.vt;
        EXPECT_EQ(original.SizeOf(), c.size) << c.vt;
        if (c.len < 0) {
            std::vector<char> buffer(32, 0x55);
            EXPECT_EQ(original.GetTypeValue(buffer.data()), -1) << c.vt;
            EXPECT_EQ(buffer, std::vector<char>(32, 0x55)) << c.vt;
            continue;
        }
        const Record r = Write(original);
        for (bool bounded : {true, false}) {
            CVarion restored(OLESTR("previous string"));
            const long len = Read(restored, r, bounded);
            std::uint64_t got = 0;
            std::memcpy(&got, &Access::Var(restored).llVal, static_cast<std::size_t>(c.size));
            EXPECT_EQ(std::make_tuple(len, restored.GetType(), got, Write(restored)), std::make_tuple(c.len, c.vt, c.bits, r))
                << c.vt << (bounded ? " bounded" : " unbounded");
        }
    }
    EXPECT_EQ(CVarion(1).GetTypeValue(nullptr), -1);
}

// Arrays and strings have a length and a size; arrays have no record.
TEST(Record, LengthAndSizeOfArraysAndStrings) {
    CVarion strings(static_cast<unsigned short>(VT_BSTR), 2, 0);
    const CString a(OLESTR("A")), bc(OLESTR("BC"));
    strings.SetElementValue(&a, 0);
    strings.SetElementValue(&bc, 1);
    struct Case { CVarion value; long len; int size; };
    const Case cases[] = {
        {Sized(VT_UI1, 5), 11, 5},    {Sized(VT_BOOL, 3), 12, 3},     {Sized(VT_I4, 3, 4), 22, 16},
        {Sized(VT_R8, 0), 6, 0},      {Sized(VT_VARIANT, 2), -1, -1}, {strings, 14, 8},
        {CVarion(OLESTR("AB")), 12, 6},
    };
    for (const Case& c : cases) {
        char buffer[64] = {};
        EXPECT_EQ(std::make_pair(c.value.GetLen(), c.value.SizeOf()), std::make_pair(c.len, c.size)) << c.value.GetType();
        if (c.value.isArray()) { EXPECT_EQ(c.value.GetTypeValue(buffer), -1); }
    }
}

TEST(Record, StringsRoundTripExactly) {
    const OLECHAR withZero[] = {u'a', 0, u'b', 0};
    for (const CString& text : {CString(), CString(OLESTR("\U0001F600x")), CString(withZero, 4)}) {
        for (bool bounded : {true, false}) {
            SCOPED_TRACE(::testing::Message() << text.GetLength() << (bounded ? " bounded" : " unbounded"));
            CVarion original;
            Access::Var(original).bstrVal = SysAllocStringLen(text.GetString(), static_cast<UINT>(text.GetLength()));
            Access::Var(original).vt = VT_BSTR;
            const Record r = Write(original);
            CVarion restored(7);
            EXPECT_EQ(Read(restored, r, bounded), static_cast<long>(r.size()));
            ASSERT_EQ(restored.GetType(), VT_BSTR);
            BSTR s = Access::Var(restored).bstrVal;
            ASSERT_NE(s, nullptr);
            EXPECT_EQ(OleStringView(s, SysStringLen(s)), text.View());
        }
    }
}

TEST(Record, BoundedReaderRefusesBadRecordsUntouched) {
    struct Case {
        Record bytes;
        std::size_t size;  // the size passed; the whole record when 0
    };
    const Case cases[] = {
        {{6, 0, 0, 0, 0, 0}, 5}, {{5, 0, 0, 0, 0, 0}, 0},  // the header beyond the size; a length below the header's
        {{11, 0, 0, 0, 3, 0, 1, 2, 3, 4}, 0}, {{10, 0, 0, 0, 3, 0, 1, 2, 3, 4}, 9},  // a length beyond buffer; size
        {{9, 0, 0, 0, 3, 0, 1, 2, 3}, 0}, {{11, 0, 0, 0, 3, 0, 1, 2, 3, 4, 5}, 0},  // a VT_I4 payload too short; long
        {{7, 0, 0, 0, 0, 0, 1}, 0}, {{8, 0, 0, 0, 11, 0, 2, 0}, 0},  // VT_EMPTY with a payload; a Boolean byte 2
        {{10, 0, 0, 0, 8, 0, 0x41, 0, 0x42, 0}, 0},    // a string without terminator
        {{9, 0, 0, 0, 8, 0, 0x41, 0, 0}, 0}, {{7, 0, 0, 0, 8, 0, 0}, 0},  // odd; shorter than its terminator
        {{0xFF, 0xFF, 0xFF, 0xFF, 8, 0, 0, 0}, 0}, {{6, 0, 0, 0, 9, 0}, 0},  // a huge length; a code without a record
        {{6, 0, 0, 0, 0x11, 0x20}, 0}, {{10, 0, 0, 0, 3, 0x40, 1, 2, 3, 4}, 0},  // a byte array; by reference
    };
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        const Record& r = cases[i].bytes;
        CVarion value(OLESTR("untouched"));
        const auto before = Bytes(value);
        const std::size_t size = cases[i].size != 0 ? cases[i].size : r.size();
        EXPECT_EQ(value.SetTypeValue(reinterpret_cast<const char*>(r.data()), size), RC_NOT_CONVERTIBLE) << i;
        EXPECT_EQ(Bytes(value), before) << i;
    }
    CVarion value(1);
    EXPECT_EQ(value.SetTypeValue(nullptr, 100), RC_NOT_CONVERTIBLE);
    EXPECT_EQ(value.SetTypeValue(nullptr), RC_NOT_CONVERTIBLE);
    // A record followed by other bytes is read alone.
    EXPECT_EQ(Read(value, {10, 0, 0, 0, 3, 0, 2, 1, 0, 0, 0xAA, 0xBB, 0xCC}, true), 10);
    EXPECT_EQ(Bytes(value), Bytes(CVarion(258)));
}

// The unbounded reader trusts the type: the length field is answered as
// read, a string is read to its terminator, any non-zero Boolean byte is
// true, and a code without a record is set as it stands (its value field
// kept) or, where no value could come from bytes, gives VT_EMPTY.
TEST(Record, UnboundedReaderTrustsTheType) {
    CVarion value;
    EXPECT_EQ(Read(value, {0x40, 0, 0, 0, 3, 0, 4, 3, 2, 1}, false), 0x40);
    EXPECT_EQ(static_cast<long>(value), 0x01020304);
    EXPECT_EQ(Read(value, {10, 0, 0, 0, 8, 0, 0x41, 0, 0x42, 0}, false), 10);
    EXPECT_EQ(Utf8(Access::Var(value).bstrVal), "AB");
    Read(value, {8, 0, 0, 0, 11, 0, 7, 0}, false);
    EXPECT_EQ(Access::Var(value).bVal, 1);
    const std::pair<VARTYPE, VARTYPE> codes[] = {
        {VT_DISPATCH, VT_DISPATCH}, {104, 104}, {VT_UNKNOWN, VT_EMPTY}, {VT_ARRAY | VT_UI1, VT_EMPTY},
    };
    for (const auto& [code, held] : codes) {
        for (bool heldArray : {false, true}) {
            SCOPED_TRACE(::testing::Message() << code << (heldArray ? " over an array" : " over an I4"));
            CVarion v = heldArray ? Sized(VT_UI1, 4) : CVarion(0x01020304);
            const auto before = Bytes(v);
            const Record r = {6, 0, 0, 0, static_cast<unsigned char>(code), static_cast<unsigned char>(code >> 8)};
            EXPECT_EQ(Read(v, r, false), 6);  // a held array is released (leak check)
            EXPECT_EQ(v.GetType(), held);
            const auto after = Bytes(v);
            EXPECT_TRUE(held == VT_EMPTY || heldArray || std::equal(before.begin() + 8, before.end(), after.begin() + 8));
        }
    }
}

TEST(Record, StringAllocationFailure) {
    const Record r = {10, 0, 0, 0, 8, 0, 0x41, 0, 0, 0};
    CVarion bounded(OLESTR("kept"));
    const auto before = Bytes(bounded);
    FailAllocationAfter(1);
    EXPECT_EQ(Read(bounded, r, true), RC_NOT_CONVERTIBLE);
    FailAllocationAfter(0);
    EXPECT_EQ(Bytes(bounded), before);
    // The unbounded reader has no failure result: it never leaves a string
    // type without a string.
    CVarion unbounded(OLESTR("released"));
    FailAllocationAfter(1);
    EXPECT_EQ(Read(unbounded, r, false), 10);
    FailAllocationAfter(0);
    EXPECT_EQ(unbounded.GetType(), VT_EMPTY);
}

TEST(Record, ToByteArrayIsBigEndianIntoEightBytes) {
    struct Case { CVarion value; Record bytes; };
    const Case cases[] = {
        {CVarion(1.0), {0x3F, 0xF0, 0, 0, 0, 0, 0, 0}}, {CVarion(258), {0, 0, 0, 0, 0, 0, 0x01, 0x02}},
        {CVarion(-0.0f), {0, 0, 0, 0, 0x80, 0, 0, 0}},
    };
    for (const Case& c : cases) {
        CByteArray out;
        out.SetSize(8);
        ASSERT_TRUE(c.value.ToByteArray(out));
        EXPECT_EQ(Record(out.GetData(), out.GetData() + 8), c.bytes) << c.value.GetType();
    }
    for (long size : {0L, 7L, 9L}) {  // any other size is refused untouched
        CByteArray out;
        out.SetSize(size);
        for (long k = 0; k < size; ++k) out.SetAt(k, 0x77);
        EXPECT_FALSE(CVarion(1.0).ToByteArray(out));
        EXPECT_EQ(out.GetSize(), size);
        for (long k = 0; k < size; ++k) EXPECT_EQ(out.GetAt(k), 0x77) << size;
    }
}
