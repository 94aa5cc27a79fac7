// Type predicates and the device-description type mapping over every code.
#include "support/test_support.h"
#include "value/access.h"

#include <gtest/gtest.h>

#include <set>

static_assert(sizeof(CVarion) == sizeof(VARIANT));
static_assert(sizeof(CVarion) == 16 || (sizeof(void*) == 8 && sizeof(CVarion) == 24),
              "16 bytes, or 24 where 64-bit Windows has its larger VARIANT");

TEST(Catalogue, PredicatesOverEveryTypeCode) {
    const std::set<unsigned> numeric = {2, 3, 4, 5, 11, 16, 17, 18, 19, 20, 21};
    const std::set<unsigned> dateTime = {7, 102, 103, 106};
    const std::set<unsigned> duration = {100, 101, 105};
    const std::set<unsigned> extended = {100, 101, 105, 106};
    for (unsigned code = 0; code <= 0xFFFF; ++code) {
        const auto t = static_cast<VARTYPE>(code);
        ASSERT_EQ(CVarion::IsNumericType(t), numeric.count(code) > 0) << code;
        ASSERT_EQ(CVarion::IsStringType(t), code == 8) << code;
        ASSERT_EQ(CVarion::IsDateTimeType(t), dateTime.count(code) > 0) << code;
        ASSERT_EQ(CVarion::IsDurationType(t), duration.count(code) > 0) << code;
        ASSERT_EQ(CVarion::IsAnyDateType(t), dateTime.count(code) + duration.count(code) > 0) << code;
        ASSERT_EQ(CVarion::IsNativeVariant(t), extended.count(code) == 0) << code;
    }
}

// Values: numbers and the date family count, except the two native extended
// date-times; strings, empty values and arrays do not.
TEST(Catalogue, IsNumericOfValues) {
    for (const CVarion& v : {CVarion(OLESTR("5")), CVarion(), CVarion(VT_I4, 3, 0)}) EXPECT_EQ(v.IsNumeric(), 0);
    EXPECT_EQ(CVarion(true).IsNumeric(), 1);
    CVarion date(1.0);
    for (VARTYPE t : std::initializer_list<VARTYPE>{VT_DATE, VTX_DURATION, VTX_DURATION_MSF, VTX_ISO_DURATION,
                                                    VTX_ISO_DATETIME, VTX_DATETIME_ALT, VTX_DATETIME}) {
        varion::detail::Access::Var(date).vt = t;
        EXPECT_EQ(date.IsNumeric(), t == VTX_DATETIME_ALT || t == VTX_DATETIME ? 0 : 1) << t;
    }
}

TEST(Catalogue, DeviceDescriptionTypes) {
    struct Case { unsigned short dd; short size; VARTYPE want; };
    const Case cases[] = {
        {1, 4, VT_I4},      {1, 3, VT_I4},         {1, 5, VT_I8},        {1, 2, VT_I2},        {1, 1, VT_I1},
        {1, -5, VT_I1},     {2, 8, VT_UI8},        {2, 1, VT_UI1},
        {5, 4, VT_UI4},     {6, 2, VT_UI2},        {13, 8, VT_UI4},      {13, 3, VT_UI4},      {13, 2, VT_UI2},
        {13, -1, VT_UI1},   {3, 8, VT_R4},         {22, 1, VT_R4},       {23, 4, VT_R4},       {24, 0, VT_R4},
        {4, 4, VT_R8},      {7, 1, VT_BSTR},       {26, 9, VT_BSTR},     {19, 0, VT_BSTR},     {12, 0, 0x2011},
        {14, 0, VT_DATE},      {15, 8, VT_DATE},     {20, 8, VT_DATE},     {16, 8, VTX_DURATION_MSF},
        {17, 8, VTX_DURATION}, {18, 1, VT_BOOL},   {21, 4, VT_EMPTY},    {25, 2, VT_I4},       {300, 8, VTX_ISO_DATETIME},
        {301, 8, VTX_ISO_DURATION}, {0, 4, VT_EMPTY},
    };
    for (const Case& c : cases)
        EXPECT_EQ(CVarion::DDType2VariantType(c.dd, c.size), c.want) << c.dd << " size " << c.size;
    // Beyond the table nothing is named, and never an extended date-time.
    for (unsigned dd = 0; dd <= 0xFFFF; ++dd) {
        for (short size : {short{-32768}, short{-1}, short{0}, short{1}, short{2}, short{3}, short{4}, short{5},
                           short{8}, short{32767}}) {
            const VARTYPE t = CVarion::DDType2VariantType(static_cast<unsigned short>(dd), size);
            ASSERT_TRUE(t != VTX_DATETIME && t != VTX_DATETIME_ALT) << dd;
            ASSERT_TRUE(t == VT_EMPTY || dd <= 26 || dd == 300 || dd == 301) << dd;
        }
    }
}
