// Duration texts: the directive format, ISO 8601 seconds, and their parsers.
#include "datetime/datetime.h"
#include "datetime/text_builder.h"

#include "platform/runtime_number.h"

#include <charconv>
#include <cmath>

namespace varion::detail {
namespace {

// Seconds with their fraction as "%06.3lf" (05.250) or "%9.6lf" (" 5.500500"),
// with the runtime's decimal separator.
int SecondsText(double seconds, bool withFractions, OLECHAR* out) noexcept {
    char digits[40];
    const int precision = withFractions ? 6 : 3;
    const int width = withFractions ? 9 : 6;
    const char pad = withFractions ? ' ' : '0';
    const auto r = std::to_chars(digits, digits + sizeof(digits), seconds, std::chars_format::fixed, precision);
    const int length = r.ec == std::errc() ? static_cast<int>(r.ptr - digits) : 0;
    const OLECHAR separator = RuntimeDecimalSeparator();
    int n = 0;
    for (int i = length; i < width; ++i) out[n++] = static_cast<OLECHAR>(pad);
    for (int i = 0; i < length; ++i) out[n++] = digits[i] == '.' ? separator : static_cast<OLECHAR>(digits[i]);
    return n;
}

}  // namespace

CString FormatDuration(double value, const CString& format) {
    DurationFieldSet f = DurationFields(value);
    const bool negative = f.totalFractions < 0;
    if (negative) f = DurationFields(-value);

    OleStringView fmt = format.View();
    if (fmt.empty()) fmt = f.days > 0 ? OLESTR("%D %H:%M:%S") : OLESTR("%H:%M:%S");

    // Days, hours, minutes and seconds from the whole seconds of the components.
    const long long total = ((static_cast<long long>(f.days) * 24 + f.hours) * 60 + f.minutes) * 60 + f.seconds;
    const long long days = total / 86400;
    const long long hours = total / 3600 - days * 24;
    const long long minutes = total / 60 - (total / 3600) * 60;
    const long long seconds = total - (total / 60) * 60;

    OLECHAR secondsText[48];
    int secondsLength = 0;
    if (f.fractions > 0)
        secondsLength = SecondsText(static_cast<double>(f.seconds) + static_cast<double>(f.fractions) / 32000.0 +
                                        static_cast<double>(f.milliseconds) / 1000.0,
                                    true, secondsText);
    else if (f.milliseconds > 0)
        secondsLength =
            SecondsText(static_cast<double>(f.seconds) + static_cast<double>(f.milliseconds) / 1000.0, false, secondsText);

    TextBuilder out;
    if (negative) out.Put('-');
    for (std::size_t i = 0; i < fmt.size(); ++i) {
        if (fmt[i] != '%' || i + 1 == fmt.size()) {
            out.Put(fmt[i]);
            continue;
        }
        std::size_t j = i + 1;
        const bool unpadded = fmt[j] == '#';
        if (unpadded && ++j == fmt.size()) {
            out.Put(fmt.substr(i));
            break;
        }
        const int width = unpadded ? 1 : 2;
        switch (fmt[j]) {
        case 'D': out.Number(days); break;
        case 'H': out.Number(hours, width); break;
        case 'M': out.Number(minutes, width); break;
        case 'S':
            if (secondsLength > 0 && !unpadded) out.Put(OleStringView(secondsText, static_cast<std::size_t>(secondsLength)));
            else out.Number(seconds, width);
            break;
        case '%': out.Put('%'); break;
        default: out.Put(fmt.substr(i, j - i + 1));  // not a directive: copied
        }
        i = j;
    }
    return out.Take();
}

CString FormatIsoDuration(double value) {
    const long long count = RoundedCount(value, kMillisecondsPerDay);
    const unsigned long long magnitude =
        count < 0 ? 0ULL - static_cast<unsigned long long>(count) : static_cast<unsigned long long>(count);
    TextBuilder out;
    if (count < 0) out.Put('-');
    out.Put(OLESTR("PT"));
    out.Number(static_cast<long long>(magnitude / 1000));
    long long rest = static_cast<long long>(magnitude % 1000);
    if (rest > 0) {
        out.Put('.');
        int digits = 3;
        while (rest % 10 == 0) rest /= 10, --digits;
        out.Number(rest, digits);
    }
    out.Put('S');
    return out.Take();
}

long ParseDuration(const CString& text, double& value) noexcept {
    const OleStringView t = TrimView(text.View());
    if (!t.empty() && t[0] == '-') return RC_NOT_APPLICABLE;
    if (t.find(':') == OleStringView::npos) return RC_NOT_APPLICABLE;

    TokenWalk tokens(t);
    OleStringView token;
    long days = 0;
    // Days stand before a space that comes before the first ":"; a space after
    // it belongs to the seconds that FormatDuration pads ("00:00: 0.500500").
    const std::size_t space = t.find(' ');
    if (space != OleStringView::npos && space > 0 && space < t.find(':')) {
        tokens.Next(' ', token);
        if (ReadLong(token, days) != token.size()) return RC_NOT_APPLICABLE;
    }
    long hoursAndMinutes[2] = {0, 0};
    for (long& field : hoursAndMinutes) {
        if (!tokens.Next(':', token)) break;
        if (ReadLong(token, field) != token.size()) return RC_NOT_APPLICABLE;
    }
    double seconds = 0.0;
    if (tokens.Next(':', token) && ReadDouble(token, OLESTR(".,"), seconds) != token.size()) return RC_NOT_APPLICABLE;
    value = DurationFromFields(days, hoursAndMinutes[0], hoursAndMinutes[1], seconds);
    return std::isfinite(value) ? RC_OK : RC_NOT_APPLICABLE;
}

long ParseIsoDuration(const CString& text, double& value) noexcept {
    const OleStringView t = text.View();
    if (t.size() <= 3) return RC_NOT_APPLICABLE;
    const std::size_t leadAt = t.find_first_of(OLESTR("+-P"));
    if (leadAt == OleStringView::npos) return RC_NOT_APPLICABLE;
    const OLECHAR lead = t[leadAt];
    const std::size_t head = lead == 'P' ? 0 : 1;
    if (t.substr(head, 2) != OLESTR("PT") || t.back() != 'S') return RC_NOT_APPLICABLE;

    const OleStringView body = t.substr(head + 2, t.size() - 1 - (head + 2));
    const std::size_t dot = body.find('.');
    const OleStringView secondsText = body.substr(0, dot);
    const OleStringView fraction = dot == OleStringView::npos ? OleStringView(OLESTR("0")) : body.substr(dot + 1);

    double seconds = 0.0;
    if (ReadDouble(secondsText, OLESTR("."), seconds) != secondsText.size() || !(std::fabs(seconds) <= 9e15))
        return RC_NOT_CONVERTIBLE;
    // The fraction padded with zeros and cut to three digits: milliseconds.
    OLECHAR digits[3] = {'0', '0', '0'};
    fraction.copy(digits, 3);
    const std::size_t length = fraction.size() + 2 < 3 ? fraction.size() + 2 : 3;
    double milliseconds = 0.0;
    if (ReadDouble(OleStringView(digits, length), OLESTR("."), milliseconds) != length) return RC_NOT_CONVERTIBLE;

    long long count = static_cast<long long>(seconds) * 1000 + static_cast<long long>(milliseconds);
    if (lead == '-') count = -count;
    value = DurationFromMilliseconds(count);
    return RC_OK;
}

}  // namespace varion::detail
