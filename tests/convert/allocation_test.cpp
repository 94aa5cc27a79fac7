// Conversions among numbers and the date family allocate nothing: SetType
// into every numeric and date-family code (succeeding or failing), ChangeType
// and CopyAs, the conversion operators on dates and durations, IsNull, and the
// copies and assignments of such values. (The numeric operators and SetType
// between numeric codes are counted in dispatch_test.cpp.)
#include "convert/numeric.h"
#include "support/test_support.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

using varion::test::AllocationCount;

namespace {

std::vector<CVarion> Sources() {
    return {CVarion(2.5),
            CVarion(-7),
            CVarion(4000000000u),
            CVarion(std::numeric_limits<ULONGLONG>::max()),
            CVarion(1.5f),
            CVarion(true),
            CVarion(std::numeric_limits<double>::infinity()),
            CVarion(2026L, 11L, 17L, 20L, 18L, 38L, 250L, VT_DATE),
            CVarion(2026L, 11L, 17L, 0L, 0L, 0L, 0L, VTX_ISO_DATETIME),
            CVarion(0L, 1L, 30L, 0L, 0L, 0L, VTX_DURATION),
            CVarion(-1L, 0L, 0L, 0L, 500L, 7L, VTX_DURATION_MSF),
            CVarion(3L, 0L, 0L, 0L, 0L, 0L, VTX_ISO_DURATION)};
}

constexpr VARTYPE kDateCodes[] = {VT_DATE,  VTX_DURATION,     VTX_DURATION_MSF, VTX_DATETIME_ALT,
                                  VTX_DATETIME, VTX_ISO_DURATION, VTX_ISO_DATETIME};

// Every numeric and date-family code.
std::vector<VARTYPE> Targets() {
    std::vector<VARTYPE> targets(std::begin(varion::detail::kNumericTypes), std::end(varion::detail::kNumericTypes));
    targets.insert(targets.end(), std::begin(kDateCodes), std::end(kDateCodes));
    return targets;
}

TEST(ConversionAllocations, NumbersAndDatesConvertWithoutAllocating) {
    const std::vector<CVarion> sources = Sources();
    const std::vector<VARTYPE> targets = Targets();
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

TEST(ConversionAllocations, CopiesOfValuesWithoutContentAllocateNothing) {
    const std::vector<CVarion> sources = Sources();
    long types = 0;
    const long before = AllocationCount();
    for (const CVarion& source : sources) {
        CVarion copy(source);
        CVarion assigned(7);
        assigned = source;
        CVarion moved(std::move(copy));
        types += assigned.GetType() + moved.GetType();
    }
    EXPECT_EQ(AllocationCount() - before, 0);
    EXPECT_NE(types, 0);
}

}  // namespace
