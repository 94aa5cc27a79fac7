// Small helpers for the date and duration texts: a text built in a stack
// buffer (spilling into the result only when it grows long), and the token
// walk of CString::Tokenize on a view, so that parsing allocates nothing.
#pragma once

#include <varion/platform/cstring.h>

#include <cstddef>

namespace varion::detail {

class TextBuilder {
public:
    /// Appends; may throw std::bad_alloc once the text outgrows the buffer.
    void Put(OLECHAR c) {
        if (m_length == kCapacity) Spill();
        m_buffer[m_length++] = c;
    }
    void Put(OleStringView text) {
        for (OLECHAR c : text) Put(c);
    }
    /// Digits of `value` (with "-" when negative), zero-padded to `minDigits`.
    void Number(long long value, int minDigits = 1);
    /// The text; the builder is spent afterwards.
    CString Take();

private:
    void Spill();
    static constexpr int kCapacity = 128;
    OLECHAR m_buffer[kCapacity];
    int m_length = 0;
    CString m_spilled;
};

/// The tokens of a view as CString::Tokenize gives them: delimiters before a
/// token are skipped, and the walk resumes one past the delimiter ending it.
class TokenWalk {
public:
    explicit TokenWalk(OleStringView text, std::size_t start = 0) : m_text(text), m_pos(start) {}
    /// The next token, or false when none is left.
    bool Next(OLECHAR delimiter, OleStringView& token) noexcept {
        std::size_t first = m_pos;
        while (first < m_text.size() && m_text[first] == delimiter) ++first;
        if (first >= m_text.size()) {
            m_pos = m_text.size() + 1;
            return false;
        }
        std::size_t end = first;
        while (end < m_text.size() && m_text[end] != delimiter) ++end;
        token = m_text.substr(first, end - first);
        m_pos = end + 1;
        return true;
    }
    /// True when nothing is left after the last token and its delimiter.
    bool Exhausted() const noexcept { return m_pos >= m_text.size(); }
    /// The text after the last token's delimiter.
    OleStringView Rest() const noexcept { return Exhausted() ? OleStringView() : m_text.substr(m_pos); }

private:
    OleStringView m_text;
    std::size_t m_pos;
};

/// `text` without leading and trailing white space (CString::IsSpace).
OleStringView TrimView(OleStringView text) noexcept;

}  // namespace varion::detail
