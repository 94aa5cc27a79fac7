// Display formats: the pieces GetStringWithDisplayFormat is made of.
#pragma once

#include <varion/varion.h>

namespace varion::detail {

/// The categories of the conversion characters "cCdiouxXeEfgGsSb": how the
/// value is read and which finishing step follows.
enum class Category : unsigned char { FMT_UNSIGNED, FMT_SIGNED, FMT_FLOAT, FMT_TEXT, FMT_HEX, FMT_OCTAL, FMT_BINARY };

/// The category of a conversion character; false when `c` is none of them.
bool CategoryOf(OLECHAR c, Category& category) noexcept;

/// The value's text when the format holds no usable conversion: the NaN or
/// infinity text of a VT_R4/VT_R8, else the value's text form (empty when it
/// has none), with the user's decimal separator. VT_R8 2.5 gives "2.5".
CString PlainText(const CVarion& value);

/// The scalar path: the value rendered by the first conversion of `format`
/// with its category's reading and finishing. "%X" of VT_I4 31 gives "0x1F".
CString ScalarText(const CVarion& value, const CString& format);

}  // namespace varion::detail
