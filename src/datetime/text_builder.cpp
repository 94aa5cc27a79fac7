#include "datetime/text_builder.h"

namespace varion::detail {

void TextBuilder::Number(long long value, int minDigits) {
    unsigned long long magnitude = value < 0 ? 0ULL - static_cast<unsigned long long>(value)
                                             : static_cast<unsigned long long>(value);
    OLECHAR digits[24];
    int n = 0;
    do {
        digits[n++] = static_cast<OLECHAR>('0' + magnitude % 10);
        magnitude /= 10;
    } while (magnitude != 0);
    if (value < 0) Put('-');
    for (int i = n; i < minDigits; ++i) Put('0');
    while (n > 0) Put(digits[--n]);
}

void TextBuilder::Spill() {
    m_spilled.Append(m_buffer, m_length);
    m_length = 0;
}

CString TextBuilder::Take() {
    if (m_spilled.IsEmpty()) return CString(m_buffer, m_length);
    Spill();
    return static_cast<CString&&>(m_spilled);
}

OleStringView TrimView(OleStringView text) noexcept {
    std::size_t first = 0, last = text.size();
    while (first < last && CString::IsSpace(text[first])) ++first;
    while (last > first && CString::IsSpace(text[last - 1])) --last;
    return text.substr(first, last - first);
}

}  // namespace varion::detail
