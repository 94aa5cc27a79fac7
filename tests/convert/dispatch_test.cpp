// The type-change dispatcher: the empty value and byte arrays into each kind
// of new type, every type code from every kind of source; ChangeType, CopyAs
// and the conversion operators.
#include "convert_test_util.h"

#include <gtest/gtest.h>

#include <limits>
#include <optional>
#include <utility>
#include <vector>

using namespace varion::test;

namespace {

constexpr VARTYPE kBytes = VT_ARRAY | VT_UI1;

// The content of a value, read from its bytes, not through conversions.
std::string Content(const CVarion& v) {
    if (v.GetType() == VT_BSTR) return StringOf(v);
    if (v.GetType() == kBytes) return ArrayBytes(v);
    return std::isnan(NumberOf(v)) ? "" : std::to_string(static_cast<double>(NumberOf(v)));
}

// An empty value becomes the zero value of the new type; a byte array
// becomes text and nothing else but VT_EMPTY. (Each route is checked with
// its own rules elsewhere; same-type changes, changes to VT_EMPTY, other
// arrays and the route-free refusals are decided by the sweep below.)
TEST(Dispatch, FromEmptyAndFromByteArrays) {
    const CVarion empty, bytes = ByteArray("\x05");
    // Each source, the type asked for, the result code, the type and content afterwards.
    const struct { const CVarion& source; VARTYPE target; long code; VARTYPE type; std::string content; } cells[] = {
        {empty, VT_I4, 0, VT_I4, "0.000000"}, {empty, VT_BSTR, 0, VT_BSTR, ""}, {empty, kBytes, 0, kBytes, ""},
        {empty, VTX_DATETIME, 0, VTX_DATETIME, "0.000000"}, {bytes, VT_I4, -2, kBytes, "\x05"}, {bytes, VT_DATE, -2, kBytes, "\x05"},
    };
    for (const auto& cell : cells) {
        CVarion v(cell.source);
        const std::string what = std::to_string(v.GetType()) + " " + Content(v) + " to " + std::to_string(cell.target);
        ExpectChange(v, cell.target, cell.code, what);
        EXPECT_EQ(v.GetType(), cell.type) << what;
        EXPECT_EQ(Content(v), cell.content) << what;
    }
}

// The answer of SetType that does not depend on the text and date routes;
// nullopt where it does.
std::optional<long> RouteFreeAnswer(VARTYPE from, VARTYPE to) {
    const bool catalogued = to == VT_EMPTY || CVarion::IsNumericType(to) || to == VT_BSTR || CVarion::IsAnyDateType(to) || to == kBytes;
    if (to == from) return RC_OK;
    if ((from & VT_ARRAY) && from != kBytes) return RC_NOT_APPLICABLE;
    if (to == VT_EMPTY) return RC_OK;
    if (!catalogued) return RC_NOT_CONVERTIBLE;
    if (from == VT_EMPTY) return RC_OK;
    if (to == kBytes && from != VT_BSTR) return RC_NOT_CONVERTIBLE;
    return std::nullopt;
}

// Every code from 0 to 0xFFFF from every kind of source: every answer is a
// result code, a failure leaves the value byte-for-byte as it was, and a
// success gives the type asked for (date-times from text give VT_DATE).
TEST(Dispatch, EveryTypeCodeFromEveryKindOfSource) {
    std::vector<CVarion> sources = {CVarion(), CVarion(5), CVarion(2.5), CVarion(true), CVarion(static_cast<ULONGLONG>(-1)),
                                    CVarion(OLESTR("5")), Raw(VT_DATE, 2.0), Raw(VTX_DURATION, 1.5),
                                    Raw(VTX_ISO_DATETIME, 45000.25), Raw<IUnknown*>(VT_UNKNOWN, nullptr)};
    for (const VARTYPE arrayOf : {VT_UI1, VT_I4, VT_BSTR}) sources.emplace_back(arrayOf, 3, 0);
    for (const CVarion& source : sources) {
        const VARTYPE from = source.GetType();
        for (unsigned code = 0; code <= 0xFFFF; ++code) {
            const auto to = static_cast<VARTYPE>(code);
            CVarion v(source);
            const auto before = Bytes(v);
            const long rc = v.SetType(to);
            ASSERT_TRUE(rc == RC_OK || rc == RC_NOT_APPLICABLE || rc == RC_NOT_CONVERTIBLE || rc == RC_ABOVE_MAX ||
                        rc == RC_BELOW_MIN) << rc;
            if (const auto want = RouteFreeAnswer(from, to)) {
                ASSERT_EQ(rc, *want) << "from " << from << " to " << code;
            }
            if (rc != RC_OK) {
                ASSERT_EQ(Bytes(v), before) << "from " << from << " to " << code;
            } else if (to != VT_BSTR && !CVarion::IsDateTimeType(to)) {
                ASSERT_EQ(v.GetType(), to) << "from " << from;
            }
        }
    }
}

// ChangeType changes the target it is given (else the value itself);
// CopyAs changes a copy, and a failed change leaves the unconverted copy.
TEST(Dispatch, ChangeTypeAndCopyAs) {
    using State = std::pair<VARTYPE, double>;  // type and number
    const auto state = [](const CVarion& v) { return State(v.GetType(), static_cast<double>(NumberOf(v))); };
    CVarion self(2.5), other(7.5);
    EXPECT_EQ(self.ChangeType(VT_I4, &other), RC_OK);
    EXPECT_EQ(state(other), State(VT_I4, 8));
    EXPECT_EQ(state(self), State(VT_R8, 2.5));
    EXPECT_EQ(self.ChangeType(VT_I4), RC_OK);
    EXPECT_EQ(state(self), State(VT_I4, 3));

    const CVarion source(300);
    CVarion dest(OLESTR("old"));
    EXPECT_EQ(source.CopyAs(dest, VT_I2), RC_OK);
    EXPECT_EQ(state(dest), State(VT_I2, 300));
    EXPECT_EQ(source.CopyAs(dest, VT_UI1), RC_ABOVE_MAX);
    EXPECT_EQ(state(dest), State(VT_I4, 300));
    CVarion same(300);
    EXPECT_EQ(same.CopyAs(same, VT_I2), RC_OK);
    EXPECT_EQ(state(same), State(VT_I2, 300));
}

TEST(ConversionOperators, ReadThroughTheConversion) {
    EXPECT_EQ(static_cast<int>(CVarion(256)), 1);
    EXPECT_EQ(static_cast<unsigned char>(CVarion(300)), 0);
    EXPECT_EQ(static_cast<long>(CVarion(-2.5)), -3);
    EXPECT_EQ(static_cast<LONGLONG>(CVarion(static_cast<LONGLONG>(1) << 40)), static_cast<LONGLONG>(1) << 40);
    EXPECT_EQ(static_cast<double>(CVarion(VT_I4, 2, 0)), 0.0);
    EXPECT_EQ(varion::test::Utf8(static_cast<CString>(CVarion(OLESTR("abc")))), "abc");
    EXPECT_EQ(varion::test::Utf8(static_cast<CString>(CVarion(VT_I4, 2, 0))), "");
    // Reading converts a copy: the value itself stays as it was.
    const CVarion v(2.5);
    const auto before = Bytes(v);
    EXPECT_EQ(static_cast<unsigned char>(v) + static_cast<long>(v), 6);
    EXPECT_EQ(varion::test::Utf8(static_cast<CString>(v)), "2.5");
    EXPECT_EQ(Bytes(v), before);
}

}  // namespace
