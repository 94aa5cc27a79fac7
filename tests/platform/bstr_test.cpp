// BSTR: the length prefix, termination, null handling and allocation failure.
#include "platform/alloc.h"
#include "support/test_support.h"

#include <varion/platform/automation.h>

#include <gtest/gtest.h>

#include <cstring>

TEST(Bstr, LengthPrefixAndTerminator) {
    BSTR s = SysAllocString(OLESTR("abc"));
    ASSERT_NE(s, nullptr);
    EXPECT_EQ(SysStringLen(s), 3u);
    EXPECT_EQ(SysStringByteLen(s), 6u);
    EXPECT_EQ(s[3], 0);
    std::uint32_t prefix = 0;
    std::memcpy(&prefix, reinterpret_cast<const char*>(s) - 4, 4);
    EXPECT_EQ(prefix, 6u);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(s) % 8, 0u);
    SysFreeString(s);
}

TEST(Bstr, LengthsCountEmbeddedZeros) {
    const OLECHAR text[] = {'a', 0, 'b'};
    BSTR s = SysAllocStringLen(text, 3);
    EXPECT_EQ(SysStringLen(s), 3u);
    EXPECT_EQ(s[2], 'b');
    EXPECT_EQ(s[3], 0);
    SysFreeString(s);
    BSTR zeros = SysAllocStringLen(nullptr, 4);
    EXPECT_EQ(SysStringLen(zeros), 4u);
    for (int i = 0; i <= 4; ++i) EXPECT_EQ(zeros[i], 0);
    SysFreeString(zeros);
}

TEST(Bstr, ByteLengthsMayBeOdd) {
    BSTR s = SysAllocStringByteLen("xyz", 3);
    EXPECT_EQ(SysStringByteLen(s), 3u);
    EXPECT_EQ(SysStringLen(s), 1u);
    EXPECT_EQ(std::memcmp(s, "xyz\0\0", 5), 0);  // two zero bytes follow the content
    SysFreeString(s);
}

TEST(Bstr, NullIsSafeEverywhere) {
    EXPECT_EQ(SysAllocString(nullptr), nullptr);
    EXPECT_EQ(SysStringLen(nullptr), 0u);
    EXPECT_EQ(SysStringByteLen(nullptr), 0u);
    SysFreeString(nullptr);
    BSTR empty = SysAllocString(OLESTR(""));
    ASSERT_NE(empty, nullptr);
    EXPECT_EQ(SysStringLen(empty), 0u);
    SysFreeString(empty);
}

TEST(Bstr, RefusesWhatCannotBeAllocated) {
    EXPECT_EQ(SysAllocStringLen(nullptr, 0xFFFFFFFFu), nullptr);
    VARION_STANDIN_ONLY(EXPECT_EQ(SysAllocStringByteLen(nullptr, 0xFFFFFFF0u), nullptr));
    varion::detail::FailAllocationAfter(1);
    EXPECT_EQ(SysAllocString(OLESTR("x")), nullptr);
    BSTR next = SysAllocString(OLESTR("x"));  // the failure was one-off
    EXPECT_NE(next, nullptr);
    SysFreeString(next);
}
