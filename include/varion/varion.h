// varion: CVarion, a tagged 16-byte value for field-device parameters.
//
// A CVarion holds one value of one type: integers of 8 to 64 bits, singles,
// doubles, a one-byte Boolean, a UTF-16 string (BSTR), date-times, durations and
// one- or two-dimensional arrays (SAFEARRAY). It is laid out exactly as a
// VARIANT, converts between its types with range checks, and never throws: every
// failure answers with a result code, 0, -1, an empty value or an empty text.
//
// Integer widths: VT_I4/VT_UI4 are 32-bit and VT_I8/VT_UI8 64-bit everywhere.
// Where this interface says `long` for a 32-bit quantity (operator long(), the
// constructor from long) it keeps that meaning on LP64 platforms:
//   - CVarion(long) gives VT_I4 when the value fits 32 bits, else VT_I8;
//   - operator long() reads the value converted to VT_I4 (so a VT_I8 of 2^40
//     reads as 0 there); read 64-bit values with operator LONGLONG().
//   - operator int() is the Boolean reading, not a 32-bit integer.
#pragma once

#include <varion/detail/numeric_cast.h>
#include <varion/export.h>
#include <varion/platform/automation.h>
#include <varion/platform/cstring.h>

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

// ---------------------------------------------------------------------------
// varion's own type codes. All hold a double counting days.
// ---------------------------------------------------------------------------
enum : VARTYPE {
    VTX_DURATION = 100,      ///< a duration in days
    VTX_DURATION_MSF = 101,  ///< a duration in days, counted in 1/32 ms
    VTX_DATETIME_ALT = 102,  ///< an Automation date
    VTX_DATETIME = 103,      ///< an Automation date
    VTX_ISO_DURATION = 105,  ///< a duration in days, ISO 8601 text form
    VTX_ISO_DATETIME = 106   ///< an Automation date, ISO 8601 text form
};

// ---------------------------------------------------------------------------
// Result codes. Every negative code is a failure.
// ---------------------------------------------------------------------------
enum : long {
    RC_OK = 0,               ///< success
    RC_NOT_APPLICABLE = -1,  ///< not for this kind of value (an array, a by-reference VARIANT)
    RC_NOT_CONVERTIBLE = -2, ///< no route, unparsable text, unsupported type, no memory
    RC_ABOVE_MAX = -3,       ///< above the target type's upper bound
    RC_BELOW_MIN = -4        ///< below the target type's lower bound
};

/// UnitConvert's own results besides RC_OK and RC_NOT_CONVERTIBLE.
enum : long {
    RC_UNIT_NOT_CONVERTIBLE = 1,  ///< unknown code, other quantity or group: value passed unconverted
    RC_UNIT_NO_TARGET = 2         ///< target code 0: value passed unconverted
};

/// Operation codes of CVarion::Arithmetic.
enum : int { OP_ADD = 1, OP_SUB = 2, OP_MUL = 3, OP_DIV = 4, OP_MOD = 5 };

class CVarion;

namespace varion {
namespace detail {
struct Access;
}

/// How a typed element accessor meets the array's elements.
enum class ElementKind { Raw, Bool, String, Variant };

/// The element types the typed accessors take: integers and floating types of
/// 1, 2, 4 or 8 bytes (fixed-width: std::int32_t for VT_I4), bool (VT_BOOL),
/// CString (VT_BSTR) and CVarion (VT_VARIANT).
template <class T>
concept ArrayElement =
    std::is_same_v<T, bool> || std::is_same_v<T, CString> || std::is_same_v<T, CVarion> ||
    ((std::is_integral_v<T> || std::is_floating_point_v<T>) &&
     (sizeof(T) == 1 || sizeof(T) == 2 || sizeof(T) == 4 || sizeof(T) == 8));

namespace detail {
/// The type codes whose content is the value field alone: the numbers, the
/// date family and an interface pointer (carried without a reference). A copy
/// of such a value is its 16 bytes with the reserved words zeroed.
inline constexpr auto kPlainValueCodes = [] {
    std::array<bool, 128> codes{};
    for (const VARTYPE code : {VT_I2, VT_I4, VT_R4, VT_R8, VT_DATE, VT_BOOL, VT_UNKNOWN, VT_I1, VT_UI1, VT_UI2,
                               VT_UI4, VT_I8, VT_UI8})
        codes[code] = true;
    for (const VARTYPE code : {VTX_DURATION, VTX_DURATION_MSF, VTX_DATETIME_ALT, VTX_DATETIME, VTX_ISO_DURATION,
                               VTX_ISO_DATETIME})
        codes[code] = true;
    return codes;
}();
}  // namespace detail

/// The ElementKind of an element type T.
template <class T>
constexpr ElementKind ElementKindOf = std::is_same_v<T, bool>      ? ElementKind::Bool
                                      : std::is_same_v<T, CString> ? ElementKind::String
                                      : std::is_same_v<T, CVarion> ? ElementKind::Variant
                                                                   : ElementKind::Raw;
}  // namespace varion

