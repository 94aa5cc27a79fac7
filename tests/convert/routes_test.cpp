// The type-change dispatcher, cell by cell: every kind of current type
// (rows) changed into every kind of new type (columns).
#include "convert_test_util.h"

#include <gtest/gtest.h>

#include <functional>
#include <sstream>

using namespace varion::test;

namespace {

constexpr VARTYPE kBytes = VT_ARRAY | VT_UI1;

// The value as "TYPE:content", read from its bytes, not through conversions.
std::string Describe(const CVarion& v) {
    std::ostringstream s;
    switch (v.GetType()) {
    case VT_EMPTY: return "EMPTY";
    case VT_I2: s << "I2:" << FieldOf<std::int16_t>(v); break;
    case VT_I4: s << "I4:" << FieldOf<std::int32_t>(v); break;
    case VT_R8: s << "R8:" << FieldOf<double>(v); break;
    case VT_DATE: s << "DATE:" << FieldOf<double>(v); break;
    case VTX_DATETIME: s << "DATETIME:" << FieldOf<double>(v); break;
    case VTX_DURATION: s << "DURATION:" << FieldOf<double>(v); break;
    case VT_BSTR: s << "BSTR:" << StringOf(v); break;
    case kBytes: {
        s << "BYTES:";
        for (const char b : ArrayBytes(v)) s << static_cast<int>(static_cast<unsigned char>(b)) << ';';
        break;
    }
    default: s << "TYPE" << v.GetType(); break;
    }
    return s.str();
}

struct Source {
    const char* kind;
    std::function<CVarion()> make;
};

// One representative of each kind of current type.
const Source kEmpty{"empty", [] { return CVarion(); }};
const Source kNumeric{"numeric", [] { return CVarion(static_cast<short>(5)); }};
const Source kNumberText{"string", [] { return CVarion("5"); }};
const Source kByteText{"string", [] { return CVarion("0x05"); }};
const Source kDateText{"string", [] {
    CVarion v = Raw<double>(VT_DATE, 45002.5);  // 2023-03-17 12:00, written as the library writes dates
    v.SetType(VT_BSTR);
    return v;
}};
const Source kDate{"date family", [] { return Raw<double>(VT_DATE, 45002.5); }};
const Source kBytesSource{"byte array", [] { return ByteArray({5}); }};
const Source kOtherArray{"other array", [] { return CVarion(static_cast<unsigned short>(VT_I4), 0L, 0L); }};

struct Cell {
    const Source& source;
    VARTYPE target;
    long code;
    const char* result;  // Describe() of the value afterwards
};

// clang-format off
const Cell kCells[] = {
    // current \ new: empty         numeric                           string                        date family                         byte array
    {kEmpty, VT_EMPTY, 0, "EMPTY"}, {kEmpty, VT_I4, 0, "I4:0"},       {kEmpty, VT_BSTR, 0, "BSTR:"}, {kEmpty, VTX_DATETIME, 0, "DATETIME:0"}, {kEmpty, kBytes, 0, "BYTES:"},
    {kNumeric, VT_EMPTY, 0, "EMPTY"}, {kNumeric, VT_I4, 0, "I4:5"},   {kNumeric, VT_BSTR, 0, "BSTR:5"}, {kNumeric, VT_DATE, 0, "DATE:7"}, {kNumeric, kBytes, -2, "I2:5"},
    {kNumberText, VT_EMPTY, 0, "EMPTY"}, {kNumberText, VT_I4, 0, "I4:5"}, {kNumberText, VT_BSTR, 0, "BSTR:5"}, {kDateText, VTX_DATETIME, 0, "DATE:45002.5"}, {kByteText, kBytes, 0, "BYTES:5;"},
    {kDate, VT_EMPTY, 0, "EMPTY"}, {kDate, VT_I4, 0, "I4:45001"},     {kDate, VT_DATE, 0, "DATE:45002.5"}, {kDate, VTX_DATETIME, 0, "DATETIME:45002.5"}, {kDate, kBytes, -2, "DATE:45002.5"},
    {kBytesSource, VT_EMPTY, 0, "EMPTY"}, {kBytesSource, VT_I4, -2, "BYTES:5;"}, {kBytesSource, VT_BSTR, 0, "BSTR:0x05"}, {kBytesSource, VT_DATE, -2, "BYTES:5;"}, {kBytesSource, kBytes, 0, "BYTES:5;"},
    {kOtherArray, VT_EMPTY, -1, "TYPE8195"}, {kOtherArray, VT_I4, -1, "TYPE8195"}, {kOtherArray, VT_BSTR, -1, "TYPE8195"}, {kOtherArray, VT_DATE, -1, "TYPE8195"}, {kOtherArray, kBytes, -1, "TYPE8195"},
};
// clang-format on

TEST(Dispatcher, EveryKindIntoEveryKind) {
    for (const Cell& cell : kCells) {
        CVarion v = cell.source.make();
        const auto before = Bytes(v);
        const std::string what = std::string(cell.source.kind) + " " + Describe(v) + " to " + std::to_string(cell.target);
        EXPECT_EQ(v.SetType(cell.target), cell.code) << what;
        EXPECT_EQ(Describe(v), cell.result) << what;
        if (cell.code < 0) {
            EXPECT_EQ(Bytes(v), before) << what;
        }
    }
}

}  // namespace
