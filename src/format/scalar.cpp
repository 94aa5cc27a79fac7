// The scalar path of the display formats: the conversion character decides
// the category, the category how the value is read and how the formatted
// text is finished ("0x" for hexadecimal, "0" for octal, "0b" or "b" for
// binary).
#include "format/display.h"

#include "platform/format.h"
#include "value/access.h"

#include <array>
#include <charconv>
#include <cstdint>
#include <utility>

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

// The category of every ASCII character, from the table above: the
// conversion characters are looked for in every character of a format, so
// each look-up is one load.
constexpr unsigned char kNoCategory = 0xFF;
constexpr auto kCategoryOfAscii = [] {
    std::array<unsigned char, 128> table{};
    table.fill(kNoCategory);
    for (const ConversionRow& row : kConversions) table[row.conversion] = static_cast<unsigned char>(row.category);
    return table;
}();

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

// Writes the base-2 digits of the value into `out` (room for 64): no leading
// zeros, "0" for zero, a negative number as its two's complement of the
// type's width; nothing for other types. Answers the count written.
std::size_t BinaryDigits(const CVarion& v, OLECHAR* out) noexcept {
    const BinaryRow* row = RowOf(kBinaryRows, Access::Var(v).vt);
    if (row == nullptr) return 0;
    unsigned long long bits = ReadBits(v, row->read);
    if (row->bits < 64) bits &= (1ULL << row->bits) - 1;
    char digits[64];
    const auto r = std::to_chars(digits, digits + sizeof digits, bits, 2);
    const auto count = static_cast<std::size_t>(r.ptr - digits);
    for (std::size_t i = 0; i < count; ++i) out[i] = static_cast<OLECHAR>(digits[i]);
    return count;
}

// Formats `format` with its one argument into `out` (kFormatBufferSize code
// units); the text read as the platform's buffer reads, up to its first U+0000.
// Only a character (%c, %C) or a text (%s, %S) can put a U+0000 into it.
OleStringView FormatInto(OleStringView format, const FormatArg& arg, bool mayHoldZero, OLECHAR* out) noexcept {
    const FormatResult r = FormatOne(format, arg, out, kFormatBufferSize);
    const OleStringView text(out, r.length);
    return mayHoldZero ? text.substr(0, text.find(OLECHAR(0))) : text;
}

bool StartsWith0x(OleStringView text) noexcept {
    return text.size() >= 2 && text[0] == OLESTR('0') && (text[1] == OLESTR('x') || text[1] == OLESTR('X'));
}

// CheckDecimalPoint replaces the C library's separator, which it finds as the
// "." or "," in "%.1f" of 1.5; a text holding neither has nothing to replace,
// and skipping it spares the lookup of the user's separator.
void AdjustDecimalPoint(CString& text) noexcept {
    for (const OLECHAR c : text.View()) {
        if (c == OLESTR('.') || c == OLESTR(',')) {
            CVarion::CheckDecimalPoint(text);
            return;
        }
    }
}

// `format` with `text` inserted at `at`, kept in `storage` (which `format`
// may view).
OleStringView Inserted(OleStringView format, std::size_t at, const OLECHAR* text, CString& storage) {
    CString edited(format);
    edited.Insert(static_cast<int>(at), text);
    storage = std::move(edited);
    return storage.View();
}

}  // namespace

bool CategoryOf(OLECHAR c, Category& category) noexcept {
    if (c >= kCategoryOfAscii.size() || kCategoryOfAscii[c] == kNoCategory) return false;
    category = static_cast<Category>(kCategoryOfAscii[c]);
    return true;
}

CString PlainText(const CVarion& value) {
    CString text;
    if (!Access::HandleNaN(value, text)) text = static_cast<CString>(value);
    AdjustDecimalPoint(text);
    return text;
}

