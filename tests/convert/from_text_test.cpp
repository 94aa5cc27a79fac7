// Text to value: the rules of every target type, read from the texts a user
// or a device description hands in.
#include "convert_test_util.h"

#include "convert/number_text.h"
#include "platform/alloc.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>
#include <random>

using namespace varion::test;

namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr VARTYPE kBytes = VT_ARRAY | VT_UI1;

struct ParseCase {
    const char* text;
    VARTYPE target;
    std::optional<CVarion> expected;  // nullopt: the text is refused with -2
};

const std::nullopt_t kRefused = std::nullopt;

std::vector<ParseCase> ParseCases() {
    using SC = signed char;
    using UC = unsigned char;
    using LL = LONGLONG;
    using ULL = ULONGLONG;
    return {
        // Booleans: only an empty or blank text is false.
        {"", VT_BOOL, CVarion(false)},
        {" \t ", VT_BOOL, CVarion(false)},
        {"false", VT_BOOL, CVarion(true)},
        {"0", VT_BOOL, CVarion(true)},

        // Integers: bases, signs, white space, decimal fallback.
        {" 42 ", VT_I4, CVarion(42)},
        {"0x1F", VT_I4, CVarion(31)},
        {"0X1f", VT_I4, CVarion(31)},
        {"0b101", VT_UI1, CVarion(UC{5})},
        {"0B101", VT_UI1, CVarion(UC{5})},
        {"017", VT_I4, CVarion(15)},
        {"08", VT_I4, kRefused},
        {"0", VT_I4, CVarion(0)},
        {"000", VT_I4, CVarion(0)},
        {"0x", VT_I4, CVarion(0)},
        {"0x-1F", VT_I4, CVarion(-31)},
        {"-0x1F", VT_I4, kRefused},
        {"+5", VT_I8, CVarion(LL{5})},
        {"-", VT_I4, kRefused},
        {"", VT_I4, kRefused},
        {"   ", VT_UI2, kRefused},
        {"12abc", VT_I4, kRefused},
        {"0x1G", VT_I4, kRefused},
        {"2.5", VT_I4, CVarion(3)},
        {"-2.5", VT_I4, CVarion(-3)},
        {"1e3", VT_I4, CVarion(1000)},
        {"1E3", VT_I2, CVarion(short{1000})},
        {"1e10", VT_I4, kRefused},
        {"1,5", VT_I2, CVarion(short{2})},
        {"0.5", VT_I4, kRefused},
        {".5", VT_I4, CVarion(1)},
        {"-0.5", VT_I4, CVarion(-1)},
        {"-0.4", VT_I4, CVarion(0)},
        {"nan", VT_I4, CVarion(0)},  // a NaN passes the range check and gives 0
        {"inf", VT_I4, kRefused},
        {"-0.4", VT_UI4, kRefused},
        {"126.5", VT_I1, CVarion(SC{127})},
        {"127.0", VT_I1, kRefused},
        {"0xFF", VT_I1, CVarion(SC{-1})},
        {"0377", VT_I1, CVarion(SC{-1})},
        {"0b10000000", VT_I1, CVarion(SC{-128})},
        {"255", VT_I1, kRefused},
        {"0x100", VT_I1, kRefused},
        {"-1", VT_UI4, kRefused},
        {"0xFFFFFFFF", VT_I4, CVarion(-1)},
        {"0xFFFF", VT_I2, CVarion(short{-1})},
        {"4294967295", VT_I4, kRefused},
        {"0xFFFFFFFFFFFFFFFF", VT_I8, CVarion(LL{-1})},
        {"0x8000000000000000", VT_I8, CVarion(std::numeric_limits<LL>::min())},
        {"01777777777777777777777", VT_I8, kRefused},  // octal beyond the signed range
        {"0x10000000000000000", VT_I8, kRefused},
        {"9223372036854775807", VT_I8, CVarion(std::numeric_limits<LL>::max())},
        {"-9223372036854775808", VT_I8, CVarion(std::numeric_limits<LL>::min())},
        {"9223372036854775808", VT_I8, kRefused},
        {"18446744073709551615", VT_UI8, kRefused},
        {"9223372036854775807", VT_UI8, CVarion(ULL{9223372036854775807ull})},
        {"0xFFFFFFFFFFFFFFFF", VT_UI8, CVarion(std::numeric_limits<ULL>::max())},
        {"0x1FFFFFFFFFFFFFFFF", VT_UI8, CVarion(std::numeric_limits<ULL>::max())},
        {"-1", VT_UI8, kRefused},
        {"-0", VT_UI8, CVarion(ULL{0})},
        {"0x00000000000000000000001", VT_I8, CVarion(LL{1})},

        // Floating values.
        {"1.#INF", VT_R8, CVarion(kInf)},
        {"inf", VT_R8, CVarion(kInf)},
        {"INFINITY", VT_R8, CVarion(kInf)},
        {"-1.#INF", VT_R8, CVarion(-kInf)},
        {"-inf", VT_R4, CVarion(-std::numeric_limits<float>::infinity())},
        {"x-yINF", VT_R8, CVarion(-kInf)},
        {"1.#QNAN", VT_R8, CVarion(kNaN)},
        {"-1.#IND", VT_R8, CVarion(kNaN)},
        {"nan", VT_R4, CVarion(std::numeric_limits<float>::quiet_NaN())},
        {"blind", VT_R8, CVarion(kNaN)},
        {"", VT_R8, CVarion(0.0)},
        {"  ", VT_R8, CVarion(0.0)},
        {"1e999", VT_R8, CVarion(kInf)},
        {"-1e999", VT_R8, CVarion(-kInf)},
        {"1e-999", VT_R8, CVarion(0.0)},
        {"3,25", VT_R8, CVarion(3.25)},
        {"3.25", VT_R8, CVarion(3.25)},
        {" 12,5 ", VT_R4, CVarion(12.5f)},
        {"1.000,5", VT_R8, kRefused},
        {"1,5,", VT_R8, kRefused},
        {"0x10", VT_R8, CVarion(16.0)},
        {"010", VT_R8, CVarion(8.0)},
        {"10", VT_R8, CVarion(10.0)},
        {"0.5", VT_R8, CVarion(0.5)},
        {"08.5", VT_R8, CVarion(8.5)},
        {"0xFFFFFFFFFFFFFFFF", VT_R8, CVarion(-1.0)},
        {"5.", VT_R8, CVarion(5.0)},
        {",5", VT_R8, CVarion(0.5)},
        {"-.5E1", VT_R8, CVarion(-5.0)},
        {"+2,5e-1", VT_R8, CVarion(0.25)},
        {"1E", VT_R8, kRefused},
        {"1E+", VT_R8, kRefused},
        {",", VT_R8, kRefused},
        {"-", VT_R8, kRefused},
        {"1 5", VT_R8, kRefused},
        {"0x1p3", VT_R8, kRefused},
        {"1e39", VT_R4, kRefused},
        {"-1e39", VT_R4, kRefused},
        {"3.4028234663852886e38", VT_R4, CVarion(std::numeric_limits<float>::max())},
        {"4.9406564584124654e-324", VT_R8, CVarion(std::numeric_limits<double>::denorm_min())},
        {"\xEF\xBC\x91", VT_R8, kRefused},  // a full-width digit one is not a digit

        // Byte lists.
        {"0x01, 0xAB, 0xFF", kBytes, ByteArray({1, 171, 255})},
        {"1,,2", kBytes, ByteArray({1, 2})},
        {",1,2,", kBytes, ByteArray({1, 2})},
        {"  ab ,Cd", kBytes, ByteArray({0xAB, 0xCD})},
        {"0x", kBytes, ByteArray({0})},
        {"7z, 0x1q", kBytes, ByteArray({7, 1})},
        {"00000000FF", kBytes, ByteArray({255})},
        {"100", kBytes, kRefused},
        {"zz", kBytes, kRefused},
        {"1, ,2", kBytes, kRefused},
        {"+1", kBytes, kRefused},
        {"-1", kBytes, kRefused},
        {"", kBytes, ByteArray({})},
        {" , ,", kBytes, kRefused},
        {",,", kBytes, ByteArray({})},

        // Types that no text converts to.
        {"5", VT_CY, kRefused},
        {"5", VT_ERROR, kRefused},
        {"5", VT_ARRAY | VT_I4, kRefused},
        {"5", static_cast<VARTYPE>(99), kRefused},
    };
}

