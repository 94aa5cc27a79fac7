// CString: a UTF-16 string with the familiar MFC-style members, and CByteArray.
//
// Positions and counts are in UTF-16 code units. Out-of-range positions are
// clamped, never undefined: Mid(100) of a short string is empty, Find from a
// position past the end answers -1. Only running out of memory throws
// (std::bad_alloc); varion's value class catches it at its own interface.
#pragma once

#include <varion/export.h>
#include <varion/platform/automation.h>

#include <concepts>
#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

/// UTF-16 text as the standard library holds it.
using OleString = std::basic_string<OLECHAR>;
using OleStringView = std::basic_string_view<OLECHAR>;

class CString;

namespace varion {
class FormatArg;
}

class VARION_API CString {
public:
    typedef OLECHAR XCHAR;

    /// The empty string.
    CString() noexcept = default;
    /// A copy (throws std::bad_alloc only).
    CString(const CString&) = default;
    /// Takes the other's text; the other is left empty.
    CString(CString&&) noexcept = default;
    /// Copies the other's text (throws std::bad_alloc only).
    CString& operator=(const CString&) = default;
    /// Takes the other's text.
    CString& operator=(CString&&) noexcept = default;
    /// Frees the text.
    ~CString() = default;

    /// From a null-terminated UTF-16 text; a null pointer gives the empty string.
    CString(const OLECHAR* text);
    /// From the first `length` code units of `text` (null or negative length: empty).
    CString(const OLECHAR* text, int length);
    /// `repeat` copies of one code unit.
    explicit CString(OLECHAR ch, int repeat = 1);
#if !defined(_WIN32)
    /// From a wide (UTF-32) text, converted to UTF-16; invalid code points become U+FFFD.
    CString(const wchar_t* text);
#endif
    /// From a narrow UTF-8 text; invalid sequences become U+FFFD.
    CString(const char* utf8);
    /// From a UTF-16 view (may hold embedded zero code units).
    explicit CString(OleStringView text);

    /// Replaces the text by a null-terminated UTF-16 text; null empties it.
    CString& operator=(const OLECHAR* text);
    /// Replaces the text by a UTF-8 text (invalid sequences become U+FFFD); null empties it.
    CString& operator=(const char* utf8);
#if !defined(_WIN32)
    /// Replaces the text by a wide (UTF-32) text; null empties it.
    CString& operator=(const wchar_t* text);
#endif

    // -- Size and access ----------------------------------------------------
    /// The length in UTF-16 code units.
    int GetLength() const noexcept { return static_cast<int>(m_str.size()); }
    /// Whether the length is 0.
    bool IsEmpty() const noexcept { return m_str.empty(); }
    /// Makes the string empty.
    void Empty() noexcept { m_str.clear(); }
    /// The code unit at `index`, or 0 when `index` is out of range.
    OLECHAR GetAt(int index) const noexcept;
    /// GetAt(index): 0 out of range.
    OLECHAR operator[](int index) const noexcept { return GetAt(index); }
    /// Replaces the code unit at `index`; out of range does nothing.
    void SetAt(int index, OLECHAR ch) noexcept;
    /// The text, always null-terminated.
    const OLECHAR* GetString() const noexcept { return m_str.c_str(); }
    /// GetString(): the null-terminated text, valid until the string changes.
    operator const OLECHAR*() const noexcept { return m_str.c_str(); }
    /// The text as a view (embedded zero code units included).
    OleStringView View() const noexcept { return m_str; }
    /// The text as UTF-8 (lone surrogates become U+FFFD).
    std::string ToUtf8() const;

    // -- Concatenation (each throws std::bad_alloc only) --------------------------
    /// Appends the other's text, embedded zeros included.
    CString& operator+=(const CString& other);
    /// Appends a null-terminated text; null appends nothing.
    CString& operator+=(const OLECHAR* text);
    /// Appends one code unit.
    CString& operator+=(OLECHAR ch);
    /// Appends `length` code units of `text`; null or a length of 0 or less appends nothing.
    CString& Append(const OLECHAR* text, int length);
    /// Appends a view, embedded zeros included.
    CString& Append(OleStringView text);
    /// a followed by b.
    friend VARION_API CString operator+(const CString& a, const CString& b);
    /// a followed by the null-terminated b (nothing for null).
    friend VARION_API CString operator+(const CString& a, const OLECHAR* b);
    /// The null-terminated a (empty for null) followed by b.
    friend VARION_API CString operator+(const OLECHAR* a, const CString& b);
    /// a followed by one code unit.
    friend VARION_API CString operator+(const CString& a, OLECHAR b);

