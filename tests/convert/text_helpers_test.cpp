// The class's small text functions.
#include "convert_test_util.h"

#include "platform/alloc.h"

#include <gtest/gtest.h>

#include <limits>

using namespace varion::test;
using varion::detail::Access;

namespace {

// Reaches the protected text functions the way a derived class would.
class TextUser : public CVarion {
public:
    using CVarion::FindCharacterInUnicodeString;
    using CVarion::HandleNaN;
    using CVarion::IsUnicodeHexNumber;
    using CVarion::TrimUnicodeStringLeftAndRight;
};

TEST(TextHelpers, GetBase) {
    const struct { const char* text; int base; const char* rest; } cases[] = {
        {"", 0, ""}, {"0", 10, "0"}, {"17", 10, "17"}, {"0X1f", 16, "1f"}, {"0B1", 2, "1"}, {"017", 8, "17"},
        {"0\xC3\xA4", 8, "\xC3\xA4"},
    };
    for (const auto& c : cases) {
        CString kept(c.text);
        EXPECT_EQ(CVarion::GetBase(kept, true), c.base) << c.text;
        EXPECT_EQ(Utf8(kept), c.text);
        CString removed(c.text);
        EXPECT_EQ(CVarion::GetBase(removed, false), c.base) << c.text;
        EXPECT_EQ(Utf8(removed), c.rest) << c.text;
    }
}

TEST(TextHelpers, HandleNaN) {
    const struct { CVarion value; bool handled; const char* text; } cases[] = {
        {CVarion(std::numeric_limits<double>::quiet_NaN()), true, "< Not a Number (NaN) >"},
        {CVarion(std::numeric_limits<float>::quiet_NaN()), true, "< Not a Number (NaN) >"},
        {CVarion(std::numeric_limits<double>::infinity()), true, "< +/- Infinity >"},
        {CVarion(std::numeric_limits<double>::max()), false, "keep"},
        {Raw(VT_DATE, std::numeric_limits<double>::quiet_NaN()), false, "keep"},
    };
    for (const auto& c : cases) {
        CString text("keep");
        EXPECT_EQ(Access::HandleNaN(c.value, text), c.handled) << c.value.GetType();
        EXPECT_EQ(Utf8(text), c.text);
    }
}

TEST(TextHelpers, CheckDecimalPointUsesTheUserSeparator) {
    // The user's separator comes from the Automation text of 1.5 in the user
    // locale; the C library's from its numeric locale.
    const struct {
        const char* user;     // the user's locale
        const char* runtime;  // LC_NUMERIC of the C library
        const char* in;
        const char* out;
    } cases[] = {
        {"de_DE.UTF-8", "C", "1.234.5", "1,234.5"},  // only the first separator
        {"de_DE.UTF-8", "de_DE.UTF-8", "1,5", "1,5"},
        {"en_US.UTF-8", "de_DE.UTF-8", "1,5", "1.5"},
        {"de_DE.UTF-8", "C", "15", "15"},
    };
    int skipped = 0;
    for (const auto& c : cases) {
        varion::test::ScopedUserLocale user(c.user);
        if (!user.Active()) {
            ++skipped;
            continue;
        }
        ScopedCLocale runtime(c.runtime);
        CString text(c.in);
        CVarion::CheckDecimalPoint(text);
        EXPECT_EQ(Utf8(text), c.out) << c.user << " / " << c.runtime << " / " << c.in;
    }
    if (skipped > 0) GTEST_SKIP() << skipped << " rows need a user locale the system does not have";
}

TEST(TextHelpers, TrimRemovesLeadingBlanksOnly) {
    const struct { const OLECHAR* in; const OLECHAR* out; } cases[] = {
        {OLESTR("  ab  "), OLESTR("ab  ")}, {OLESTR("\t ab"), OLESTR("\t ab")}, {OLESTR("   "), OLESTR("")}};
    for (const auto& c : cases) {
        BSTR s = SysAllocString(c.in);
        EXPECT_EQ(TextUser::TrimUnicodeStringLeftAndRight(&s), S_OK);
        EXPECT_EQ(CString(s), CString(c.out));
        SysFreeString(s);
    }
    EXPECT_EQ(TextUser::TrimUnicodeStringLeftAndRight(nullptr), E_INVALIDARG);
    BSTR none = nullptr;
    EXPECT_EQ(TextUser::TrimUnicodeStringLeftAndRight(&none), E_INVALIDARG);

    BSTR kept = SysAllocString(OLESTR(" x"));
    const BSTR original = kept;
    varion::detail::FailAllocationAfter(1);
    EXPECT_EQ(TextUser::TrimUnicodeStringLeftAndRight(&kept), E_OUTOFMEMORY);
    varion::detail::FailAllocationAfter(0);
    EXPECT_EQ(kept, original);
    EXPECT_EQ(CString(kept), CString(OLESTR(" x")));
    SysFreeString(kept);
}

TEST(TextHelpers, FindCharacterAndIsUnicodeHexNumber) {
    const OLECHAR text[] = {'a', 'b', 0xFF80, 'c', 0};
    EXPECT_EQ(TextUser::FindCharacterInUnicodeString(text, OLECHAR('c')), 1);  // the wide form answers 1 if found
    EXPECT_EQ(TextUser::FindCharacterInUnicodeString(text, OLECHAR('z')), -1);
    EXPECT_EQ(TextUser::FindCharacterInUnicodeString(nullptr, OLECHAR('a')), -1);
    // The narrow form answers the position; bytes widen with their sign.
    EXPECT_EQ(TextUser::FindCharacterInUnicodeString(text, 'c'), 3);
    EXPECT_EQ(TextUser::FindCharacterInUnicodeString(text, static_cast<char>(0x80)), 2);
    EXPECT_EQ(TextUser::FindCharacterInUnicodeString(text, 'z'), -1);
    EXPECT_EQ(TextUser::FindCharacterInUnicodeString(nullptr, 'a'), -1);

    EXPECT_EQ(TextUser::IsUnicodeHexNumber(OLESTR("")) + TextUser::IsUnicodeHexNumber(OLESTR("0123456789abcdefABCDEF")), 2);
    for (const OLECHAR* notHex : {OLESTR("1g"), OLESTR("0x1"), OLESTR(" 1"), static_cast<const OLECHAR*>(nullptr)})
        EXPECT_EQ(TextUser::IsUnicodeHexNumber(notHex), 0);
}

}  // namespace
