// Number texts: the canonical writing of integers and floating values, and
// the reading rules for integers, floating values and byte lists.
//
// Reading works on a prepared, narrowed copy of the text (NarrowText): white
// space trimmed, ASCII letters upper-cased, every character outside ASCII
// replaced by a byte that no rule accepts. The rules then use their own digit
// loops and std::from_chars, so they never depend on the process's locale and
// never allocate for texts of ordinary length.
#pragma once

#include <varion/varion.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

namespace varion::detail {

// ---------------------------------------------------------------------------
// Writing
// ---------------------------------------------------------------------------

/// Room for any text WriteTrimmedFixed writes: a sign, 309 integer digits, the
/// separator and fifteen decimals.
constexpr std::size_t kFixedTextMax = 336;

/// Writes `x` as "%.15f" with "." as separator, then removes the trailing
/// zeros and puts back one "0" after a bare separator: 2.0 gives "2.0", 0.1
/// "0.1", 1e-16 "0.0", -1e-20 "-0.0". NaN and infinities give "nan", "-nan",
/// "inf", "-inf". `out` holds kFixedTextMax chars; answers the length.
std::size_t WriteTrimmedFixed(double x, char* out) noexcept;

/// The decimal separator of the C library's current numeric locale
/// (localeconv()->decimal_point; on POSIX read as nl_langinfo(RADIXCHAR)) as UTF-16: one code unit, or two for a separator outside the
/// basic plane. Answers the count of code units written to `out`.
int RuntimeDecimalSeparator(OLECHAR (&out)[2]) noexcept;

// ---------------------------------------------------------------------------
// Reading
// ---------------------------------------------------------------------------

/// The string of a VT_BSTR up to its first zero code unit (a null BSTR is
/// the empty text).
OleStringView TextOf(BSTR s) noexcept;

/// `text` without leading and trailing white space (CString::IsSpace).
OleStringView TrimmedView(OleStringView text) noexcept;

/// A prepared number text: trimmed, ASCII letters upper-cased, non-ASCII
/// characters replaced by 0x7F. Short texts live inside the object.
class NarrowText {
public:
    NarrowText() noexcept = default;
    NarrowText(const NarrowText&) = delete;
    NarrowText& operator=(const NarrowText&) = delete;

    /// Prepares `text`; false only when a long text cannot get its memory.
    bool Assign(OleStringView text) noexcept;
    char* Data() noexcept { return m_data; }
    std::size_t Size() const noexcept { return m_size; }
    std::string_view View() const noexcept { return {m_data, m_size}; }

private:
    char m_small[128];
    std::unique_ptr<char[]> m_large;
    char* m_data = m_small;
    std::size_t m_size = 0;
};

/// The number base of a prepared text by its first two characters: 0 for
/// the empty text, 2 for "0B", 16 for "0X", 8 for "0" and another
/// character, otherwise 10.
int BaseOfText(std::string_view text) noexcept;
/// Characters of the base prefix: 2 for bases 2 and 16, 1 for base 8, else 0.
std::size_t PrefixLength(int base) noexcept;

/// An optional sign followed by digits of a base, read without a limit.
struct DigitRun {
    bool negative = false;
    std::uint64_t magnitude = 0;  ///< saturated at 2^64 - 1
    bool overflow = false;        ///< the digits' value is above 2^64 - 1
    std::size_t end = 0;          ///< characters read; 0 when no digit follows the sign
};
DigitRun ReadDigits(std::string_view text, int base) noexcept;

/// The integer rule for one of the eight integer types: the prepared text
/// with its base prefix, leading zeros, sign and digits, the fit rule of the
/// type (hexadecimal, octal and binary texts may give a signed type its byte
/// pattern: "0xFF" is VT_I1 -1), and in base 10 the decimal fallback through
/// the floating rule ("2.5" gives 3). `text` may be changed (the separator).
/// Answers RC_OK with `out` holding the type code and the value, or
/// RC_NOT_CONVERTIBLE (then `out` is untouched).
long IntegerFromText(char* text, std::size_t size, VARTYPE type, VARIANT& out) noexcept;

/// The floating rule for VT_R4 or VT_R8: "INF" (negative with a "-"),
/// "NAN" or "IND" anywhere; a text with a base prefix through the integer
/// rule; else a decimal number with "." or "," as separator and an optional
/// exponent, wholly read ("" is 0.0; "1.000,5" fails). A finite value beyond
/// the single range fails for VT_R4. Answers RC_OK with `out` holding the
/// type code and the value, or RC_NOT_CONVERTIBLE (`out` untouched). `text`
/// may be changed (the separator).
long FloatingFromText(char* text, std::size_t size, VARTYPE type, VARIANT& out) noexcept;

/// The floating rule's common case read from the trimmed UTF-16 text
/// itself: a whole decimal number that no base prefix claims ("12,5",
/// "-0.25E3", "0.5"). False when the text needs the full rule; otherwise
/// `code` is the rule's result (and `out` as FloatingFromText sets it).
bool PlainDecimalFromText(OleStringView trimmed, VARTYPE type, VARIANT& out, long& code) noexcept;

/// The integer rule's common case read from the trimmed UTF-16 text itself:
/// an optional sign and at most nineteen decimal digits, not a text of
/// another base ("42", "-2147483648", "+007" but not "0x1F" or "017"). False
/// when the text needs the full rule; otherwise `code` is the rule's result
/// (and `out` as IntegerFromText sets it).
bool PlainIntegerFromText(OleStringView trimmed, VARTYPE type, VARIANT& out, long& code) noexcept;

/// The integer rule (the eight integer types) or the floating rule (VT_R4,
/// VT_R8) on a string as it is held: prepares it and reads it. Allocates
/// only for texts of more than 128 characters.
long NumberFromText(OleStringView text, VARTYPE type, VARIANT& out) noexcept;

/// NumberFromText on the text of a string value (up to its first zero code
/// unit). A plain number (PlainDecimalFromText, PlainIntegerFromText) is read
/// from the whole string first: it holds no zero code unit, so it needs no
/// search for one.
long NumberFromString(BSTR text, VARTYPE type, VARIANT& out) noexcept;

/// One token of a byte list read as scanf's "%x" reads it: optional ASCII
/// white space, an optional "0x" or "0X", hexadecimal digits up to the first
/// other character (which ends the scan, not the token). False when no digit
/// is found or the value exceeds 255.
bool ReadByteToken(OleStringView token, BYTE& value) noexcept;

}  // namespace varion::detail