    // -- Comparison (ordinal, by code unit) ----------------------------------
    /// Negative, zero or positive as this text sorts before, equal to or after `text`.
    int Compare(const OLECHAR* text) const noexcept;
    /// As Compare, with ASCII letters folded to upper case.
    int CompareNoCase(const OLECHAR* text) const noexcept;
    /// Equal texts, code unit by code unit (embedded zeros included).
    friend bool operator==(const CString& a, const CString& b) noexcept { return a.m_str == b.m_str; }
    /// Different texts.
    friend bool operator!=(const CString& a, const CString& b) noexcept { return a.m_str != b.m_str; }
    /// a sorts before b by code unit.
    friend bool operator<(const CString& a, const CString& b) noexcept { return a.m_str < b.m_str; }
    /// Compare(b) == 0; a null b counts as the empty text.
    friend bool operator==(const CString& a, const OLECHAR* b) noexcept { return a.Compare(b) == 0; }
    /// Compare(b) != 0.
    friend bool operator!=(const CString& a, const OLECHAR* b) noexcept { return a.Compare(b) != 0; }

    // -- Search ---------------------------------------------------------------
    /// Index of the first `ch` at or after `start`, or -1.
    int Find(OLECHAR ch, int start = 0) const noexcept;
    /// Index of the first occurrence of `sub` at or after `start`, or -1 (an empty `sub` answers `start` when in range).
    int Find(const OLECHAR* sub, int start = 0) const noexcept;
    /// Index of the last `ch`, or -1.
    int ReverseFind(OLECHAR ch) const noexcept;
    /// Index of the first code unit that is one of `chars`, or -1.
    int FindOneOf(const OLECHAR* chars) const noexcept;

    // -- Extraction (positions clamped; throws std::bad_alloc only) ---------------
    /// The text from `first` to the end; empty when `first` is past the end.
    CString Mid(int first) const;
    /// At most `count` code units from `first` (a negative `first` counts
    /// as 0); empty when `first` is past the end or `count` is 0 or less.
    CString Mid(int first, int count) const;
    /// The first `count` code units (all of them when `count` is larger).
    CString Left(int count) const;
    /// The last `count` code units (all of them when `count` is larger).
    CString Right(int count) const;
    /// The next token delimited by any of `delimiters`, starting at `start`, which
    /// moves past the token. Leading delimiters are skipped. When no token is left,
    /// answers the empty string and sets `start` to -1.
    CString Tokenize(const OLECHAR* delimiters, int& start) const;

    // -- Modification ---------------------------------------------------------
    /// Replaces every `oldCh` by `newCh`; answers the count replaced.
    int Replace(OLECHAR oldCh, OLECHAR newCh) noexcept;
    /// Replaces every occurrence of `oldText` (non-empty) by `newText`; answers the count.
    int Replace(const OLECHAR* oldText, const OLECHAR* newText);
    /// Removes every `ch`; answers the count removed.
    int Remove(OLECHAR ch) noexcept;
    /// Inserts at `index` (clamped); answers the new length.
    int Insert(int index, OLECHAR ch);
    /// Inserts a null-terminated text at `index` (clamped; null inserts
    /// nothing); answers the new length.
    int Insert(int index, const OLECHAR* text);
    /// Deletes `count` code units at `index` (clamped); answers the new length.
    int Delete(int index, int count = 1) noexcept;
    /// Removes leading and trailing white space (space, tab, CR, LF, VT, FF and
    /// the Unicode space characters).
    CString& Trim() noexcept;
    /// Removes leading white space (as Trim counts it).
    CString& TrimLeft() noexcept;
    /// Removes trailing white space.
    CString& TrimRight() noexcept;
    /// Removes leading and trailing `ch`.
    CString& Trim(OLECHAR ch) noexcept;
    /// Removes leading `ch`.
    CString& TrimLeft(OLECHAR ch) noexcept;
    /// Removes trailing `ch`.
    CString& TrimRight(OLECHAR ch) noexcept;
    /// ASCII and Latin-1 letters to upper case (U+00E4 gives U+00C4); others stay.
    CString& MakeUpper() noexcept;
    /// ASCII and Latin-1 letters to lower case; others stay.
    CString& MakeLower() noexcept;
    /// Reverses the order of the code units (surrogate pairs are not kept together).
    CString& MakeReverse() noexcept;

    /// A new BSTR holding this text (null when it cannot be allocated).
    BSTR AllocSysString() const;

    // -- Formatting -------------------------------------------------------------
    /// Replaces this text by `format` with printf conventions, each conversion
    /// taking the next argument: s.Format(OLESTR("%04d-%02d"), 2026, 11) gives
    /// "2026-11". The arguments are typed (integers of any width, floating
    /// values, UTF-16 texts and CStrings), so nothing is read that was not
    /// passed. Conversions: c C d i o u x X e E f g G s S and %%; flags - + space
    /// # 0; width and precision up to 999; length prefixes hh h l ll I64 (l is
    /// 32-bit; an integer conversion without a prefix reads the low 32 bits);
    /// exponents have at least three digits (1.5 with %e gives 1.500000e+000);
    /// the decimal separator is the C library's numeric locale's. A format the
    /// formatter cannot use (unknown conversion or prefix, %n, %p, "*", a width
    /// or precision above 999, a lone "%" at the end, more conversions than
    /// arguments, a text for a number or a floating value for an integer
    /// conversion) leaves this text empty. Throws std::bad_alloc only.
    /// The arguments are a variadic template rather than C varargs: each
    /// keeps its type, so a conversion never reads bytes that were not passed,
    /// and a CString or a 64-bit long goes in as it is.
    template <class... A>
    void Format(const OLECHAR* format, const A&... args);
    /// Format with the arguments as a list of `count` entries (null for none).
    void FormatV(const OLECHAR* format, const varion::FormatArg* args, int count);

