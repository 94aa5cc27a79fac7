// Conversions between UTF-8, UTF-32 and the library's UTF-16.
#pragma once

#include <varion/platform/automation.h>

#include <string>
#include <string_view>

namespace varion::detail {

/// UTF-8 to UTF-16; each invalid or truncated sequence becomes U+FFFD.
std::basic_string<OLECHAR> Utf8ToUtf16(std::string_view text);
/// UTF-16 to UTF-8; a lone surrogate becomes U+FFFD.
std::string Utf16ToUtf8(std::basic_string_view<OLECHAR> text);
/// Code points (UTF-32) to UTF-16; a surrogate or a value above U+10FFFF becomes U+FFFD.
std::basic_string<OLECHAR> Utf32ToUtf16(std::u32string_view text);

}  // namespace varion::detail
