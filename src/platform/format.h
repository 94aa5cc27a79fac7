// A printf-like formatter over UTF-16 text that takes typed arguments.
//
// Conventions (those of the runtime library the display formats come from):
//   - conversions c C d i o u x X e E f g G s S, and %% for one "%";
//   - flags "-" "+" space "#" "0"; width and precision as decimal numbers of
//     at most 999 ("*" is not accepted);
//   - length prefixes hh (8-bit), h (16-bit), l (32-bit), ll and I64 (64-bit)
//     on the integer conversions; an integer conversion without a prefix
//     reads the low 32 bits of its 64-bit argument (%u of -1 gives 4294967295);
//     l on the floating conversions and h or l on c, C, s, S change nothing;
//   - c and C write the one UTF-16 code unit whose code is the low 16 bits of
//     the integer (the low 8 bits with h); s and S write the text;
//   - exponents have at least three digits: 1.5 with %e gives 1.500000e+000,
//     1e-5 with %g gives 1e-005; infinities and NaNs show as inf and nan
//     (INF, NAN for E and G), padded with blanks even under the "0" flag;
//   - "0" pads numbers only; c, C, s and S are padded with blanks;
//   - the decimal separator is the C library's numeric locale's
//     (localeconv()->decimal_point).
//
// Formats the formatter cannot use give the status Malformed and the empty
// text: an unknown conversion or length prefix (%n, %p, %a, %L, %I32 ...),
// "*" as width or precision, a width or precision above 999, a "%" with no
// conversion character after it, more conversions than arguments, and an
// argument of the wrong kind (a text for a number, a number for %s, a double
// for an integer conversion; an integer for a floating conversion is
// converted). The formatter never reads an argument it was not given and
// never writes beyond the capacity it was given.
#pragma once

#include <varion/platform/cstring.h>

#include <cstddef>

namespace varion::detail {

enum class FormatStatus : unsigned char {
    Ok,         ///< the text was written
    Overflow,   ///< the text would not fit: the empty text was written instead
    Malformed,  ///< the format or its arguments cannot be used: the empty text
};

/// The display formatter's buffer: 99 characters and the terminator.
constexpr std::size_t kFormatBufferSize = 100;

/// The largest width or precision a format may give.
constexpr int kMaxFieldWidth = 999;

struct FormatResult {
    FormatStatus status;
    std::size_t length;  ///< code units written before the terminator (0 unless Ok)
};

/// Formats `format`, which may hold at most one conversion, with its one
/// argument into `out`, which holds `capacity` code units including the
/// terminator (so at most capacity - 1 characters). The format ends at its
/// view's end or at its first U+0000. On any status but Ok, `out` holds the
/// empty text (when capacity is at least 1) and the length is 0. A %c of the
/// code 0 writes a U+0000 into the text, counted in the length.
/// Example: "%5.2f km/h" with 3.14159 writes " 3.14 km/h".
FormatResult FormatOne(OleStringView format, const FormatArg& arg, OLECHAR* out, std::size_t capacity) noexcept;

/// Formats `format` with `count` arguments, the n-th conversion taking the
/// n-th argument (extra arguments are ignored), into `out` (replaced), with
/// no length limit. On any status but Ok, `out` is empty. Throws
/// std::bad_alloc only.
FormatStatus FormatList(OleStringView format, const FormatArg* args, std::size_t count, OleString& out);

}  // namespace varion::detail