class VARION_API CVarion {
public:
    // =======================================================================
    // Construction, copy, assignment, clearing
    // =======================================================================
    // Every constructor sets the type code and its member; the rest of the
    // 16 bytes (reserved words, unused value bytes) is zero.

    // The constructors from numbers are inline: a value made in a loop costs
    // two stores.
    /// VT_EMPTY.
    CVarion() noexcept;
    /// VT_BOOL: one byte, 1 for true, 0 for false.
    CVarion(bool value) noexcept;
    /// VT_I1.
    CVarion(char value) noexcept;
    /// VT_I1.
    CVarion(signed char value) noexcept;
    /// VT_UI1.
    CVarion(unsigned char value) noexcept;
    /// VT_I2.
    CVarion(short value) noexcept;
    /// VT_UI2.
    CVarion(unsigned short value) noexcept;
    /// VT_I4.
    CVarion(int value) noexcept;
    /// VT_UI4.
    CVarion(unsigned int value) noexcept;
    /// VT_I4 when the value fits 32 bits, else VT_I8 (no bits are dropped).
    CVarion(long value) noexcept;
    /// VT_UI4 when the value fits 32 bits, else VT_UI8.
    CVarion(unsigned long value) noexcept;
    /// VT_I8.
    CVarion(LONGLONG value) noexcept;
    /// VT_UI8.
    CVarion(ULONGLONG value) noexcept;
    /// VT_R4: the 4-byte single, not widened.
    CVarion(float value) noexcept;
    /// VT_R8.
    CVarion(double value) noexcept;
    /// VT_BSTR copied up to the terminator; a null pointer or a failed
    /// allocation gives VT_EMPTY.
    CVarion(const OLECHAR* text) noexcept;
#if !defined(_WIN32)
    /// VT_BSTR from a wide (UTF-32) text; null gives VT_EMPTY.
    CVarion(const wchar_t* text) noexcept;
#endif
    /// VT_BSTR from a UTF-8 text; null gives VT_EMPTY.
    CVarion(const char* text) noexcept;
    /// VT_BSTR holding the string's text up to its first zero code unit.
    CVarion(const CString& text) noexcept;
    /// A deep copy: strings and arrays are duplicated, a fixed-size array stays
    /// fixed-size. VT_NULL, unknown codes and failed duplications give VT_EMPTY.
    CVarion(const CVarion& other) noexcept;
    /// Takes over the other value's content; the other value becomes VT_EMPTY.
    CVarion(CVarion&& other) noexcept;
    /// What SetData makes of the VARIANT; VT_EMPTY when SetData refuses it.
    CVarion(const VARIANT& source) noexcept;
    /// As the constructor from a VARIANT reference; a null pointer gives VT_EMPTY.
    CVarion(const VARIANT* source) noexcept;
    /// An array of `elementType` (its code becomes elementType | VT_ARRAY).
    /// count1 < 1 or count2 < 1: one dimension of count1 elements (-1 counts as 0).
    /// Otherwise two dimensions: bound B of count1, bound A of count2 elements.
    /// A positive count1 makes the array fixed-size; count 0 or -1 makes an
    /// empty resizable array. An element type an array cannot hold (VT_EMPTY,
    /// VT_NULL, varion's own codes 100 to 106, unknown codes) or count1 < -1
    /// gives VT_EMPTY.
    CVarion(unsigned short elementType, long count1, long count2) noexcept;
    /// A date-time from calendar fields: (2024, 2, 29, 12, 0, 0, 500, 0) gives
    /// type 103 at 2024-02-29 12:00:00.500. The type is `type` when it is a
    /// date-time code (7, 102, 103, 106), else VTX_DATETIME. Invalid fields
    /// (2023-02-29, hour 24) store 0.0 and no milliseconds.
    CVarion(long year, long month, long day, long hour, long minute, long second,
            long millisecond, unsigned short type) noexcept;
    /// A duration from components (90 minutes is one and a half hours; negative
    /// fields subtract). The type is `type` when it is a duration code
    /// (100, 101, 105), else VTX_DURATION_MSF.
    CVarion(long days, long hours, long minutes, long seconds, long milliseconds,
            long millisecondFractions, unsigned short type) noexcept;

    /// Releases the content.
    ~CVarion();

    /// Releases the string or array and makes the value VT_EMPTY.
    void Clear() noexcept;

    /// Deep assignment. An array destination keeps its place only for a source
    /// of the same type code and number of dimensions: a fixed-size destination
    /// keeps its size (a smaller source is enlarged along bound A, a larger
    /// byte array is copied truncated, any other larger source empties it);
    /// every other source empties an array destination.
    CVarion& operator=(const CVarion& other) noexcept;

