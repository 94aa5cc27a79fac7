#include "platform/runtime_number.h"

#include <charconv>
#include <clocale>
#include <climits>
#include <cmath>
#include <string>
#include <system_error>

namespace varion::detail {
namespace {

bool IsDigit(OLECHAR c) noexcept { return c >= '0' && c <= '9'; }

std::size_t SkipSpaces(OleStringView text) noexcept {
    std::size_t i = 0;
    while (i < text.size() && CString::IsSpace(text[i])) ++i;
    return i;
}

}  // namespace

std::size_t ReadLong(OleStringView text, long& value) noexcept {
    value = 0;
    std::size_t i = SkipSpaces(text);
    bool negative = false;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) negative = text[i++] == '-';
    const std::size_t digits = i;
    long long magnitude = 0;
    for (; i < text.size() && IsDigit(text[i]); ++i)
        if (magnitude <= 0x80000000LL) magnitude = magnitude * 10 + (text[i] - '0');
    if (i == digits) return 0;
    if (negative) magnitude = -magnitude;
    value = static_cast<long>(magnitude < INT32_MIN ? INT32_MIN : magnitude > INT32_MAX ? INT32_MAX : magnitude);
    return i;
}

std::size_t ReadDouble(OleStringView text, OleStringView separators, double& value) noexcept {
    auto isSeparator = [&](OLECHAR c) { return separators.find(c) != OleStringView::npos; };
    value = 0.0;
    const std::size_t start = SkipSpaces(text);
    std::size_t i = start;
    bool negative = false;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) negative = text[i++] == '-';
    // Scan the shape, noting where the first significant digit stands
    // relative to the separator (for telling overflow from underflow).
    std::size_t digits = 0;
    long long magnitude = 0;  // decimal position of the first significant digit
    bool significant = false;
    for (; i < text.size() && IsDigit(text[i]); ++i, ++digits) {
        if (significant) ++magnitude;
        else if (text[i] != '0') significant = true, magnitude = 1;
    }
    if (i < text.size() && isSeparator(text[i])) {
        std::size_t j = i + 1;
        long long zeros = 0;
        bool fractionSignificant = significant;
        std::size_t fractionDigits = 0;
        for (; j < text.size() && IsDigit(text[j]); ++j, ++fractionDigits) {
            if (!fractionSignificant) {
                if (text[j] == '0') ++zeros;
                else fractionSignificant = true, magnitude = -zeros;
            }
        }
        if (digits + fractionDigits > 0) {
            i = j;
            digits += fractionDigits;
            significant = fractionSignificant;
        }
    }
    if (digits == 0) return 0;
    if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
        std::size_t j = i + 1;
        bool negativeExponent = false;
        if (j < text.size() && (text[j] == '+' || text[j] == '-')) negativeExponent = text[j++] == '-';
        long long exponent = 0;
        const std::size_t exponentStart = j;
        for (; j < text.size() && IsDigit(text[j]); ++j)
            if (exponent < 1000000) exponent = exponent * 10 + (text[j] - '0');
        if (j > exponentStart) {
            i = j;
            magnitude += negativeExponent ? -exponent : exponent;
        }
    }

    // The number is ASCII from `start` to `i`: narrow it, with "." as the
    // separator and without "+" signs, for from_chars.
    const std::size_t length = i - start;
    char small[128];
    std::string large;
    char* narrow = small;
    if (length > sizeof(small)) {
        try {
            large.resize(length);
        } catch (...) {
            return 0;
        }
        narrow = large.data();
    }
    std::size_t n = 0;
    for (std::size_t k = start; k < i; ++k) {
        const OLECHAR c = text[k];
        if (c != '+') narrow[n++] = isSeparator(c) ? '.' : static_cast<char>(c);
    }
    double result = 0.0;
    const auto [ptr, ec] = std::from_chars(narrow, narrow + n, result, std::chars_format::general);
    if (ec == std::errc::result_out_of_range) {
        const double limit = significant && magnitude > 0 ? HUGE_VAL : 0.0;
        result = negative ? -limit : limit;
    } else if (ec != std::errc() || ptr != narrow + n) {
        return 0;
    }
    value = result;
    return i;
}

OLECHAR RuntimeDecimalSeparator() noexcept {
    const std::lconv* conv = std::localeconv();
    if (conv != nullptr && conv->decimal_point != nullptr && conv->decimal_point[0] == ',') return ',';
    return '.';
}

}  // namespace varion::detail
