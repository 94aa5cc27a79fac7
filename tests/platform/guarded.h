// Writes through one of the fixed-buffer renderers into a buffer with guard
// units after its capacity, and checks what any such writer must keep to:
// nothing beyond the capacity, and the text terminated.
#pragma once

#include "platform/format.h"
#include "support/test_support.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace varion::test {

struct Outcome {
    detail::FormatStatus status;
    std::string text;  // UTF-8
};

// `write(buffer)` renders into `buffer` and answers its FormatResult.
template <class Write>
Outcome Guarded(std::size_t capacity, const std::string& what, Write write) {
    std::vector<OLECHAR> buffer(capacity + 8, OLECHAR(0xBEEF));
    const detail::FormatResult result = write(buffer.data());
    for (std::size_t i = capacity; i < buffer.size(); ++i)
        EXPECT_EQ(buffer[i], OLECHAR(0xBEEF)) << "wrote beyond the capacity for " << what;
    EXPECT_TRUE(capacity == 0 || buffer[result.length] == OLECHAR(0)) << "no terminator for " << what;
    return {result.status, Utf8(CString(OleStringView(buffer.data(), result.length)))};
}

}  // namespace varion::test
