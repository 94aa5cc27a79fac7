// Conversions among numbers and the date family allocate nothing: SetType
// into every numeric and date-family code (succeeding or failing), ChangeType
// and CopyAs, the conversion operators, IsNull, and the copies and
// assignments of such values. Reading a number from text allocates nothing;
// writing one allocates the new string alone.
#include "convert/numeric.h"
#include "convert_test_util.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

using namespace varion::test;

namespace {

std::vector<CVarion> Sources() {
    return {CVarion(2.5), CVarion(-7), CVarion(4000000000u), CVarion(std::numeric_limits<ULONGLONG>::max()),
            CVarion(1.5f), CVarion(true), CVarion(std::numeric_limits<double>::infinity()),
            CVarion(2026L, 11L, 17L, 20L, 18L, 38L, 250L, VT_DATE), CVarion(2026L, 11L, 17L, 0L, 0L, 0L, 0L, VTX_ISO_DATETIME),
            CVarion(0L, 1L, 30L, 0L, 0L, 0L, VTX_DURATION), CVarion(-1L, 0L, 0L, 0L, 500L, 7L, VTX_DURATION_MSF),
            CVarion(3L, 0L, 0L, 0L, 0L, 0L, VTX_ISO_DURATION)};
}

TEST(ConversionAllocations, NumbersAndDatesConvertWithoutAllocating) {
    const std::vector<CVarion> sources = Sources();
    std::vector<VARTYPE> targets(std::begin(varion::detail::kNumericTypes), std::end(varion::detail::kNumericTypes));
    targets.insert(targets.end(), {VT_DATE, VTX_DURATION, VTX_DURATION_MSF, VTX_DATETIME_ALT, VTX_DATETIME,
                                   VTX_ISO_DURATION, VTX_ISO_DATETIME});
    long codes = 0;
    double reads = 0;
    const long before = AllocationCount();
    for (const CVarion& source : sources) {
        for (const VARTYPE t : targets) {
            CVarion v(source);
            codes += v.SetType(t);
            CVarion unchanged(source);
            CVarion target(source);
            codes += unchanged.ChangeType(t, &target);
            CVarion destination(0.5);
            codes += source.CopyAs(destination, t);
            target = source;  // assignment over a value without content
            CVarion moved(std::move(destination));
            codes += moved.GetType();
        }
        reads += static_cast<int>(source) + static_cast<char>(source) + static_cast<unsigned char>(source) +
                 static_cast<short>(source) + static_cast<unsigned short>(source) +
                 static_cast<double>(static_cast<long>(source)) + static_cast<double>(static_cast<unsigned long>(source)) +
                 static_cast<double>(static_cast<LONGLONG>(source)) +
                 static_cast<double>(static_cast<ULONGLONG>(source)) + static_cast<float>(source) +
                 static_cast<double>(source) + source.IsNull();
    }
    EXPECT_EQ(AllocationCount() - before, 0);
    EXPECT_NE(codes, 0);  // some changes fail (out of range), and are counted too
    EXPECT_NE(reads, 0);
}

TEST(ConversionAllocations, NumberTextsAllocateOnlyTheNewString) {
    const struct { const char* text; VARTYPE target; } parses[] = {
        {"12,5", VT_R8}, {" -1234.5678e-3 ", VT_R4}, {"0x7FFF", VT_I2}, {"2.5", VT_I4}, {"inf", VT_R8},
        {"18446744073709551615", VT_UI8}, {"true", VT_BOOL}};
    for (const auto& c : parses) {
        CVarion v(c.text);
        const long before = AllocationCount();
        v.SetType(c.target);
        EXPECT_EQ(AllocationCount(), before) << c.text;
    }
    ScopedCLocale comma("de_DE.UTF-8");
    const CVarion writes[] = {CVarion(-123456789), CVarion(2.5), CVarion(1e300), CVarion(0.1f), CVarion(false),
                              CVarion(std::numeric_limits<ULONGLONG>::max()), ByteArray("\x01\x02\x03")};
    for (const CVarion& source : writes) {
        CVarion v(source);
        const long before = AllocationCount();
        ASSERT_EQ(v.SetType(VT_BSTR), RC_OK);
        EXPECT_EQ(AllocationCount() - before, kNewPerString) << StringOf(v);
    }
}

}  // namespace
