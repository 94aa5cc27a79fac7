// Hexadecimal and binary digit streams over a value's bits.
//
// Value2HexStream writes the bytes of an integer or floating value as
// lower-case hex digit pairs, most significant byte first; HexStream2Value
// reads such pairs back into a single or a double, so writing then reading
// restores the exact bits (NaN payloads and signed zeros included);
// StringToBinaryStream spells hex digits out as binary digits.
#include <varion/varion.h>

#include "value/access.h"

#include <cstdint>
#include <new>

using varion::detail::Load;
using varion::detail::Store;

namespace {

struct HexRow {
    VARTYPE code;
    int bytes;    // bytes of the member written, most significant first
    bool append;  // appended to the text; otherwise the text is replaced
};

// clang-format off
constexpr HexRow kHexForms[] = {
    // type code   bytes   appended
    {VT_R4,        4,      true},
    {VT_R8,        8,      true},
    {VT_I1,        1,      false},
    {VT_UI1,       1,      false},
    {VT_I2,        2,      false},
    {VT_UI2,       2,      false},
    {VT_I4,        4,      false},
    {VT_UI4,       4,      false},
    {VT_I8,        8,      false},
    {VT_UI8,       8,      false},
};
// clang-format on

constexpr OLECHAR kLowerDigits[] = OLESTR("0123456789abcdef");

// The member's bits as an unsigned integer of its own width.
std::uint64_t MemberBits(const VARIANT& v, int bytes) noexcept {
    switch (bytes) {
    case 1: return Load<std::uint8_t>(v);
    case 2: return Load<std::uint16_t>(v);
    case 4: return Load<std::uint32_t>(v);
    default: return Load<std::uint64_t>(v);
    }
}

// Value of a hexadecimal digit, or -1.
int HexDigit(OLECHAR c) noexcept {
    if (c >= OLESTR('0') && c <= OLESTR('9')) return c - OLESTR('0');
    if (c >= OLESTR('a') && c <= OLESTR('f')) return c - OLESTR('a') + 10;
    if (c >= OLESTR('A') && c <= OLESTR('F')) return c - OLESTR('A') + 10;
    return -1;
}

bool IsBlank(OLECHAR c) noexcept { return c == OLESTR(' ') || (c >= OLESTR('\t') && c <= OLESTR('\r')); }

// One pair of characters read as a base-16 number the way the C library's
// wcstol reads a two-character text: leading white space, then an optional
// sign, then digits up to the first character that is not one; no digit
// reads as 0. The low 8 bits of the number are the byte: " f" gives 0x0f,
// "-1" gives 0xff, "g1" gives 0.
std::uint8_t ReadPair(OLECHAR first, OLECHAR second) noexcept {
    const OLECHAR pair[2] = {first, second};
    int i = 0;
    while (i < 2 && IsBlank(pair[i])) ++i;
    bool negative = false;
    if (i < 2 && (pair[i] == OLESTR('+') || pair[i] == OLESTR('-'))) {
        negative = pair[i] == OLESTR('-');
        ++i;
    }
    int number = 0;
    for (; i < 2 && HexDigit(pair[i]) >= 0; ++i) number = number * 16 + HexDigit(pair[i]);
    if (negative) number = -number;
    return static_cast<std::uint8_t>(number & 0xFF);
}

// The bytes the pairs of `digits` give, the first pair most significant.
std::uint64_t ReadPairs(const CString& digits) noexcept {
    std::uint64_t bits = 0;
    for (int k = 0; k + 1 < digits.GetLength(); k += 2)
        bits = (bits << 8) | ReadPair(digits.GetAt(k), digits.GetAt(k + 1));
    return bits;
}

}  // namespace

bool CVarion::Value2HexStream(CString& text) const noexcept {
    const HexRow* form = nullptr;
    for (const HexRow& row : kHexForms)
        if (row.code == m_v.vt) form = &row;
    if (form == nullptr) return false;

    OLECHAR digits[2 * 8 + 1] = {};
    const std::uint64_t bits = MemberBits(m_v, form->bytes);
    const int count = 2 * form->bytes;
    for (int k = 0; k < count; ++k) digits[k] = kLowerDigits[(bits >> (4 * (count - 1 - k))) & 0xF];
    try {
        if (form->append)
            text += digits;
        else
            text = CString(digits);
    } catch (const std::bad_alloc&) {
        return false;
    }
    return true;
}

bool CVarion::HexStream2Value(const CString& digits, VARTYPE type) noexcept {
    if (digits.GetLength() % 2 != 0) return false;
    // A failed change keeps the old content, over which the bytes must not be
    // written (a string's pointer would be lost).
    if (SetType(type) != RC_OK || m_v.vt != type) return false;
    if (type == VT_R4) {
        if (digits.GetLength() != 8) return false;
        Store(m_v, static_cast<std::uint32_t>(ReadPairs(digits)));
        return true;
    }
    if (type == VT_R8) {
        if (digits.GetLength() != 16) return false;
        Store(m_v, ReadPairs(digits));
        return true;
    }
    return false;
}

CString CVarion::StringToBinaryStream(CString text, int base) {
    if (base == 2) return text;
    CString result;
    if (base != 16) return result;
    static constexpr const OLECHAR* kNibbles[16] = {
        OLESTR("0000"), OLESTR("0001"), OLESTR("0010"), OLESTR("0011"), OLESTR("0100"), OLESTR("0101"),
        OLESTR("0110"), OLESTR("0111"), OLESTR("1000"), OLESTR("1001"), OLESTR("1010"), OLESTR("1011"),
        OLESTR("1100"), OLESTR("1101"), OLESTR("1110"), OLESTR("1111"),
    };
    for (int k = 0; k < text.GetLength(); ++k)
        if (const int d = HexDigit(text.GetAt(k)); d >= 0) result += kNibbles[d];
    return result;
}
