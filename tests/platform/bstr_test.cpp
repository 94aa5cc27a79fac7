#include <varion/platform/automation.h>

#include <gtest/gtest.h>

TEST(Bstr, EmptyTextPlaceholder) { EXPECT_EQ(SysStringLen(nullptr), 0u); }
