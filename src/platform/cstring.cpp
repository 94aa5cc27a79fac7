#include <varion/platform/cstring.h>

#include "platform/format.h"
#include "platform/utf.h"

#include <algorithm>

namespace {

std::size_t TextLength(const OLECHAR* s) {
    if (s == nullptr) return 0;
    std::size_t n = 0;
    while (s[n] != 0) ++n;
    return n;
}

OleStringView ViewOf(const OLECHAR* s) { return OleStringView(s == nullptr ? OLESTR("") : s, TextLength(s)); }

OLECHAR UpperOf(OLECHAR c) {
    if (c >= 'a' && c <= 'z') return static_cast<OLECHAR>(c - 0x20);
    if (c >= 0xE0 && c <= 0xFE && c != 0xF7) return static_cast<OLECHAR>(c - 0x20);
    return c;
}

OLECHAR LowerOf(OLECHAR c) {
    if (c >= 'A' && c <= 'Z') return static_cast<OLECHAR>(c + 0x20);
    if (c >= 0xC0 && c <= 0xDE && c != 0xD7) return static_cast<OLECHAR>(c + 0x20);
    return c;
}

OLECHAR AsciiUpper(OLECHAR c) { return (c >= 'a' && c <= 'z') ? static_cast<OLECHAR>(c - 0x20) : c; }

}  // namespace

CString::CString(const OLECHAR* text) : m_str(ViewOf(text)) {}

CString::CString(const OLECHAR* text, int length) {
    if (text != nullptr && length > 0) m_str.assign(text, static_cast<std::size_t>(length));
}

CString::CString(OLECHAR ch, int repeat) {
    if (repeat > 0) m_str.assign(static_cast<std::size_t>(repeat), ch);
}

#if !defined(_WIN32)
CString::CString(const wchar_t* text) {
    if (text == nullptr) return;
    std::u32string wide;
    for (const wchar_t* p = text; *p != 0; ++p) wide.push_back(static_cast<char32_t>(*p));
    m_str = varion::detail::Utf32ToUtf16(wide);
}

CString& CString::operator=(const wchar_t* text) { return *this = CString(text); }
#endif

CString::CString(const char* utf8) {
    if (utf8 != nullptr) m_str = varion::detail::Utf8ToUtf16(utf8);
}

CString::CString(OleStringView text) : m_str(text) {}

CString& CString::operator=(const OLECHAR* text) {
    m_str.assign(ViewOf(text));
    return *this;
}

CString& CString::operator=(const char* utf8) { return *this = CString(utf8); }

OLECHAR CString::GetAt(int index) const noexcept {
    return (index >= 0 && index < GetLength()) ? m_str[static_cast<std::size_t>(index)] : OLECHAR(0);
}

void CString::SetAt(int index, OLECHAR ch) noexcept {
    if (index >= 0 && index < GetLength()) m_str[static_cast<std::size_t>(index)] = ch;
}

std::string CString::ToUtf8() const { return varion::detail::Utf16ToUtf8(m_str); }

CString& CString::operator+=(const CString& other) {
    m_str += other.m_str;
    return *this;
}

CString& CString::operator+=(const OLECHAR* text) {
    m_str += ViewOf(text);
    return *this;
}

CString& CString::operator+=(OLECHAR ch) {
    m_str.push_back(ch);
    return *this;
}

CString& CString::Append(const OLECHAR* text, int length) {
    if (text != nullptr && length > 0) m_str.append(text, static_cast<std::size_t>(length));
    return *this;
}

CString& CString::Append(OleStringView text) {
    m_str.append(text);
    return *this;
}

CString operator+(const CString& a, const CString& b) {
    CString r(a);
    r += b;
    return r;
}

CString operator+(const CString& a, const OLECHAR* b) {
    CString r(a);
    r += b;
    return r;
}

CString operator+(const OLECHAR* a, const CString& b) {
    CString r(a);
    r += b;
    return r;
}

CString operator+(const CString& a, OLECHAR b) {
    CString r(a);
    r += b;
    return r;
}

