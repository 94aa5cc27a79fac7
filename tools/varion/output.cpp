// Results as aligned text lines or as JSON objects.
#include "cli.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>

namespace cli {
namespace {

bool Continuation(std::string_view text, std::size_t at, unsigned char low = 0x80, unsigned char high = 0xBF) {
    if (at >= text.size()) return false;
    const auto c = static_cast<unsigned char>(text[at]);
    return c >= low && c <= high;
}

// The length of the well-formed UTF-8 sequence at `at`, or 0.
std::size_t SequenceLength(std::string_view text, std::size_t at) {
    const auto lead = static_cast<unsigned char>(text[at]);
    if (lead < 0x80) return 1;
    if (lead >= 0xC2 && lead <= 0xDF) return Continuation(text, at + 1) ? 2 : 0;
    if (lead >= 0xE0 && lead <= 0xEF) {
        // No overlong forms (E0 80..9F) and no surrogates (ED A0..BF).
        const unsigned char low = lead == 0xE0 ? 0xA0 : 0x80;
        const unsigned char high = lead == 0xED ? 0x9F : 0xBF;
        return Continuation(text, at + 1, low, high) && Continuation(text, at + 2) ? 3 : 0;
    }
    if (lead >= 0xF0 && lead <= 0xF4) {
        // No overlong forms (F0 80..8F) and nothing above U+10FFFF (F4 90..).
        const unsigned char low = lead == 0xF0 ? 0x90 : 0x80;
        const unsigned char high = lead == 0xF4 ? 0x8F : 0xBF;
        return Continuation(text, at + 1, low, high) && Continuation(text, at + 2) && Continuation(text, at + 3)
                   ? 4
                   : 0;
    }
    return 0;
}

std::string RealText(double x) {
    char buffer[32];
    const auto [ptr, ec] = std::to_chars(buffer, buffer + sizeof(buffer), x);
    return ec == std::errc() ? std::string(buffer, ptr) : std::string();
}

}  // namespace

std::string JsonReal(double x) { return std::isfinite(x) ? RealText(x) : "null"; }

std::string JsonString(std::string_view text) {
    std::string out = "\"";
    for (std::size_t k = 0; k < text.size();) {
        const auto c = static_cast<unsigned char>(text[k]);
        if (c == '"' || c == '\\') {
            out += '\\';
            out += static_cast<char>(c);
            ++k;
        } else if (c == '\n' || c == '\r' || c == '\t') {
            out += c == '\n' ? "\\n" : c == '\r' ? "\\r" : "\\t";
            ++k;
        } else if (c < 0x20 || c == 0x7F) {
            char escaped[8];
            std::snprintf(escaped, sizeof(escaped), "\\u%04x", c);
            out += escaped;
            ++k;
        } else if (const std::size_t n = SequenceLength(text, k); n > 0) {
            out.append(text, k, n);
            k += n;
        } else {
            out += "\xEF\xBF\xBD";  // U+FFFD for a byte that starts no valid sequence
            ++k;
        }
    }
    return out + "\"";
}

Report::Report(const CVarion& value, long code) : Report(value.GetType(), ValueText(value), code) {}

Report::Report(VARTYPE type, std::string valueText, long code)
    : m_type(type), m_value(std::move(valueText)), m_code(code) {}

Report& Report::Add(std::string key, std::string text, std::string label) {
    std::string json = JsonString(text);
    m_members.push_back({std::move(key), std::move(json), std::move(label), std::move(text)});
    return *this;
}

Report& Report::Add(std::string key, long long number, std::string label) {
    std::string text = std::to_string(number);
    m_members.push_back({std::move(key), text, std::move(label), text});
    return *this;
}

Report& Report::AddReal(std::string key, double number, std::string label) {
    m_members.push_back({std::move(key), JsonReal(number), std::move(label), RealText(number)});
    return *this;
}

Report& Report::Line(std::string label, std::string text) {
    m_members.push_back({{}, {}, std::move(label), std::move(text)});
    return *this;
}

Report& Report::Meaning(std::string text) {
    m_meaning = std::move(text);
    return *this;
}

void Report::Print(bool json) const {
    if (json) {
        std::string out = "{\"type\":" + std::to_string(m_type) + ",\"type_name\":" + JsonString(TypeName(m_type)) +
                          ",\"value\":" + JsonString(m_value) + ",\"code\":" + std::to_string(m_code) +
                          ",\"code_name\":" + JsonString(ResultName(m_code));
        for (const Member& m : m_members)
            if (!m.key.empty()) out += "," + JsonString(m.key) + ":" + m.json;
        std::printf("%s}\n", out.c_str());
        return;
    }
    std::vector<std::pair<std::string, std::string>> lines = {
        {"type", TypeName(m_type) + " (" + std::to_string(m_type) + ")"},
        {"value", m_value},
        {"code", ResultName(m_code) + " (" + std::to_string(m_code) + ")" + (m_meaning.empty() ? "" : ": ") +
                     m_meaning},
    };
    for (const Member& m : m_members)
        if (!m.label.empty()) lines.emplace_back(m.label, m.text);
    std::size_t width = 0;
    for (const auto& [label, text] : lines) width = std::max(width, label.size());
    for (const auto& [label, text] : lines) {
        // Written whole: a text may hold zero bytes.
        std::printf("%s:", label.c_str());
        if (!text.empty()) std::printf("%*s", static_cast<int>(width - label.size() + 1), "");
        std::fwrite(text.data(), 1, text.size(), stdout);
        std::putchar('\n');
    }
}

}  // namespace cli
