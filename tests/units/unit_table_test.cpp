// The unit table's invariants and the lookup over it.
#include <varion/units.h>

#include "support/test_support.h"
#include "units/unit_table.h"
#include "units/unit_table_data.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <iterator>
#include <set>
#include <string>

namespace {

using varion::detail::FindUnit;
using varion::detail::FindUnitIndex;
using varion::detail::kUnitRowCount;
using varion::detail::kUnitRows;
using varion::detail::kUnitTexts;
using varion::detail::UnitRow;

struct Range {
    int first, last;
};

// Every code the table holds, as the published list of the codes gives them.
constexpr Range kPresent[] = {
    {1, 155}, {160, 169}, {235, 239}, {250, 253}, {1000, 1520}, {1551, 1556}, {1558, 1559}, {1561, 1635},
    {1637, 1645}, {16416, 16419}, {16641, 16654}, {16785, 16785}, {16810, 16819}, {16877, 16879},
    {16911, 16915}, {16918, 16927}, {17017, 17019}, {17026, 17034}, {17066, 17086}, {17131, 17131},
    {17172, 17173}, {17266, 17268}, {17272, 17272}, {17448, 17451}, {17454, 17454}, {17518, 17521},
    {17532, 17532}, {17574, 17576}, {17578, 17580}, {17644, 17644}, {17708, 17709}, {17711, 17713},
    {17815, 17815}, {17970, 17973}, {18236, 18241}, {18301, 18301}, {18502, 18520}, {18778, 18788},
    {18790, 18792}, {18834, 18836}, {18998, 18999}, {19317, 19319}, {19781, 19781}, {19801, 19801},
    {19838, 19838}, {19840, 19840}, {19874, 19874}, {19876, 19877}, {20036, 20036}, {20351, 20351},
    {20353, 20353}, {20364, 20366}, {20518, 20518}, {20792, 20793}, {20795, 20795}, {20886, 20886},
    {20896, 20897}, {21145, 21145}, {21284, 21284}, {21306, 21306}, {21543, 21543}, {21797, 21797},
    {21923, 21923}, {22159, 22160}, {22338, 22339}, {22677, 22677}, {22682, 22683}, {22891, 22891},
    {22936, 22936}, {23141, 23141}, {23145, 23146}, {23148, 23149}, {23179, 23179}, {23209, 23209},
};

// The extended codes that are rows of their own rather than repeats.
constexpr Range kOwnExtended[] = {{16810, 16819}, {17066, 17086}, {17578, 17580}};

std::set<int> Expand(const Range* begin, const Range* end) {
    std::set<int> codes;
    for (const Range* r = begin; r != end; ++r)
        for (int c = r->first; c <= r->last; ++c) codes.insert(c);
    return codes;
}

bool IsHart(int code) { return code < 1000 || code >= 16384; }

// The table holds exactly the published codes (it is ascending by
// construction), and the lookup finds each of them and nothing else.
TEST(UnitTable, LookupFindsEveryPresentCodeAndNothingElse) {
    const std::set<int> present = Expand(std::begin(kPresent), std::end(kPresent));
    ASSERT_EQ(kUnitRowCount, 991);
    ASSERT_EQ(present.size(), 991u);
    // Every short and beyond: the narrowed starts must never hide a row.
    for (int code = -40000; code <= 70000; ++code) {
        const int index = FindUnitIndex(code);
        if (present.count(code) != 0) {
            ASSERT_TRUE(index >= 0 && kUnitRows[index].code == code && FindUnit(code) == &kUnitRows[index]) << code;
        } else {
            ASSERT_TRUE(index == -1 && FindUnit(code) == nullptr) << code;
        }
    }
}

// Rows whose group, quantity number and factor are fixed by their definitions.
TEST(UnitTable, TellingRowsHoldExactly) {
    const UnitRow rows[] = {
        {1, 11, 0, 0.00401463075984252}, {7, 11, 0, 1e-05},   {32, 35, 1, 0.0},       {1001, 1000, 1, 0.0},
        {1137, 1130, 0, 1e-05},          {16416, 35, 1, 0.0}, {16641, 11, 0, 0.00401463075984252},
    };
    for (const UnitRow& expected : rows) {
        const UnitRow* row = FindUnit(expected.code);
        ASSERT_NE(row, nullptr) << expected.code;
        EXPECT_EQ(row->group, expected.group) << expected.code;
        EXPECT_EQ(row->kind, expected.kind) << expected.code;
        EXPECT_EQ(row->factor, expected.factor) << expected.code;
    }
    // code, kind: the quantity numbers that are fixed
    const std::pair<int, unsigned> kinds[] = {{28, 2}, {1347, 2}, {21, 3}, {1061, 3}, {43, 4}, {1034, 4}, {45, 5},
                                              {1023, 6}, {51, 7}, {1054, 7}, {61, 9}, {1088, 9}, {73, 10}, {1322, 10}};
    for (const auto& [code, kind] : kinds) EXPECT_EQ(FindUnit(code)->kind, kind) << code;
}

TEST(UnitTable, GroupsKindsFactorsAndTextsAreConsistent) {
    const std::set<int> temperatures = {32, 33, 34, 35, 1000, 1001, 1002, 1003, 16416, 16417, 16418, 16419};
    const std::set<int> kelvin = {35, 1000, 16419};
    for (int i = 0; i < kUnitRowCount; ++i) {
        const UnitRow& row = kUnitRows[i];
        EXPECT_NE(std::string(kUnitTexts[i].name), "") << row.code;
        EXPECT_NE(std::string(kUnitTexts[i].quantity), "") << row.code;
        EXPECT_EQ(std::string(kUnitTexts[i].symbol).empty(), row.code >= 250 && row.code <= 253) << row.code;
        const UnitRow* reference = FindUnit(row.group);
        ASSERT_NE(reference, nullptr) << "group " << row.group << " of " << row.code;
        EXPECT_EQ(reference->group, row.group) << row.code;
        EXPECT_EQ(reference->kind, row.kind) << row.code;
        EXPECT_LE(row.kind, 42u) << row.code;
        // HART units and fieldbus units never convert into each other.
        EXPECT_EQ(IsHart(row.code), IsHart(row.group)) << row.code;
        // Temperatures convert by formula, with the factor 1 for kelvin and 0 for the others.
        const bool temperature = temperatures.count(row.code) != 0;
        EXPECT_EQ(row.kind == varion::detail::kTemperatureKind, temperature) << row.code;
        if (temperature)
            EXPECT_EQ(row.factor, kelvin.count(row.code) != 0 ? 1.0 : 0.0) << row.code;
        else
            EXPECT_TRUE(std::isfinite(row.factor) && row.factor > 0.0 && reference->factor == 1.0) << row.code;
    }
}

TEST(UnitTable, ExtendedCodesRepeatTheirHartCode) {
    const std::set<int> own = Expand(std::begin(kOwnExtended), std::end(kOwnExtended));
    ASSERT_EQ(own.size(), 34u);
    int repeats = 0;
    for (int i = 0; i < kUnitRowCount; ++i) {
        const UnitRow& row = kUnitRows[i];
        if (row.code < 16384) continue;
        const int h = (row.code - 16384) % 256;
        // Rows of their own are exactly those whose h is no HART code.
        EXPECT_EQ(own.count(row.code) != 0, h >= 170 && FindUnit(h) == nullptr) << row.code;
        if (own.count(row.code) != 0) continue;
        ++repeats;
        const int base = FindUnitIndex(h);
        ASSERT_GE(base, 0) << row.code;
        EXPECT_EQ(row.group, kUnitRows[base].group) << row.code;
        EXPECT_EQ(row.kind, kUnitRows[base].kind) << row.code;
        EXPECT_EQ(row.factor, kUnitRows[base].factor) << row.code;
        EXPECT_STREQ(kUnitTexts[i].symbol, kUnitTexts[base].symbol) << row.code;
        EXPECT_STREQ(kUnitTexts[i].name, kUnitTexts[base].name) << row.code;
    }
    EXPECT_EQ(repeats, 170);
}

#if !defined(_WIN32)  // the generator runs on the build machine, through its shell and Python
TEST(UnitTable, GeneratedHeaderIsUpToDate) {
    const auto root = std::filesystem::path(__FILE__).parent_path().parent_path().parent_path();
    const auto script = root / "src" / "units" / "gen_unit_table.py";
    ASSERT_TRUE(std::filesystem::exists(script)) << script;
    std::string output;
    EXPECT_EQ(varion::test::RunCommand("python3 '" + script.string() + "' --check", output, true), 0) << output;
}
#endif

TEST(UnitInfo, PublicLookup) {
    EXPECT_EQ(VarionUnitCount(), 991);
    VarionUnitInfo info{};
    ASSERT_TRUE(VarionUnitFind(1013, &info));
    EXPECT_TRUE(info.code == 1013 && info.group == 1010 && info.kind == 5u && info.factor == 1000.0);
    EXPECT_EQ(std::string(info.symbol) + "|" + info.name + "|" + info.quantity, "mm|millimeter|length");
    ASSERT_TRUE(VarionUnitAt(990, &info));
    EXPECT_EQ(info.code, 23209);
    ASSERT_TRUE(VarionUnitAt(0, &info));
    EXPECT_EQ(info.code, 1);
    // Failures leave the caller's row as it was.
    for (short code : {short(-1), short(23210)}) EXPECT_FALSE(VarionUnitFind(code, &info)) << code;
    for (int index : {-1, 991}) EXPECT_FALSE(VarionUnitAt(index, &info)) << index;
    EXPECT_EQ(info.code, 1);
    EXPECT_STREQ(info.symbol, kUnitTexts[0].symbol);
    EXPECT_FALSE(VarionUnitFind(7, nullptr));
    EXPECT_FALSE(VarionUnitAt(0, nullptr));
}

}  // namespace
