// The type-change dispatcher over every type code, ChangeType, CopyAs and the
// conversion operators.
#include "support/test_support.h"
#include "convert/numeric.h"
#include "value/access.h"

#include <gtest/gtest.h>

#include <limits>

using varion::detail::Access;
using varion::test::Bytes;

namespace {

bool IsCatalogueCode(VARTYPE t) {
    return t == VT_EMPTY || CVarion::IsNumericType(t) || t == VT_BSTR || CVarion::IsAnyDateType(t) || t == 0x2011;
}

CVarion DateValue(VARTYPE t, double days) {
    CVarion v(days);
    Access::Var(v).vt = t;
    return v;
}

std::vector<CVarion> Sources() {
    std::vector<CVarion> s;
    s.emplace_back();
    s.emplace_back(5);
    s.emplace_back(2.5);
    s.emplace_back(true);
    s.emplace_back(static_cast<ULONGLONG>(-1));
    s.emplace_back(OLESTR("5"));
    s.push_back(DateValue(VT_DATE, 2.0));
    s.push_back(DateValue(VTX_DURATION, 1.5));
    s.push_back(DateValue(VTX_ISO_DATETIME, 45000.25));
    s.emplace_back(VT_UI1, 3, 0);
    s.emplace_back(VT_I4, 3, 0);
    s.emplace_back(VT_BSTR, 0, 0);
    CVarion unknown(1);
    Access::Var(unknown).vt = VT_UNKNOWN;
    Access::Var(unknown).punkVal = nullptr;
    s.push_back(unknown);
    return s;
}

}  // namespace

// Every code from 0 to 0xFFFF from every kind of source: the answers that do
// not depend on the text and date routes are checked exactly; every answer
// is a result code, and a failure leaves the value byte-for-byte as it was.
TEST(Dispatch, EveryTypeCodeFromEveryKindOfSource) {
    for (const CVarion& source : Sources()) {
        const VARTYPE from = source.GetType();
        for (unsigned code = 0; code <= 0xFFFF; ++code) {
            const auto to = static_cast<VARTYPE>(code);
            CVarion v(source);
            const auto before = Bytes(v);
            const long rc = v.SetType(to);
            ASSERT_TRUE(rc == RC_OK || rc == RC_NOT_APPLICABLE || rc == RC_NOT_CONVERTIBLE || rc == RC_ABOVE_MAX ||
                        rc == RC_BELOW_MIN)
                << rc;
            if (rc != RC_OK) {
                ASSERT_EQ(Bytes(v), before) << "from " << from << " to " << code;
            }

            if (to == from) {
                ASSERT_EQ(rc, RC_OK);
            } else if ((from & VT_ARRAY) && from != 0x2011) {
                ASSERT_EQ(rc, RC_NOT_APPLICABLE) << "from " << from << " to " << code;
            } else if (to == VT_EMPTY) {
                ASSERT_EQ(rc, RC_OK);
                ASSERT_EQ(v.GetType(), VT_EMPTY);
            } else if (from == VT_EMPTY) {
                ASSERT_EQ(rc, IsCatalogueCode(to) ? RC_OK : RC_NOT_CONVERTIBLE) << code;
            } else if (!IsCatalogueCode(to)) {
                ASSERT_EQ(rc, RC_NOT_CONVERTIBLE) << "from " << from << " to " << code;
            } else if (to == 0x2011 && from != VT_BSTR) {
                ASSERT_EQ(rc, RC_NOT_CONVERTIBLE) << "from " << from;
            }
            if (rc == RC_OK && to != VT_BSTR && !CVarion::IsDateTimeType(to)) {
                ASSERT_EQ(v.GetType(), to);
            }
        }
    }
}

TEST(Dispatch, ArraysAndEmptyLegs) {
    CVarion ints(VT_I4, 3, 0);
    EXPECT_EQ(ints.SetType(VT_EMPTY), RC_NOT_APPLICABLE);
    EXPECT_EQ(ints.GetType(), VT_I4 | VT_ARRAY);
    EXPECT_EQ(ints.SetType(VT_I4 | VT_ARRAY), RC_OK);
    CVarion bytes(VT_UI1, 3, 0);
    EXPECT_EQ(bytes.SetType(VT_I4), RC_NOT_CONVERTIBLE);
    EXPECT_EQ(bytes.SetType(VT_EMPTY), RC_OK);
    EXPECT_EQ(bytes.GetType(), VT_EMPTY);
    CVarion empty;
    EXPECT_EQ(empty.SetType(VT_R8), RC_OK);
    EXPECT_EQ(static_cast<double>(empty), 0.0);
    EXPECT_EQ(empty.GetType(), VT_R8);
}