    /// 1 when the value read as a Boolean (operator int()) is false: VT_I4 0,
    /// VT_EMPTY and values that cannot become a Boolean; else 0.
    int IsNull() const noexcept;

    // =======================================================================
    // Type catalogue
    // =======================================================================
    /// The type code as held, array flag included.
    VARTYPE GetType() const noexcept;
    /// 1 for the numeric codes 2, 3, 4, 5, 11, 16 to 21, VT_DATE and the codes
    /// 100, 101, 105, 106; 0 for 102, 103, strings, arrays and the rest.
    int IsNumeric() const noexcept;

    /// False only for 100, 101, 105 and 106 (which leave a VARIANT as text).
    static VARION_MEMBER_CONSTEXPR bool IsNativeVariant(VARTYPE type) noexcept;
    /// 2, 3, 4, 5, 11, 16 to 21 (the Boolean counts; VT_DATE does not).
    static VARION_MEMBER_CONSTEXPR bool IsNumericType(VARTYPE type) noexcept;
    /// VT_BSTR.
    static VARION_MEMBER_CONSTEXPR bool IsStringType(VARTYPE type) noexcept;
    /// 7, 100, 101, 102, 103, 105, 106.
    static VARION_MEMBER_CONSTEXPR bool IsAnyDateType(VARTYPE type) noexcept;
    /// 7, 102, 103, 106.
    static VARION_MEMBER_CONSTEXPR bool IsDateTimeType(VARTYPE type) noexcept;
    /// 100, 101, 105.
    static VARION_MEMBER_CONSTEXPR bool IsDurationType(VARTYPE type) noexcept;

    /// The type code that holds a device parameter of device-description type
    /// `ddType` and `size` bytes: (1, 4) gives VT_I4, (1, 5) VT_I8, (13, 8)
    /// VT_UI4, (12, any) the byte array 0x2011; unknown types give VT_EMPTY.
    static VARTYPE DDType2VariantType(unsigned short ddType, short size) noexcept;

    // =======================================================================
    // Length, storage size, raw bytes
    // =======================================================================
    /// Size of the value's byte record (6 + payload); for arrays 6 + the
    /// elements of bound A. -1 for a type without one.
    long GetLen() const noexcept;
    /// Storage size of the content in bytes; -1 for a type without one.
    int SizeOf() const noexcept;
    /// Writes the record (length, type code, payload; little-endian) into
    /// `buffer`, which must hold GetLen() bytes. Answers the length, or -1
    /// (nothing written) for arrays and types without a record.
    long GetTypeValue(char* buffer) const noexcept;
    /// Reads a record; the buffer must hold the whole record. Answers the
    /// record's length field as read (-2 for a null buffer). Any held content
    /// is released first. The payload read is the one the type code calls
    /// for; only a string takes its length from the length field, and comes
    /// back without the terminator the record carries ("AB" stays "AB"). A
    /// non-zero Boolean byte reads as true. An array code or VT_UNKNOWN leaves
    /// VT_EMPTY; any other code without a payload (VT_NULL, VT_DISPATCH,
    /// unknown codes) is set as it stands over the unchanged value field. A
    /// string that cannot be allocated leaves VT_EMPTY.
    long SetTypeValue(const char* buffer) noexcept;
    /// Reads a record from a buffer of `size` bytes (which may hold more after
    /// the record). Answers the record's length, or -2 with the value
    /// untouched for a record that is short (length field below 6 or beyond
    /// `size`), has a code without a record (arrays, VT_NULL, ...), a payload
    /// of the wrong size, a string not ending in its zero terminator, a
    /// Boolean byte other than 0 or 1, or a string that cannot be allocated.
    long SetTypeValue(const char* buffer, std::size_t size) noexcept;
    /// Writes the 8 value bytes, most significant first, into an array that
    /// holds exactly 8 elements; false (array unchanged) otherwise.
    bool ToByteArray(CByteArray& bytes) const noexcept;

    // =======================================================================
    // Type change
    // =======================================================================
    /// Converts this value in place to `newType`; answers a result code. The
    /// value changes only on success. Same type: 0. Arrays other than the byte
    /// array: -1. VT_EMPTY: cleared. From VT_EMPTY: the zero value of newType.
    /// Numbers convert with range checks and round half away from zero
    /// (VT_R8 2.5 to VT_I4 gives 3, VT_I4 300 to VT_UI1 gives -3).
    VARION_MEMBER_FOLD long SetType(VARTYPE newType) noexcept;
    /// SetType on `target` when it is not null (this value untouched), else on
    /// this value.
    long ChangeType(VARTYPE newType, CVarion* target = nullptr) noexcept;
    /// Assigns this value to `destination` (unless it is this value) and
    /// converts it there. After a failed change the destination holds the
    /// unconverted copy.
    long CopyAs(CVarion& destination, VARTYPE newType) const noexcept;

