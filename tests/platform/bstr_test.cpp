// BSTR: the length prefix, termination, null handling and allocation failure.
#include "platform/alloc.h"
#include "support/test_support.h"

#include <varion/platform/automation.h>

#include <gtest/gtest.h>

#include <cstring>

TEST(Bstr, EveryFormKeepsPrefixLengthsTerminatorAndAlignment) {
    const OLECHAR embedded[] = {'a', 0, 'b'};
    const struct {
        BSTR s;
        UINT bytes;
        const char* content;  // the bytes and the two zero bytes after them
    } rows[] = {
        {SysAllocString(OLESTR("abc")), 6, "a\0b\0c\0\0"},
        {SysAllocString(OLESTR("")), 0, "\0"},
        {SysAllocStringLen(embedded, 3), 6, "a\0\0\0b\0\0"},  // zeros count
        {SysAllocStringLen(nullptr, 4), 8, "\0\0\0\0\0\0\0\0\0"},
        {SysAllocStringByteLen("xyz", 3), 3, "xyz\0"},  // odd byte lengths are kept
    };
    for (const auto& r : rows) {
        ASSERT_NE(r.s, nullptr) << r.bytes;
        std::uint32_t prefix = 0;
        std::memcpy(&prefix, reinterpret_cast<const char*>(r.s) - 4, 4);
        EXPECT_EQ(prefix, r.bytes);
        EXPECT_EQ(SysStringByteLen(r.s), r.bytes);
        EXPECT_EQ(SysStringLen(r.s), r.bytes / 2);
        EXPECT_EQ(std::memcmp(r.s, r.content, r.bytes + 2), 0) << r.bytes;
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(r.s) % 8, 0u);
        SysFreeString(r.s);
    }
}

TEST(Bstr, NullAndRefusedSizesAndFailedAllocations) {
    EXPECT_EQ(SysAllocString(nullptr), nullptr);
    EXPECT_EQ(SysStringLen(nullptr), 0u);
    EXPECT_EQ(SysStringByteLen(nullptr), 0u);
    SysFreeString(nullptr);
    EXPECT_EQ(SysAllocStringLen(nullptr, 0xFFFFFFFFu), nullptr);
    VARION_STANDIN_ONLY(EXPECT_EQ(SysAllocStringByteLen(nullptr, 0xFFFFFFF0u), nullptr));
    varion::detail::FailAllocationAfter(1);
    EXPECT_EQ(SysAllocString(OLESTR("x")), nullptr);
    BSTR next = SysAllocString(OLESTR("x"));  // the failure was one-off
    EXPECT_NE(next, nullptr);
    SysFreeString(next);
}