bool SameValue(const CVarion& a, const CVarion& b) {
    if (a.GetType() != b.GetType()) return false;
    if (a.GetType() == kBytes) return ArrayBytes(a) == ArrayBytes(b);
    const std::size_t width = a.GetType() == VT_BOOL || a.GetType() == VT_I1 || a.GetType() == VT_UI1 ? 1
                              : a.GetType() == VT_I2 || a.GetType() == VT_UI2                          ? 2
                              : a.GetType() == VT_I4 || a.GetType() == VT_UI4 || a.GetType() == VT_R4  ? 4
                                                                                                         : 8;
    return std::memcmp(&varion::detail::Access::Var(a).llVal, &varion::detail::Access::Var(b).llVal, width) == 0;
}

TEST(TextToValue, EveryRuleOnItsTexts) {
    for (const char* locale : {"C", "de_DE.UTF-8"}) {
        ScopedCLocale scoped(locale);  // reading never depends on the locale
        for (const ParseCase& c : ParseCases()) {
            CVarion v(c.text);
            const auto before = Bytes(v);
            const long code = v.SetType(c.target);
            if (!c.expected) {
                EXPECT_EQ(code, RC_NOT_CONVERTIBLE) << '"' << c.text << "\" to " << c.target;
                EXPECT_EQ(Bytes(v), before) << '"' << c.text << "\" to " << c.target;
                EXPECT_EQ(StringOf(v), c.text);
                continue;
            }
            EXPECT_EQ(code, RC_OK) << '"' << c.text << "\" to " << c.target;
            EXPECT_TRUE(SameValue(v, *c.expected))
                << '"' << c.text << "\" to " << c.target << " gave type " << v.GetType() << " "
                << Utf8(static_cast<CString>(v));
        }
    }
}