    // Conversion operators: the value converted to the operator's type, or 0
    // (0.0, an empty text) when the conversion fails. A failed range check
    // gives 0, not a saturated value.
    /// The Boolean reading: VT_I4 256 gives 1.
    operator int() const noexcept;
    /// As VT_I1.
    operator char() const noexcept;
    /// As VT_UI1: VT_I4 300 gives 0.
    operator unsigned char() const noexcept;
    /// As VT_I2.
    operator short() const noexcept;
    /// As VT_UI2.
    operator unsigned short() const noexcept;
    /// As VT_I4 (32-bit): VT_R8 -2.5 gives -3.
    operator long() const noexcept;
    /// As VT_UI4 (32-bit).
    operator unsigned long() const noexcept;
    /// As VT_I8.
    operator LONGLONG() const noexcept;
    /// As VT_UI8.
    operator ULONGLONG() const noexcept;
    /// As VT_R4.
    operator float() const noexcept;
    /// As VT_R8.
    operator double() const noexcept;
    /// As text: VT_BOOL true gives "true".
    operator CString() const noexcept;

    // =======================================================================
    // Text helpers
    // =======================================================================
    /// The number base of `text` from its first two characters: "" 0, "0x1F"
    /// 16, "0b1" 2, "017" 8, "0" and "17" 10. Removes the prefix ("0x", "0b"
    /// or the leading "0" of an octal text) unless `keepPrefix`.
    static int GetBase(CString& text, bool keepPrefix) noexcept;
    /// Makes a number text use the user's decimal separator: when the C
    /// library's numeric separator differs from the user locale's, its first
    /// occurrence in `text` is replaced.
    static void CheckDecimalPoint(CString& text) noexcept;

    // =======================================================================
    // VARIANT exchange
    // =======================================================================
    /// Takes a VARIANT in: strings and arrays are duplicated, VT_INT/VT_UINT
    /// become VT_I4/VT_UI4, any non-zero VARIANT_BOOL becomes true. -1 for
    /// VT_BYREF (value unchanged); -2 for a type that cannot be held or a
    /// failed copy (value VT_EMPTY).
    long SetData(VARIANT source) noexcept;
    /// Gives a VARIANT out, clearing `target` first. 100, 101, 105 and 106
    /// leave as their text (VT_BSTR); true leaves as 1. -1 for a by-reference
    /// type code (target untouched); -2 when it cannot be given out (target
    /// VT_EMPTY). A target whose content cannot be released (an unknown type
    /// code) answers -2 and is left as it is.
    long GetData(VARIANT& target) const noexcept;

    // =======================================================================
    // Arrays
    // =======================================================================
    /// True when the type code carries VT_ARRAY.
    bool isArray() const noexcept;
    /// Elements along bound A (one row of a two-dimensional array); 0 for a
    /// scalar.
    unsigned long GetElementCount() const noexcept;
    /// Reads element (i, j) into `destination`, a variable of the element type
    /// (CString for strings, bool for Booleans, CVarion for VARIANTs). A
    /// resizable array grows to reach i; out of range on a fixed-size array
    /// reads nothing.
    void GetElementValue(long i, long j, void* destination) const noexcept;
    /// Writes element (i, j) from `source` (as for GetElementValue). A
    /// resizable array grows to reach i; out of range on a fixed-size array,
    /// or j beyond bound B, writes nothing.
    void SetElementValue(long i, long j, const void* source) const noexcept;
    /// Typed element read: does nothing unless T matches the array (the same
    /// element size for numbers; VT_BOOL for bool, VT_BSTR for CString,
    /// VT_VARIANT for CVarion), so it never writes more or fewer bytes than
    /// `variable` has. One index reads element (i, 0).
    template <varion::ArrayElement T>
    void GetElementValue(T* variable, long i, long j = 0) const noexcept {
        if (variable != nullptr && ElementMatches(varion::ElementKindOf<T>, sizeof(T)))
            GetElementValue(i, j, static_cast<void*>(variable));
    }
    /// Typed element write, with the same check as the typed read.
    template <varion::ArrayElement T>
    void SetElementValue(const T* variable, long i, long j = 0) const noexcept {
        if (variable != nullptr && ElementMatches(varion::ElementKindOf<T>, sizeof(T)))
            SetElementValue(i, j, static_cast<const void*>(variable));
    }
    /// This array followed by the other's elements (along its bound A); a
    /// VT_I2 value -1 when `other` is not an array of the same type code or
    /// this array of raw elements has two dimensions.
    CVarion CONCAT_ARRAY(const CVarion& other) const noexcept;

