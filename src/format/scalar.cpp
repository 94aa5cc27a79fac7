// The scalar path of the display formats: the conversion character decides
// the category, the category how the value is read and how the formatted
// text is finished ("0x" for hexadecimal, "0" for octal, "0b" or "b" for
// binary).
#include "format/display.h"

#include "platform/format.h"
#include "value/access.h"

#include <charconv>
#include <cstdint>

namespace varion::detail {
namespace {

struct ConversionRow {
    OLECHAR conversion;
    Category category;
};

// The conversion characters, in the order "cCdiouxXeEfgGsSb".
constexpr ConversionRow kConversions[] = {
    {OLESTR('c'), Category::FMT_SIGNED}, {OLESTR('C'), Category::FMT_SIGNED},
    {OLESTR('d'), Category::FMT_SIGNED}, {OLESTR('i'), Category::FMT_SIGNED},
    {OLESTR('o'), Category::FMT_OCTAL},  {OLESTR('u'), Category::FMT_UNSIGNED},
    {OLESTR('x'), Category::FMT_HEX},    {OLESTR('X'), Category::FMT_HEX},
    {OLESTR('e'), Category::FMT_FLOAT},  {OLESTR('E'), Category::FMT_FLOAT},
    {OLESTR('f'), Category::FMT_FLOAT},  {OLESTR('g'), Category::FMT_FLOAT},
    {OLESTR('G'), Category::FMT_FLOAT},  {OLESTR('s'), Category::FMT_TEXT},
    {OLESTR('S'), Category::FMT_TEXT},   {OLESTR('b'), Category::FMT_BINARY},
};

// How a value is read for the hexadecimal, octal and binary forms.
enum class Read : unsigned char {
    StoredByte,  // the stored 8-bit pattern, zero-extended, without conversion
    Char,        // operator char()
    UChar,       // operator unsigned char()
    Short,       // operator short()
    UShort,      // operator unsigned short()
    Long,        // operator long(), 32-bit
    ULong,       // operator unsigned long(), 32-bit
    Int64,       // operator LONGLONG()
    UInt64,      // operator ULONGLONG()
};

struct HexRow {
    VARTYPE type;
    Read read;
    const OLECHAR* prefix;  // the length prefix inserted before the conversion
};

// FMT_HEX and FMT_OCTAL: the value read per type; other types give no digits.
constexpr HexRow kHexRows[] = {
    {VT_I1,  Read::StoredByte, OLESTR("")},
    {VT_UI1, Read::UChar,      OLESTR("")},
    {VT_I2,  Read::Short,      OLESTR("h")},
    {VT_UI2, Read::UShort,     OLESTR("")},
    {VT_I4,  Read::Long,       OLESTR("")},
    {VT_R4,  Read::Long,       OLESTR("")},
    {VT_UI4, Read::ULong,      OLESTR("")},
    {VT_R8,  Read::Int64,      OLESTR("I64")},
    {VT_I8,  Read::Int64,      OLESTR("I64")},
    {VT_UI8, Read::UInt64,     OLESTR("I64")},
};

struct BinaryRow {
    VARTYPE type;
    Read read;
    unsigned bits;  // a negative number shows as its two's complement of this width
};

// FMT_BINARY: the number written in base 2 per type; other types give no digits.
constexpr BinaryRow kBinaryRows[] = {
    {VT_I1,  Read::Char,   8},
    {VT_I2,  Read::Short,  16},
    {VT_I4,  Read::Long,   32},
    {VT_R4,  Read::Long,   32},
    {VT_R8,  Read::Int64,  64},
    {VT_I8,  Read::Int64,  64},
    {VT_UI1, Read::UChar,  8},
    {VT_UI2, Read::UShort, 16},
    {VT_UI4, Read::ULong,  32},
    {VT_UI8, Read::UInt64, 64},
};

// The value read as `read`, as a 64-bit pattern (signed readings sign-extended).
unsigned long long ReadBits(const CVarion& v, Read read) noexcept {
    switch (read) {
    case Read::StoredByte: return Load<std::uint8_t>(Access::Var(v));
    case Read::Char: return static_cast<unsigned long long>(static_cast<signed char>(static_cast<char>(v)));
    case Read::UChar: return static_cast<unsigned char>(v);
    case Read::Short: return static_cast<unsigned long long>(static_cast<long long>(static_cast<short>(v)));
    case Read::UShort: return static_cast<unsigned short>(v);
    case Read::Long: return static_cast<unsigned long long>(static_cast<long long>(static_cast<long>(v)));
    case Read::ULong: return static_cast<unsigned long>(v);
    case Read::Int64: return static_cast<unsigned long long>(static_cast<LONGLONG>(v));
    case Read::UInt64: return static_cast<ULONGLONG>(v);
    }
    return 0;
}

template <class Row, std::size_t N>
const Row* RowOf(const Row (&rows)[N], VARTYPE type) noexcept {
    for (const Row& row : rows)
        if (row.type == type) return &row;
    return nullptr;
}

// The base-2 digits of the value: no leading zeros, "0" for zero, a negative
// number as its two's complement of the type's width; empty for other types.
CString BinaryDigits(const CVarion& v) {
    const BinaryRow* row = RowOf(kBinaryRows, Access::Var(v).vt);
    if (row == nullptr) return CString();
    unsigned long long bits = ReadBits(v, row->read);
    if (row->bits < 64) bits &= (1ULL << row->bits) - 1;
    char digits[64];
    const auto r = std::to_chars(digits, digits + sizeof digits, bits, 2);
    CString text;
    for (const char* p = digits; p != r.ptr; ++p) text += static_cast<OLECHAR>(*p);
    return text;
}

bool StartsWith0x(const CString& text) noexcept {
    return text.GetLength() >= 2 && text[0] == OLESTR('0') && (text[1] == OLESTR('x') || text[1] == OLESTR('X'));
}

}  // namespace

bool CategoryOf(OLECHAR c, Category& category) noexcept {
    for (const ConversionRow& row : kConversions) {
        if (row.conversion == c) {
            category = row.category;
            return true;
        }
    }
    return false;
}

CString FormatDisplay(const CString& format, const FormatArg& arg) {
    OLECHAR buffer[kFormatBufferSize];
    FormatOne(format.View(), arg, buffer, kFormatBufferSize);
    return CString(buffer);
}

CString PlainText(const CVarion& value) {
    CString text;
    if (!Access::HandleNaN(value, text)) text = static_cast<CString>(value);
    CVarion::CheckDecimalPoint(text);
    return text;
}

CString ScalarText(const CVarion& value, CString f) {
    Category category{};
    if (f.FindOneOf(OLESTR("cCdiouxXeEfgGsSb")) < 0) return PlainText(value);
    if (f.Find(OLESTR('%')) < 0) f.Insert(0, OLESTR('%'));
    int q = -1;
    for (int i = f.Find(OLESTR('%')); i < f.GetLength(); ++i) {
        if (CategoryOf(f[i], category)) {
            q = i;
            break;
        }
    }
    if (q < 0) return PlainText(value);

    CString text;
    switch (category) {
    case Category::FMT_UNSIGNED:
        text = FormatDisplay(f, FormatArg(static_cast<ULONGLONG>(value)));
        break;
    case Category::FMT_SIGNED:
        text = FormatDisplay(f, FormatArg(static_cast<LONGLONG>(value)));
        break;
    case Category::FMT_FLOAT:
        if (!Access::HandleNaN(value, text)) text = FormatDisplay(f, FormatArg(static_cast<double>(value)));
        break;
    case Category::FMT_TEXT: {
        const CString own = static_cast<CString>(value);
        text = FormatDisplay(f, FormatArg(own));
        break;
    }
    case Category::FMT_HEX:
    case Category::FMT_OCTAL:
        if (const HexRow* row = RowOf(kHexRows, Access::Var(value).vt)) {
            f.Insert(q, row->prefix);
            text = FormatDisplay(f, FormatArg(ReadBits(value, row->read)));
        }
        break;
    case Category::FMT_BINARY:
        text = BinaryDigits(value);
        break;
    }
    CVarion::CheckDecimalPoint(text);

    switch (category) {
    case Category::FMT_HEX:
        if (text.IsEmpty() || text[text.GetLength() - 1] != OLESTR('h')) {
            if (text.GetLength() <= 2 || !StartsWith0x(text)) text.Insert(0, OLESTR("0x"));
        }
        break;
    case Category::FMT_BINARY:
        if (f.Find(OLESTR('b'), q + 1) >= 0)
            text += OLESTR('b');
        else
            text.Insert(0, OLESTR("0b"));
        break;
    case Category::FMT_OCTAL:
        if (text.IsEmpty() || text[0] != OLESTR('0')) text.Insert(0, OLESTR('0'));
        break;
    default:
        break;
    }
    return text;
}

}  // namespace varion::detail