    /// Whether `ch` counts as white space for Trim.
    static bool IsSpace(OLECHAR ch) noexcept;

private:
    OleString m_str;
};

namespace varion {

/// One argument of a formatted text: a signed or unsigned 64-bit integer, a
/// double or a UTF-16 text, tagged with its kind. Built implicitly from any
/// integer (by its signedness; bool and char16_t are unsigned), any floating
/// type, a null-terminated UTF-16 text (null reads as "(null)"), a view or a
/// CString. A text argument only views its characters: it must outlive the
/// formatting call.
class FormatArg {
public:
    /// The four kinds an argument can be.
    enum class Kind : unsigned char { Signed, Unsigned, Double, Text };

    /// An integer argument, signed or unsigned as T is.
    template <std::integral T>
    constexpr FormatArg(T value) noexcept {
        if constexpr (std::is_signed_v<T>) {
            m_kind = Kind::Signed;
            m_bits = static_cast<unsigned long long>(static_cast<long long>(value));
        } else {
            m_kind = Kind::Unsigned;
            m_bits = static_cast<unsigned long long>(value);
        }
    }
    /// A floating argument, widened to double.
    template <std::floating_point T>
    constexpr FormatArg(T value) noexcept : m_kind(Kind::Double), m_double(static_cast<double>(value)) {}
    /// A text argument viewing `text`.
    constexpr FormatArg(OleStringView text) noexcept : m_kind(Kind::Text), m_text(text) {}
    /// A text argument viewing a null-terminated text; null reads as "(null)".
    constexpr FormatArg(const OLECHAR* text) noexcept
        : m_kind(Kind::Text), m_text(text != nullptr ? OleStringView(text) : OleStringView(OLESTR("(null)"))) {}
    /// A text argument viewing the string's text.
    FormatArg(const CString& text) noexcept : m_kind(Kind::Text), m_text(text.View()) {}

    /// What the argument holds.
    constexpr Kind kind() const noexcept { return m_kind; }
    /// The integer's 64-bit pattern (0 for other kinds).
    constexpr unsigned long long bits() const noexcept { return m_bits; }
    /// The floating value (0.0 for other kinds).
    constexpr double number() const noexcept { return m_double; }
    /// The text (empty for other kinds).
    constexpr OleStringView text() const noexcept { return m_text; }

private:
    Kind m_kind = Kind::Signed;
    unsigned long long m_bits = 0;
    double m_double = 0.0;
    OleStringView m_text;
};

}  // namespace varion

template <class... A>
void CString::Format(const OLECHAR* format, const A&... args) {
    if constexpr (sizeof...(A) == 0) {
        FormatV(format, nullptr, 0);
    } else {
        const varion::FormatArg list[] = {varion::FormatArg(args)...};
        FormatV(format, list, static_cast<int>(sizeof...(A)));
    }
}

/// An array of bytes with MFC-style members.
class VARION_API CByteArray {
public:
    /// An array without bytes.
    CByteArray() = default;

    /// The number of bytes.
    long GetSize() const noexcept { return static_cast<long>(m_data.size()); }
    /// GetSize().
    long GetCount() const noexcept { return GetSize(); }
    /// Whether there are no bytes.
    bool IsEmpty() const noexcept { return m_data.empty(); }
    /// The last index, -1 when empty.
    long GetUpperBound() const noexcept { return GetSize() - 1; }
    /// Resizes; new bytes are zero. A negative size empties the array.
    /// Throws std::bad_alloc only.
    void SetSize(long newSize);
    /// Removes every byte.
    void RemoveAll() noexcept { m_data.clear(); }
    /// The byte at `index`, or 0 when out of range.
    BYTE GetAt(long index) const noexcept;
    /// Replaces the byte at `index`; out of range does nothing.
    void SetAt(long index, BYTE value) noexcept;
    /// The byte at `index` for writing; out of range throws std::out_of_range
    /// (check the index, or use SetAt, which ignores it).
    BYTE& ElementAt(long index) { return m_data.at(static_cast<std::size_t>(index)); }
    /// GetAt(index): 0 out of range.
    BYTE operator[](long index) const noexcept { return GetAt(index); }
    /// ElementAt(index): throws std::out_of_range out of range.
    BYTE& operator[](long index) { return ElementAt(index); }
    /// Appends one byte; answers its index. Throws std::bad_alloc only.
    long Add(BYTE value);
    /// The bytes, valid until the array changes size.
    BYTE* GetData() noexcept { return m_data.data(); }
    /// The bytes, for reading.
    const BYTE* GetData() const noexcept { return m_data.data(); }
    /// Replaces the bytes by a copy of `src`'s. Throws std::bad_alloc only.
    void Copy(const CByteArray& src) { m_data = src.m_data; }
    /// Appends `src`'s bytes; answers the index of the first one appended.
    long Append(const CByteArray& src);

private:
    std::vector<BYTE> m_data;
};