    // =======================================================================
    // Hexadecimal streams
    // =======================================================================
    /// Writes the value's bytes as lower-case hex digits, most significant
    /// first: VT_R4/VT_R8 append to `text`, the integer types replace it
    /// (VT_I2 0x1234 gives "1234"). False for every other type.
    bool Value2HexStream(CString& text) const noexcept;
    /// Changes the value to `type`, then for VT_R4 (8 digits) or VT_R8 (16
    /// digits) stores the bytes the digits give: "3f800000" with VT_R4 gives
    /// 1.0. Each pair reads as strtol reads two characters in base 16 (" f"
    /// is 0x0f, "-1" 0xff, "g1" 0). False for an odd length (nothing
    /// changes), another length or type (the change of type is kept), or a
    /// failed type change (the value keeps its old type and content).
    bool HexStream2Value(const CString& digits, VARTYPE type) noexcept;

    // =======================================================================
    // Comparison: 1 or 0; never changes an operand
    // =======================================================================
    /// Equality across types: numbers of different classes within a millionth
    /// of the right operand (VT_I4 5 == VT_R8 5.0000049), strings ordinally,
    /// dates and durations only with their own kind, arrays element by
    /// element; a string facing a number is read as that number's type. 0 for
    /// pairs that cannot be compared (one empty operand, a date and a number).
    int operator==(const CVarion& other) const noexcept;
    /// 1 exactly when operator== answers 0 (so 1 for pairs that cannot be compared).
    int operator!=(const CVarion& other) const noexcept;
    /// Ordering by the rules of operator== (within the tolerance both <= and
    /// >= hold); 0 for an array on the left and for pairs that cannot be compared.
    int operator<=(const CVarion& other) const noexcept;
    /// As operator<=, with >=.
    int operator>=(const CVarion& other) const noexcept;
    /// As operator<=, with <; two numbers within the tolerance satisfy < too.
    int operator<(const CVarion& other) const noexcept;
    /// As operator<=, with >; two numbers within the tolerance satisfy > too.
    int operator>(const CVarion& other) const noexcept;

    // Named comparisons: both operands read as doubles (0.0 when a value does
    // not convert, a string that does not parse among them) and compared
    // exactly, without the tolerance and the date rules; a NaN makes them 0
    // (NotEqual 1).
    /// a == b as doubles; two strings are compared ordinally instead.
    static int Equal(const CVarion& a, const CVarion& b) noexcept;
    /// a != b as doubles; two strings are compared ordinally instead.
    static int NotEqual(const CVarion& a, const CVarion& b) noexcept;
    /// a < b as doubles.
    static int LittleThen(const CVarion& a, const CVarion& b) noexcept;
    /// a >= b as doubles.
    static int GreaterEqual(const CVarion& a, const CVarion& b) noexcept;
    /// a > b as doubles.
    static int GreaterThen(const CVarion& a, const CVarion& b) noexcept;
    /// a <= b as doubles.
    static int LittleEqual(const CVarion& a, const CVarion& b) noexcept;
    /// this == other as doubles, strings too ("10" Equal "10.0" is 1).
    int Equal(const CVarion& other) const noexcept;
    /// this != other as doubles, strings too.
    int NotEqual(const CVarion& other) const noexcept;
    /// this < other as doubles.
    int LittleThen(const CVarion& other) const noexcept;
    /// this >= other as doubles.
    int GreaterEqual(const CVarion& other) const noexcept;
    /// this > other as doubles.
    int GreaterThen(const CVarion& other) const noexcept;
    /// this <= other as doubles.
    int LittleEqual(const CVarion& other) const noexcept;

    /// 1 when a or b, each read as VT_I4, is not 0; a value that does not
    /// convert (VT_R8 0.4 rounds to 0, 2^40 is out of range) counts as 0. b
    /// is read only when a is 0.
    static int OR(const CVarion& a, const CVarion& b) noexcept;
    /// 1 when both, read as VT_I4, are not 0 (as OR reads them); b is read
    /// only when a is not 0.
    static int AND(const CVarion& a, const CVarion& b) noexcept;
    /// OR(*this, other).
    int OR(CVarion other) const noexcept;
    /// AND(*this, other).
    int AND(CVarion other) const noexcept;

    // =======================================================================
    // Arithmetic
    // =======================================================================
    /// result = a op b (op is OP_ADD to OP_MOD) in the destination type of the
    /// pair; integer results widen when they do not fit (VT_I1 100 + 100 gives
    /// VT_I2 200). Answers a result code; `result` may be `a` or `b`.
    static long Arithmetic(CVarion& result, const CVarion& a, const CVarion& b, int op) noexcept;
    /// The destination type of a op b: true with `dest` set, or false with
    /// `dest` 0 when the pair has none.
    static bool SearchDestinationTyp(const CVarion& a, const CVarion& b, int op,
                                     unsigned short& dest) noexcept;

