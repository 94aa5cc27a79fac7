// Pieces shared by the routes of the type-change dispatcher that build text,
// read text and convert between numbers and dates.
#pragma once

#include <varion/varion.h>

#include <cstddef>

namespace varion::detail {

/// Bytes of the value field that type `vt` uses: 1 to 8 for the numbers, 8
/// for the date family, a pointer's size for strings and arrays, else 0.
std::size_t MemberBytes(VARTYPE vt) noexcept;

/// Makes `target` take the type code and the member bytes of `result`; the
/// other bytes of `target` stay. Ownership of a string or array moves with
/// the bytes: the caller must no longer release it through `result`.
void CommitMember(VARIANT& target, const VARIANT& result) noexcept;

/// The text of a byte array: each byte as "0x%02X", joined by ", "
/// ("0x01, 0xAB, 0xFF"); all elements in storage order, so that a
/// two-dimensional array shows every byte. Null when the string cannot be
/// allocated.
BSTR ByteArrayText(SAFEARRAY* bytes) noexcept;

/// The rule of `type` read from a string value's text (up to its first zero
/// code unit), as ChangeFromString applies it: RC_OK with `out` holding the
/// type code and the member, or RC_NOT_CONVERTIBLE with `out` untouched. A
/// byte array in `out` belongs to the caller.
long ValueFromText(BSTR text, VARTYPE type, VARIANT& out) noexcept;

/// The byte-list rule: the text trimmed, split at ",", empty tokens skipped,
/// each token scanned as "%x" into 0 to 255 ("0x01, 0xAB" gives 1, 171).
/// RC_OK with `out` holding a new resizable byte array (the caller owns it),
/// or RC_NOT_CONVERTIBLE with `out` untouched.
long ByteListFromText(OleStringView text, VARIANT& out) noexcept;

}  // namespace varion::detail