TEST(TextToValue, NullStringReadsAsEmpty) {
    CVarion v;
    auto& var = varion::detail::Access::Var(v);
    var.vt = VT_BSTR;
    var.bstrVal = nullptr;
    EXPECT_EQ(v.SetType(VT_R8), RC_OK);
    EXPECT_EQ(FieldOf<double>(v), 0.0);
}

TEST(TextToValue, EmbeddedZeroEndsTheText) {
    const OLECHAR text[] = {'1', '2', 0, '3'};
    CVarion v;
    auto& var = varion::detail::Access::Var(v);
    var.bstrVal = SysAllocStringLen(text, 4);
    var.vt = VT_BSTR;
    ASSERT_EQ(v.SetType(VT_I4), RC_OK);
    EXPECT_EQ(FieldOf<std::int32_t>(v), 12);
}

TEST(TextToValue, LongTextsAreReadWhole) {
    const std::string zeros(5000, '0');
    const struct {
        std::string text;
        VARTYPE target;
        double expected;
    } cases[] = {
        {"0," + zeros + "15", VT_R8, 15 * std::pow(10.0, -5002)},
        {"1" + zeros + "e-5000", VT_R8, 1.0},
        {zeros + "12", VT_I4, 10.0},  // an octal text: leading zeros, then 12
        {"   " + std::string(400, '9') + ",5   ", VT_R8, kInf},
    };
    for (const auto& c : cases) {
        CVarion v(c.text.c_str());
        ASSERT_EQ(v.SetType(c.target), RC_OK) << c.text.substr(0, 20);
        const double got = c.target == VT_R8 ? FieldOf<double>(v) : FieldOf<std::int32_t>(v);
        EXPECT_EQ(got, c.expected);
    }
    CVarion bytes(("0x01," + std::string(3000, ',') + std::string(3000, '0') + "2").c_str());
    ASSERT_EQ(bytes.SetType(kBytes), RC_OK);
    EXPECT_EQ(ArrayBytes(bytes), std::string("\x01\x02", 2));
}

TEST(TextToValue, ParsingANumberAllocatesNothing) {
    const struct {
        const char* text;
        VARTYPE target;
    } cases[] = {{"12,5", VT_R8}, {" -1234.5678e-3 ", VT_R4}, {"0x7FFF", VT_I2}, {"2.5", VT_I4},
                 {"inf", VT_R8},  {"18446744073709551615", VT_UI8}, {"true", VT_BOOL}};
    for (const auto& c : cases) {
        CVarion v(c.text);
        const long before = AllocationCount();
        v.SetType(c.target);
        EXPECT_EQ(AllocationCount(), before) << c.text;
    }
}

TEST(TextToValue, FailedAllocationsLeaveTheString) {
    const struct {
        std::string text;
        VARTYPE target;
    } cases[] = {{"1, 2, 3", kBytes}, {"", kBytes}};
    for (const auto& c : cases) {
        for (long n = 1; n <= 3; ++n) {
            CVarion v(c.text.c_str());
            const auto before = Bytes(v);
            varion::detail::FailAllocationAfter(n);
            const long code = v.SetType(c.target);
            varion::detail::FailAllocationAfter(0);
            if (code != RC_OK) {
                EXPECT_EQ(code, RC_NOT_CONVERTIBLE);
                EXPECT_EQ(Bytes(v), before);
                EXPECT_EQ(StringOf(v), c.text);
            }
        }
    }
}

}  // namespace

namespace {

// The common decimal texts are read by a shortcut on the UTF-16 text; the
// full rule on the prepared text must give the same answer for every text.
TEST(TextToValue, ShortcutAndFullFloatingRuleAgree) {
    std::mt19937 random(99);
    const char alphabet[] = "0123456789+-.,eE x";
    int shortcuts = 0;
    for (int n = 0; n < 20000; ++n) {
        std::string text;
        const std::size_t length = 1 + random() % 12;
        for (std::size_t k = 0; k < length; ++k) text += alphabet[random() % (sizeof(alphabet) - 1)];
        const OleString wide(CString(text.c_str()).View());
        for (const VARTYPE type : {VT_R4, VT_R8}) {
            VARIANT viaShortcut{};
            long shortcutCode = RC_OK;
            if (!varion::detail::PlainDecimalFromText(varion::detail::TrimmedView(wide), type, viaShortcut,
                                                       shortcutCode))
                continue;
            ++shortcuts;
            varion::detail::NarrowText prepared;
            ASSERT_TRUE(prepared.Assign(wide));
            VARIANT viaRule{};
            const long ruleCode = varion::detail::FloatingFromText(prepared.Data(), prepared.Size(), type, viaRule);
            ASSERT_EQ(shortcutCode, ruleCode) << text;
            if (ruleCode == RC_OK) {
                EXPECT_EQ(viaShortcut.vt, viaRule.vt) << text;
                EXPECT_EQ(viaShortcut.llVal, viaRule.llVal) << text;
            }
        }
    }
    EXPECT_GT(shortcuts, 1000);  // the generator does reach the shortcut
}

}  // namespace