    // The static forms are Arithmetic with its result code dropped (call
    // Arithmetic to see it); the member forms answer a new value and leave
    // this one unchanged. A pair without a destination type gives VT_EMPTY.
    /// result = a + b (OP_ADD): VT_DATE plus a duration stays a date-time.
    static void ADD(CVarion& result, const CVarion& a, const CVarion& b) noexcept;
    /// result = a - b (OP_SUB): two date-times give a VTX_DURATION.
    static void SUB(CVarion& result, const CVarion& a, const CVarion& b) noexcept;
    /// result = a * b (OP_MUL).
    static void MUL(CVarion& result, const CVarion& a, const CVarion& b) noexcept;
    /// result = a / b (OP_DIV); integers divide truncating, by zero the
    /// result is the zero of the destination type.
    static void DIV(CVarion& result, const CVarion& a, const CVarion& b) noexcept;
    /// result = a % b (OP_MOD), integers only (-7 % 2 is -1); floating and
    /// date operands fail.
    static void MOD(CVarion& result, const CVarion& a, const CVarion& b) noexcept;
    /// this + b; for an array, CONCAT_ARRAY(b).
    CVarion ADD(const CVarion& b) const noexcept;
    /// this - b.
    CVarion SUB(const CVarion& b) const noexcept;
    /// this * b.
    CVarion MUL(const CVarion& b) const noexcept;
    /// this / b.
    CVarion DIV(const CVarion& b) const noexcept;
    /// this % b.
    CVarion MOD(const CVarion& b) const noexcept;

    // 32-bit shifts and bitwise operations of `a` read as VT_I4 with n (or
    // `b` read as VT_I4); a value that does not convert reads as 0 (VT_UI4
    // 4294967295 among them). The result is VT_UI4 when a is VT_UI4, else
    // VT_I4; nothing fails. The member forms leave this value unchanged.
    /// result = a << (n & 31): shifting by 33 shifts by 1, bits shifted out are lost.
    static void L_SHIFT(CVarion& result, const CVarion& a, const CVarion& b) noexcept;
    /// result = a << (n & 31).
    static void L_SHIFT(CVarion& result, const CVarion& a, long n) noexcept;
    /// result = a >> (n & 31), the sign bit copied in (-8 >> 1 is -4).
    static void R_SHIFT(CVarion& result, const CVarion& a, const CVarion& b) noexcept;
    /// result = a >> (n & 31), arithmetic.
    static void R_SHIFT(CVarion& result, const CVarion& a, long n) noexcept;
    /// result = a | b.
    static void BIT_OR(CVarion& result, const CVarion& a, const CVarion& b) noexcept;
    /// result = a | n.
    static void BIT_OR(CVarion& result, const CVarion& a, long n) noexcept;
    /// result = a & b.
    static void BIT_AND(CVarion& result, const CVarion& a, const CVarion& b) noexcept;
    /// result = a & n.
    static void BIT_AND(CVarion& result, const CVarion& a, long n) noexcept;
    /// result = a ^ b.
    static void BIT_XOR(CVarion& result, const CVarion& a, const CVarion& b) noexcept;
    /// result = a ^ n.
    static void BIT_XOR(CVarion& result, const CVarion& a, long n) noexcept;
    /// this << b.
    CVarion L_SHIFT(const CVarion& b) const noexcept;
    /// this << n.
    CVarion L_SHIFT(long n) const noexcept;
    /// this >> b.
    CVarion R_SHIFT(const CVarion& b) const noexcept;
    /// this >> n.
    CVarion R_SHIFT(long n) const noexcept;
    /// this | b.
    CVarion BIT_OR(const CVarion& b) const noexcept;
    /// this | n.
    CVarion BIT_OR(long n) const noexcept;
    /// this & b.
    CVarion BIT_AND(const CVarion& b) const noexcept;
    /// this & n.
    CVarion BIT_AND(long n) const noexcept;
    /// this ^ b.
    CVarion BIT_XOR(const CVarion& b) const noexcept;
    /// this ^ n.
    CVarion BIT_XOR(long n) const noexcept;

    // Unary operations: result is assigned a, then changed at its own width,
    // wrapping; types other than integers and floats (VT_BOOL, strings,
    // dates, arrays) stay unchanged. Nothing fails.
    /// Inverts every bit of an integer (VT_UI2 255 gives 65280); floats unchanged.
    static void BIT_NOT(CVarion& result, const CVarion& a) noexcept;
    /// Negates: VT_UI1 1 gives 255, VT_I4 -2147483648 stays; floats flip their sign.
    static void NEG(CVarion& result, const CVarion& a) noexcept;
    /// Adds 1: VT_UI1 255 gives 0.
    static void INC(CVarion& result, const CVarion& a) noexcept;
    /// Subtracts 1: VT_I8 -9223372036854775808 gives 9223372036854775807.
    static void DEC(CVarion& result, const CVarion& a) noexcept;
    /// BIT_NOT of this value.
    CVarion BIT_NOT() const noexcept;
    /// NEG of this value.
    CVarion NEG() const noexcept;
    /// INC of this value.
    CVarion INC() const noexcept;
    /// DEC of this value.
    CVarion DEC() const noexcept;