CString ScalarText(const CVarion& value, const CString& given) {
    // One pass finds the first conversion character, the first "%" and the
    // first conversion character after it: q, the conversion formatted.
    OleStringView format = given.View();
    constexpr std::size_t npos = OleStringView::npos;
    std::size_t first = npos;
    std::size_t percent = npos;
    std::size_t q = npos;
    Category category{};
    Category firstCategory{};
    for (std::size_t i = 0; i < format.size() && q == npos; ++i) {
        if (format[i] == OLESTR('%') && percent == npos) percent = i;
        if (!CategoryOf(format[i], category)) continue;
        if (first == npos) {
            first = i;
            firstCategory = category;
        }
        if (percent != npos) q = i;
    }
    // Plain text unless the format holds a conversion character somewhere.
    if (first == npos) return PlainText(value);
    // The format is copied only where it changes: a "%" put in front of a
    // format without one (its first conversion character is then the one
    // formatted), a length prefix before a hexadecimal conversion.
    CString edited;
    if (percent == npos) {
        format = Inserted(format, 0, OLESTR("%"), edited);
        q = first + 1;
        category = firstCategory;
    }
    if (q == npos) return PlainText(value);
    const OLECHAR conversion = format[q];
    const bool character = conversion == OLESTR('c') || conversion == OLESTR('C');

    // The text is made in `body`, with room in front for the finishing prefix
    // and behind for the binary suffix, so that the result is built once.
    constexpr std::size_t kFront = 2;
    OLECHAR buffer[kFront + kFormatBufferSize + 1];
    OLECHAR* const body = buffer + kFront;
    OleStringView text;
    CString special;  // the NaN and infinity texts
    switch (category) {
    case Category::FMT_UNSIGNED:
        text = FormatInto(format, FormatArg(static_cast<ULONGLONG>(value)), false, body);
        break;
    case Category::FMT_SIGNED:
        text = FormatInto(format, FormatArg(static_cast<LONGLONG>(value)), character, body);
        break;
    case Category::FMT_FLOAT:
        if (Access::HandleNaN(value, special)) {
            AdjustDecimalPoint(special);
            return special;
        }
        text = FormatInto(format, FormatArg(static_cast<double>(value)), false, body);
        break;
    case Category::FMT_TEXT: {
        const CString own = static_cast<CString>(value);
        text = FormatInto(format, FormatArg(own), true, body);
        break;
    }
    case Category::FMT_HEX:
    case Category::FMT_OCTAL:
        if (const HexRow* row = RowOf(kHexRows, Access::Var(value).vt)) {
            if (row->prefix[0] != 0) format = Inserted(format, q, row->prefix, edited);
            text = FormatInto(format, FormatArg(ReadBits(value, row->read)), false, body);
        } else {
            text = OleStringView(body, 0);
        }
        break;
    case Category::FMT_BINARY:
        text = OleStringView(body, BinaryDigits(value, body));
        break;
    }

    // The finishing steps. They look at the first two and the last character
    // only, never at a "." or ",", so they may be decided before the decimal
    // separator is adjusted; adding a prefix or suffix adds no separator.
    std::size_t front = 0;
    std::size_t back = 0;
    switch (category) {
    case Category::FMT_HEX:
        if ((text.empty() || text.back() != OLESTR('h')) && (text.size() <= 2 || !StartsWith0x(text))) {
            buffer[0] = OLESTR('0');
            buffer[1] = OLESTR('x');
            front = 2;
        }
        break;
    case Category::FMT_BINARY:
        if (format.find(OLESTR('b'), q + 1) != OleStringView::npos) {
            body[text.size()] = OLESTR('b');
            back = 1;
        } else {
            buffer[0] = OLESTR('0');
            buffer[1] = OLESTR('b');
            front = 2;
        }
        break;
    case Category::FMT_OCTAL:
        if (text.empty() || text[0] != OLESTR('0')) {
            buffer[1] = OLESTR('0');
            front = 1;
        }
        break;
    default:
        break;
    }
    CString result(OleStringView(body - front, front + text.size() + back));
    AdjustDecimalPoint(result);
    return result;
}

}  // namespace varion::detail