TEST(Dispatch, ChangeTypeAndCopyAs) {
    CVarion self(2.5);
    CVarion other(7.5);
    EXPECT_EQ(self.ChangeType(VT_I4, &other), RC_OK);
    EXPECT_EQ(other.GetType(), VT_I4);
    EXPECT_EQ(static_cast<long>(other), 8);
    EXPECT_EQ(self.GetType(), VT_R8);
    EXPECT_EQ(self.ChangeType(VT_I4), RC_OK);
    EXPECT_EQ(static_cast<long>(self), 3);

    const CVarion source(300);
    CVarion dest(OLESTR("old"));
    EXPECT_EQ(source.CopyAs(dest, VT_I2), RC_OK);
    EXPECT_EQ(dest.GetType(), VT_I2);
    EXPECT_EQ(source.CopyAs(dest, VT_UI1), RC_ABOVE_MAX);
    EXPECT_EQ(dest.GetType(), VT_I4);  // the unconverted copy
    EXPECT_EQ(static_cast<long>(dest), 300);
    CVarion same(300);
    EXPECT_EQ(same.CopyAs(same, VT_I2), RC_OK);
    EXPECT_EQ(same.GetType(), VT_I2);
}

TEST(ConversionOperators, ReadThroughTheConversion) {
    EXPECT_EQ(static_cast<int>(CVarion(256)), 1);
    EXPECT_EQ(static_cast<int>(CVarion(0.0)), 0);
    EXPECT_EQ(static_cast<unsigned char>(CVarion(300)), 0);
    EXPECT_EQ(static_cast<unsigned char>(CVarion(255)), 255);
    EXPECT_EQ(static_cast<long>(CVarion(2.5)), 3);
    EXPECT_EQ(static_cast<long>(CVarion(-2.5)), -3);
    EXPECT_EQ(static_cast<long>(CVarion(static_cast<LONGLONG>(1) << 40)), 0);  // beyond 32 bits
    EXPECT_EQ(static_cast<LONGLONG>(CVarion(static_cast<LONGLONG>(1) << 40)), static_cast<LONGLONG>(1) << 40);
    EXPECT_EQ(static_cast<unsigned long>(CVarion(-1)), 0u);
    EXPECT_EQ(static_cast<ULONGLONG>(CVarion(static_cast<ULONGLONG>(-1))), static_cast<ULONGLONG>(-1));
    EXPECT_EQ(static_cast<short>(CVarion(-32768)), -32768);
    EXPECT_EQ(static_cast<unsigned short>(CVarion(65536)), 0);
    EXPECT_EQ(static_cast<char>(CVarion(-128)), -128);
    EXPECT_EQ(static_cast<float>(CVarion(1e39)), 0.0f);
    EXPECT_EQ(static_cast<double>(CVarion(0.1f)), static_cast<double>(0.1f));
    EXPECT_EQ(static_cast<double>(CVarion()), 0.0);
    EXPECT_EQ(static_cast<double>(CVarion(VT_I4, 2, 0)), 0.0);
    EXPECT_EQ(varion::test::Utf8(static_cast<CString>(CVarion(OLESTR("abc")))), "abc");
    EXPECT_EQ(varion::test::Utf8(static_cast<CString>(CVarion(VT_I4, 2, 0))), "");
}

TEST(ConversionOperators, LeaveTheValueAlone) {
    const CVarion v(2.5);
    const auto before = Bytes(v);
    (void)static_cast<long>(v);
    (void)static_cast<unsigned char>(v);
    (void)static_cast<CString>(v);
    EXPECT_EQ(Bytes(v), before);
}

TEST(ConversionOperators, NumericReadsAndConversionsDoNotAllocate) {
    const CVarion values[] = {CVarion(2.5), CVarion(-7), CVarion(300u), CVarion(1.5f), CVarion(true),
                              CVarion(static_cast<ULONGLONG>(1) << 63)};
    double sink = 0;
    const long before = varion::test::AllocationCount();
    for (const CVarion& v : values) {
        sink += static_cast<int>(v) + static_cast<char>(v) + static_cast<unsigned char>(v) + static_cast<short>(v) +
                static_cast<unsigned short>(v) + static_cast<double>(static_cast<long>(v)) +
                static_cast<double>(static_cast<unsigned long>(v)) + static_cast<double>(static_cast<LONGLONG>(v)) +
                static_cast<double>(static_cast<ULONGLONG>(v)) + static_cast<float>(v) + static_cast<double>(v);
        CVarion copy(v);
        for (VARTYPE t : varion::detail::kNumericTypes) {
            CVarion step(copy);
            step.SetType(t);
            step = copy;
        }
    }
    EXPECT_EQ(varion::test::AllocationCount(), before);
    EXPECT_NE(sink, 0);
}