    // =======================================================================
    // Calendar fields and durations (-1 where a field does not apply, and for
    // every calendar field of a date-time outside 0100-01-01 .. 9999-12-31).
    // A duration's components carry its sign: -0.25 days has hour -6.
    // =======================================================================
    /// Year of a date-time (100 to 9999).
    long GetYear() const noexcept;
    /// Month of a date-time (1 to 12).
    long GetMonth() const noexcept;
    /// Day of week of a date-time, 1 = Monday to 7 = Sunday.
    long GetDayOfWeek() const noexcept;
    /// Day of month of a date-time; whole days of a duration.
    long GetDay() const noexcept;
    /// Hour of a date-time; hours component of a duration.
    long GetHour() const noexcept;
    /// Minute of a date-time; minutes component of a duration.
    long GetMinute() const noexcept;
    /// Second of a date-time; seconds component of a duration.
    long GetSecond() const noexcept;
    /// Millisecond of a date-time; milliseconds component of a duration. The
    /// other fields of a date-time are those of the instant without it, so
    /// 23:59:59.750 reads second 59 and millisecond 750. Before 1899-12-30 it
    /// is zero or negative: 1899-12-29 05:59:59.500 reads 5:59:59 and -500.
    long GetMillisecond() const noexcept;
    /// Total milliseconds of a duration.
    LONGLONG GetTotalMilliseconds() const noexcept;
    /// 1/32-millisecond component of a VTX_DURATION_MSF (0 to 31, or 0 to -31).
    long GetMillisecondFractions() const noexcept;
    /// Total 1/32 milliseconds of a VTX_DURATION_MSF.
    LONGLONG GetTotalMillisecondFractions() const noexcept;

    /// ISO 8601 text of a VT_DATE, or of a string holding a date:
    /// "2026-11-17T20:18:38", "2026-11-17" at midnight, "12:00:00" on day zero.
    /// With `withZoneOffset` the standard offset of the TZ zone is appended
    /// ("+01:00"; nothing for UTC or a date alone). Empty when there is no date.
    CString GetISO8601DateTimeString(bool withZoneOffset) const noexcept;

    // =======================================================================
    // Display formats and units
    // =======================================================================
    /// The value rendered under a printf-like display format ("%.2f", "%X",
    /// "%b", a strftime pattern for ISO date-times). `ddType` chooses how a
    /// VT_DATE shows (15 time, 16/17 duration, 20 date, else date and time).
    /// Never fails: at worst an empty text. A format the formatter cannot use
    /// (a second conversion, "*", an unknown prefix) or a text beyond 99
    /// characters (255 for a pattern) formats as the empty text, which the
    /// finishing step still completes: "%d %d" gives "", "%100X" gives "0x".
    CString GetStringWithDisplayFormat(CString format, short ddType) const noexcept;