int CString::Compare(const OLECHAR* text) const noexcept {
    const int c = View().compare(ViewOf(text));
    return c < 0 ? -1 : (c > 0 ? 1 : 0);
}

int CString::CompareNoCase(const OLECHAR* text) const noexcept {
    const OleStringView other = ViewOf(text);
    const std::size_t n = std::min(m_str.size(), other.size());
    for (std::size_t i = 0; i < n; ++i) {
        const OLECHAR a = AsciiUpper(m_str[i]);
        const OLECHAR b = AsciiUpper(other[i]);
        if (a != b) return a < b ? -1 : 1;
    }
    if (m_str.size() == other.size()) return 0;
    return m_str.size() < other.size() ? -1 : 1;
}

int CString::Find(OLECHAR ch, int start) const noexcept {
    if (start < 0) start = 0;
    if (start >= GetLength()) return -1;
    const std::size_t pos = m_str.find(ch, static_cast<std::size_t>(start));
    return pos == OleString::npos ? -1 : static_cast<int>(pos);
}

int CString::Find(const OLECHAR* sub, int start) const noexcept {
    if (start < 0) start = 0;
    if (start > GetLength()) return -1;
    const std::size_t pos = m_str.find(ViewOf(sub), static_cast<std::size_t>(start));
    return pos == OleString::npos ? -1 : static_cast<int>(pos);
}

int CString::ReverseFind(OLECHAR ch) const noexcept {
    const std::size_t pos = m_str.rfind(ch);
    return pos == OleString::npos ? -1 : static_cast<int>(pos);
}

int CString::FindOneOf(const OLECHAR* chars) const noexcept {
    const OleStringView set = ViewOf(chars);
    if (set.empty()) return -1;
    const std::size_t pos = m_str.find_first_of(set);
    return pos == OleString::npos ? -1 : static_cast<int>(pos);
}

CString CString::Mid(int first) const { return Mid(first, GetLength()); }

CString CString::Mid(int first, int count) const {
    const int length = GetLength();
    if (first < 0) first = 0;
    if (count < 0) count = 0;
    if (first >= length) return CString();
    if (count > length - first) count = length - first;
    return CString(View().substr(static_cast<std::size_t>(first), static_cast<std::size_t>(count)));
}

CString CString::Left(int count) const { return Mid(0, count); }

CString CString::Right(int count) const {
    const int length = GetLength();
    if (count < 0) count = 0;
    if (count > length) count = length;
    return Mid(length - count, count);
}

CString CString::Tokenize(const OLECHAR* delimiters, int& start) const {
    const int length = GetLength();
    if (start < 0 || start >= length) {
        start = -1;
        return CString();
    }
    const OleStringView set = ViewOf(delimiters);
    if (set.empty()) {
        const int from = start;
        start = length;
        return Mid(from);
    }
    const std::size_t first = m_str.find_first_not_of(set, static_cast<std::size_t>(start));
    if (first == OleString::npos) {
        start = -1;
        return CString();
    }
    std::size_t end = m_str.find_first_of(set, first);
    if (end == OleString::npos) end = m_str.size();
    start = static_cast<int>(end) + 1;
    return CString(View().substr(first, end - first));
}

int CString::Replace(OLECHAR oldCh, OLECHAR newCh) noexcept {
    int count = 0;
    for (OLECHAR& c : m_str) {
        if (c == oldCh) {
            c = newCh;
            ++count;
        }
    }
    return count;
}

int CString::Replace(const OLECHAR* oldText, const OLECHAR* newText) {
    const OleStringView from = ViewOf(oldText);
    const OleStringView to = ViewOf(newText);
    if (from.empty()) return 0;
    int count = 0;
    OleString result;
    std::size_t pos = 0;
    for (;;) {
        const std::size_t hit = m_str.find(from, pos);
        if (hit == OleString::npos) break;
        result.append(m_str, pos, hit - pos);
        result.append(to);
        pos = hit + from.size();
        ++count;
    }
    if (count == 0) return 0;
    result.append(m_str, pos, OleString::npos);
    m_str.swap(result);
    return count;
}

