#include "platform/utf.h"

namespace varion::detail {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

void AppendCodePoint(std::basic_string<OLECHAR>& out, char32_t cp) {
    if (cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) cp = kReplacement;
    if (cp < 0x10000) {
        out.push_back(static_cast<OLECHAR>(cp));
    } else {
        cp -= 0x10000;
        out.push_back(static_cast<OLECHAR>(0xD800 + (cp >> 10)));
        out.push_back(static_cast<OLECHAR>(0xDC00 + (cp & 0x3FF)));
    }
}

}  // namespace

std::basic_string<OLECHAR> Utf8ToUtf16(std::string_view text) {
    std::basic_string<OLECHAR> out;
    out.reserve(text.size());
    std::size_t i = 0;
    while (i < text.size()) {
        const auto b0 = static_cast<unsigned char>(text[i]);
        if (b0 < 0x80) {
            out.push_back(b0);
            ++i;
            continue;
        }
        int extra = 0;
        char32_t cp = 0;
        char32_t minimum = 0;
        if ((b0 & 0xE0) == 0xC0) { extra = 1; cp = b0 & 0x1F; minimum = 0x80; }
        else if ((b0 & 0xF0) == 0xE0) { extra = 2; cp = b0 & 0x0F; minimum = 0x800; }
        else if ((b0 & 0xF8) == 0xF0) { extra = 3; cp = b0 & 0x07; minimum = 0x10000; }
        else { AppendCodePoint(out, kReplacement); ++i; continue; }
        std::size_t j = i + 1;
        int got = 0;
        while (got < extra && j < text.size() && (static_cast<unsigned char>(text[j]) & 0xC0) == 0x80) {
            cp = (cp << 6) | (static_cast<unsigned char>(text[j]) & 0x3F);
            ++j;
            ++got;
        }
        if (got < extra || cp < minimum) cp = kReplacement;
        AppendCodePoint(out, cp);
        i = j;
    }
    return out;
}

std::string Utf16ToUtf8(std::basic_string_view<OLECHAR> text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t cp = static_cast<char16_t>(text[i]);
        if (cp >= 0xD800 && cp <= 0xDBFF && i + 1 < text.size() &&
            static_cast<char16_t>(text[i + 1]) >= 0xDC00 && static_cast<char16_t>(text[i + 1]) <= 0xDFFF) {
            cp = 0x10000 + ((cp - 0xD800) << 10) + (static_cast<char16_t>(text[i + 1]) - 0xDC00);
            ++i;
        } else if (cp >= 0xD800 && cp <= 0xDFFF) {
            cp = kReplacement;
        }
        if (cp < 0x80) {
            out.push_back(static_cast<char>(cp));
        } else if (cp < 0x800) {
            out.push_back(static_cast<char>(0xC0 | (cp >> 6)));
            out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
        } else if (cp < 0x10000) {
            out.push_back(static_cast<char>(0xE0 | (cp >> 12)));
            out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
            out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
        } else {
            out.push_back(static_cast<char>(0xF0 | (cp >> 18)));
            out.push_back(static_cast<char>(0x80 | ((cp >> 12) & 0x3F)));
            out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
            out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
        }
    }
    return out;
}

std::basic_string<OLECHAR> Utf32ToUtf16(std::u32string_view text) {
    std::basic_string<OLECHAR> out;
    out.reserve(text.size());
    for (char32_t cp : text) AppendCodePoint(out, cp);
    return out;
}

}  // namespace varion::detail