    /// Converts this value, taken in unit `from`, into unit `to` in `*result`,
    /// in this value's type: VT_R8 2.5 from 1010 (m) to 1013 (mm) gives 2500.
    /// Answers 0, RC_UNIT_NOT_CONVERTIBLE (1), RC_UNIT_NO_TARGET (2), or -2
    /// (empty value, null result, from = -1; result untouched).
    long UnitConvert(short from, short to, CVarion* result) const noexcept;

protected:
    /// For a NaN or infinite VT_R4/VT_R8 stores "< Not a Number (NaN) >" or
    /// "< +/- Infinity >" in `text` and answers true; otherwise false.
    bool HandleNaN(CString& text) const noexcept;
    /// Removes the leading spaces (U+0020 only) of `*text`, replacing the
    /// string. E_INVALIDARG for a null pointer or string, E_OUTOFMEMORY.
    static HRESULT TrimUnicodeStringLeftAndRight(BSTR* text) noexcept;
    /// 1 when `ch` occurs in `text`, -1 when not or when `text` is null.
    static int FindCharacterInUnicodeString(const OLECHAR* text, OLECHAR ch) noexcept;
    /// Index of the first `ch` (widened with its sign) in `text`, or -1.
    static int FindCharacterInUnicodeString(const OLECHAR* text, char ch) noexcept;
    /// 1 when `text` is not null and holds only hexadecimal digits (the empty
    /// text included); else 0.
    static int IsUnicodeHexNumber(const OLECHAR* text) noexcept;

private:
    /// Codes whose content is the value field alone (numbers, dates, the
    /// Boolean, an interface pointer carried without a reference).
    static constexpr bool HoldsPlainValue(VARTYPE t) noexcept {
        return t < varion::detail::kPlainValueCodes.size() && varion::detail::kPlainValueCodes[t];
    }
    /// Codes whose content lives outside the value: a string or an array.
    static constexpr bool OwnsContent(VARTYPE t) noexcept { return t == VT_BSTR || (t & VT_ARRAY) != 0; }
    /// The first 8 bytes of a value of `type`: the type code and three zero
    /// reserved words, to be stored at once.
    static constexpr std::uint64_t HeadWord(VARTYPE type) noexcept {
        return std::endian::native == std::endian::little ? type : std::uint64_t{type} << 48;
    }
    /// A new value of `type` holding `value`; the other bytes are zero.
    /// Written as two 8-byte stores: the type code with its zeroed reserved
    /// words, then the value field with its unused bytes zeroed.
    template <class T>
    void Init(VARTYPE type, T value) noexcept {
        static_assert(std::is_trivially_copyable_v<T> && sizeof(T) <= sizeof(std::uint64_t));
        const std::uint64_t head = HeadWord(type);
        std::uint64_t field = 0;
        std::memcpy(&field, &value, sizeof value);
        std::memcpy(static_cast<void*>(&m_v), &head, sizeof head);
        std::memcpy(&m_v.llVal, &field, sizeof field);
    }
    /// The copy of a string, an array or a code without content.
    void CopyContent(const CVarion& other) noexcept;
    /// Frees the string or destroys the array and nulls its pointer; the type
    /// code stays.
    void ReleaseContent() noexcept;
    /// Assignment where either value owns a string or an array.
    CVarion& AssignContent(const CVarion& other) noexcept;
    /// The type change of every route but number to number (SetType).
    long Dispatch(VARTYPE newType) noexcept;
    /// The value read as numeric type T: numbers through the cast table on a
    /// 16-byte copy, other values through ReadConverted; 0 on failure.
    template <VARTYPE T>
    VARION_FOLD_INLINE varion::detail::NumericT<T> ReadAs() const noexcept {
        if (m_v.vt == T) return varion::detail::Load<varion::detail::NumericT<T>>(m_v);
        VARIANT copy = m_v;
        if (const varion::detail::NumericCastFn cast = varion::detail::NumericCast(T, m_v.vt)) {
            if (cast(copy) != 0) return 0;
        } else if (!ReadConverted(T, copy)) {
            return 0;
        }
        return varion::detail::Load<varion::detail::NumericT<T>>(copy);
    }
    /// A value that is not a number converted to numeric type `type` into
    /// `out` (this value unchanged); false when the conversion fails.
    bool ReadConverted(VARTYPE type, VARIANT& out) const noexcept;
    /// Clears the value and makes it the zero value of `type`; -2 (the value
    /// left VT_EMPTY) for a type without one.
    long InitType(VARTYPE type) noexcept;
    /// Number to number with the range check; -2 when either side is not a
    /// number, -3 or -4 out of range (the value unchanged).
    long ChangeNumericToNumeric(VARTYPE type) noexcept;
    /// Any value to its text (VT_BSTR); -2 for a type without a text form.
    long ChangeToString(VARTYPE type) noexcept;
    /// The held string read as `type`; -2 when it does not read (the string kept).
    long ChangeFromString(VARTYPE type) noexcept;
    /// A number as a date or duration of `type`; -2 for a value that is not a number.
    long ChangeNumericToDate(VARTYPE type) noexcept;
    /// A date or duration through its number into `type`; -2 when that fails.
    long ChangeDateToNumeric(VARTYPE type) noexcept;
    /// Base 16: each hex digit of `text` as four binary digits (others
    /// dropped); base 2: `text` itself; any other base: "".
    static CString StringToBinaryStream(CString text, int base);
    /// Whether a variable of `kind` and `size` bytes matches this array's elements.
    bool ElementMatches(varion::ElementKind kind, std::size_t size) const noexcept;

    VARIANT m_v;

    friend struct varion::detail::Access;
};

#if !defined(VARION_OUT_OF_LINE_MEMBERS)
#include <varion/detail/inline_members.h>
#endif

static_assert(sizeof(CVarion) == sizeof(VARIANT), "a CVarion is a VARIANT");
static_assert(varion::detail::kCastAboveMax == RC_ABOVE_MAX && varion::detail::kCastBelowMin == RC_BELOW_MIN,
              "the numeric casts answer the library's result codes");
static_assert(std::is_standard_layout_v<CVarion>, "CVarion is laid out as a VARIANT");

// ---------------------------------------------------------------------------
// Diagnostics
// ---------------------------------------------------------------------------
extern "C" {
/// Receives the library's diagnostic lines (the one written at load).
typedef void (*VARION_DIAGNOSTIC_SINK)(const OLECHAR* line);
/// Replaces the diagnostic sink and answers the previous one; null restores
/// the default, which sends the line to the debugger (OutputDebugStringW on
/// Windows) and writes it to standard error when VARION_DEBUG is set.
VARION_API VARION_DIAGNOSTIC_SINK VarionSetDiagnosticSink(VARION_DIAGNOSTIC_SINK sink);
}

#include <varion/units.h>
