// Shared input handling of the date and duration fuzz targets: the bytes are
// taken as UTF-8 (invalid sequences become U+FFFD, zero bytes stay), so that
// seeds are readable texts and every UTF-16 code unit can still be reached.
#pragma once

#include "platform/utf.h"

#include <varion/platform/cstring.h>

#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace fuzz {

inline CString TextOf(const std::uint8_t* data, std::size_t size) {
    return CString(OleStringView(varion::detail::Utf8ToUtf16(
        std::string_view(reinterpret_cast<const char*>(data), size))));
}

/// Stops the run when a property the parsers promise does not hold.
inline void Require(bool condition) {
    if (!condition) std::abort();
}

}  // namespace fuzz