int CString::Remove(OLECHAR ch) noexcept {
    const auto before = m_str.size();
    m_str.erase(std::remove(m_str.begin(), m_str.end(), ch), m_str.end());
    return static_cast<int>(before - m_str.size());
}

int CString::Insert(int index, OLECHAR ch) {
    index = std::clamp(index, 0, GetLength());
    m_str.insert(static_cast<std::size_t>(index), 1, ch);
    return GetLength();
}

int CString::Insert(int index, const OLECHAR* text) {
    index = std::clamp(index, 0, GetLength());
    m_str.insert(static_cast<std::size_t>(index), ViewOf(text));
    return GetLength();
}

int CString::Delete(int index, int count) noexcept {
    const int length = GetLength();
    if (index < 0) index = 0;
    if (count > 0 && index < length) {
        if (count > length - index) count = length - index;
        m_str.erase(static_cast<std::size_t>(index), static_cast<std::size_t>(count));
    }
    return GetLength();
}

bool CString::IsSpace(OLECHAR ch) noexcept {
    switch (static_cast<char16_t>(ch)) {
    case 0x20: case 0x09: case 0x0A: case 0x0B: case 0x0C: case 0x0D:
    case 0x85: case 0xA0: case 0x1680: case 0x2028: case 0x2029: case 0x202F: case 0x205F: case 0x3000:
        return true;
    default:
        return ch >= 0x2000 && ch <= 0x200A;
    }
}

CString& CString::TrimLeft() noexcept {
    std::size_t n = 0;
    while (n < m_str.size() && IsSpace(m_str[n])) ++n;
    m_str.erase(0, n);
    return *this;
}

CString& CString::TrimRight() noexcept {
    std::size_t n = m_str.size();
    while (n > 0 && IsSpace(m_str[n - 1])) --n;
    m_str.erase(n);
    return *this;
}

CString& CString::Trim() noexcept { return TrimRight().TrimLeft(); }

CString& CString::TrimLeft(OLECHAR ch) noexcept {
    std::size_t n = 0;
    while (n < m_str.size() && m_str[n] == ch) ++n;
    m_str.erase(0, n);
    return *this;
}

CString& CString::TrimRight(OLECHAR ch) noexcept {
    std::size_t n = m_str.size();
    while (n > 0 && m_str[n - 1] == ch) --n;
    m_str.erase(n);
    return *this;
}

CString& CString::Trim(OLECHAR ch) noexcept { return TrimRight(ch).TrimLeft(ch); }

CString& CString::MakeUpper() noexcept {
    for (OLECHAR& c : m_str) c = UpperOf(c);
    return *this;
}

CString& CString::MakeLower() noexcept {
    for (OLECHAR& c : m_str) c = LowerOf(c);
    return *this;
}

CString& CString::MakeReverse() noexcept {
    std::reverse(m_str.begin(), m_str.end());
    return *this;
}

void CString::FormatV(const OLECHAR* format, const varion::FormatArg* args, int count) {
    const OleStringView view = ViewOf(format);
    varion::detail::FormatList(view, args, count > 0 ? static_cast<std::size_t>(count) : 0, m_str);
}

BSTR CString::AllocSysString() const { return SysAllocStringLen(m_str.data(), static_cast<UINT>(m_str.size())); }

// ---------------------------------------------------------------------------
// CByteArray
// ---------------------------------------------------------------------------
void CByteArray::SetSize(long newSize) { m_data.resize(newSize > 0 ? static_cast<std::size_t>(newSize) : 0, 0); }

BYTE CByteArray::GetAt(long index) const noexcept {
    return (index >= 0 && index < GetSize()) ? m_data[static_cast<std::size_t>(index)] : BYTE(0);
}

void CByteArray::SetAt(long index, BYTE value) noexcept {
    if (index >= 0 && index < GetSize()) m_data[static_cast<std::size_t>(index)] = value;
}

long CByteArray::Add(BYTE value) {
    m_data.push_back(value);
    return GetSize() - 1;
}

long CByteArray::Append(const CByteArray& src) {
    const long first = GetSize();
    m_data.insert(m_data.end(), src.m_data.begin(), src.m_data.end());
    return first;
}
