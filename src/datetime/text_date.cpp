// Date-time texts: the locale form with milliseconds, ISO 8601, and the
// exported GetISO8601DateTimeString.
#include "datetime/datetime.h"
#include "datetime/text_builder.h"

#include "platform/locale_dates.h"
#include "platform/runtime_number.h"
#include "value/access.h"

#include <ctime>

namespace varion::detail {
namespace {

// Reads "0," followed by `rest` with the decimal comma: the fraction of a
// second after a date-time text. Answers RC_OK, or -1 when the text is not
// consumed whole (-2 when a very long rest cannot be copied).
long ReadSecondsFraction(OleStringView rest, double& fraction) noexcept {
    constexpr std::size_t kSmall = 64;
    OLECHAR small[kSmall];
    OleString large;
    OLECHAR* text = small;
    const std::size_t length = rest.size() + 2;
    if (length > kSmall) {
        try {
            large.resize(length);
        } catch (...) {
            return RC_NOT_CONVERTIBLE;
        }
        text = large.data();
    }
    text[0] = '0';
    text[1] = ',';
    rest.copy(text + 2, rest.size());
    return ReadDouble(OleStringView(text, length), OLESTR(","), fraction) == length ? RC_OK : RC_NOT_APPLICABLE;
}

void PutIsoDate(TextBuilder& out, long year, long month, long day) {
    out.Number(year, 4);
    out.Put('-');
    out.Number(month, 2);
    out.Put('-');
    out.Number(day, 2);
}

void PutTime(TextBuilder& out, long hour, long minute, long second) {
    out.Number(hour, 2);
    out.Put(':');
    out.Number(minute, 2);
    out.Put(':');
    out.Number(second, 2);
}

}  // namespace

CString FormatDateTime(double value) {
    DateTimeFieldSet fields;
    if (!DateTimeFields(value, fields)) return CString();
    OLECHAR text[kDateTextCapacity + 4];
    int length = UserDateText(WithoutMillisecond(value, fields.millisecond), text);
    if (length < 0) return CString();
    if (fields.millisecond > 0) {
        text[length++] = ',';
        text[length++] = static_cast<OLECHAR>('0' + fields.millisecond / 100);
        text[length++] = static_cast<OLECHAR>('0' + fields.millisecond / 10 % 10);
        text[length++] = static_cast<OLECHAR>('0' + fields.millisecond % 10);
    }
    return CString(text, length);
}

CString FormatIsoDateTime(double value) {
    DateTimeFieldSet f;
    if (!DateTimeFields(value, f)) return CString();
    TextBuilder out;
    PutIsoDate(out, f.year, f.month, f.day);
    out.Put('T');
    PutTime(out, f.hour, f.minute, f.second);
    if (f.millisecond > 0) {
        out.Put('.');
        long ms = f.millisecond;
        int digits = 3;
        while (ms % 10 == 0) ms /= 10, --digits;
        out.Number(ms, digits);
    }
    return out.Take();
}

long ParseDateTimeText(const CString& text, ULONG flags, LCID lcid, double& value) noexcept {
    const OleStringView t = text.View();
    // A "." after the last ":" separates the fraction of a second, as "," does.
    const std::size_t lastDot = t.rfind('.');
    const std::size_t lastColon = t.rfind(':');
    const std::size_t dotComma = lastDot != OleStringView::npos && lastColon != OleStringView::npos &&
                                         lastDot > lastColon
                                     ? lastDot
                                     : OleStringView::npos;
    auto isComma = [&](std::size_t i) { return t[i] == ',' || i == dotComma; };
    std::size_t first = 0;
    while (first < t.size() && isComma(first)) ++first;
    value = 0.0;
    if (first == t.size()) return RC_OK;
    std::size_t end = first;
    while (end < t.size() && !isComma(end)) ++end;

    if (FAILED(DateFromText(t.substr(first, end - first), lcid, flags, value))) return RC_NOT_CONVERTIBLE;
    if (end + 1 < t.size()) {
        double fraction = 0.0;
        const long rc = ReadSecondsFraction(t.substr(end + 1), fraction);
        if (rc != RC_OK) return rc;
        value += fraction / 86400.0;
    }
    return RC_OK;
}

int ParseIsoDateTime(const CString& text, double& value) noexcept {
    const OleStringView t = text.View();
    OleStringView datePart, timePart, fraction;
    TokenWalk parts(t);
    parts.Next('T', datePart);
    if (!parts.Exhausted()) {
        parts.Next('.', timePart);
        fraction = parts.Rest();
    }

    // year, month, day, hour, minute, second, millisecond; each part fills the
    // fields after the last one written.
    long fields[7] = {-1, -1, -1, 0, 0, 0, 0};
    int next = 0;
    auto readTokens = [&](OleStringView part, OLECHAR delimiter) {
        TokenWalk tokens(part);
        OleStringView token;
        for (int i = 0; i < 3; ++i) {
            const bool found = tokens.Next(delimiter, token);
            long x = 0;
            if (found) ReadLong(token, x);
            fields[next++] = x;
            if (!found) break;
        }
    };
    readTokens(datePart, '-');
    if (!timePart.empty()) readTokens(timePart, ':');
    if (!fraction.empty()) {
        // The first three digits are the millisecond: ".5" is 500, ".123456" 123.
        OLECHAR digits[3] = {'0', '0', '0'};
        fraction.copy(digits, 3);
        long ms = 0;
        ReadLong(OleStringView(digits, 3), ms);
        fields[next] = ms;
    }
    return DateFromFields(fields[0], fields[1], fields[2], fields[3], fields[4], fields[5], fields[6], value);
}

PlatformDate DateFromValue(const CVarion& source) noexcept {
    const VARIANT& v = Access::Var(source);
    PlatformDate date;
    if (v.vt == VT_DATE) {
        date.value = Load<double>(v);
        date.valid = true;
    } else if (v.vt == VT_BSTR) {
        const BSTR text = Load<BSTR>(v);
        const OLECHAR* s = text != nullptr ? text : OLESTR("");
        struct Attempt {
            LCID lcid;
            ULONG flags;
        };
        constexpr Attempt kAttempts[] = {
            {LOCALE_USER_DEFAULT, LOCALE_NOUSEROVERRIDE},
            {LOCALE_USER_DEFAULT, LOCALE_NOUSEROVERRIDE | VAR_DATEVALUEONLY},
            {0x0407, 0},
            {0x0407, VAR_DATEVALUEONLY},
        };
        for (const Attempt& a : kAttempts) {
            if (SUCCEEDED(VarDateFromStr(s, a.lcid, a.flags, &date.value))) {
                date.valid = true;
                break;
            }
        }
    }
    return date;
}

}  // namespace varion::detail

using namespace varion::detail;

CString CVarion::GetISO8601DateTimeString(bool withZoneOffset) const noexcept {
    try {
        long offsetEast = 0;
        if (withZoneOffset) {
            tzset();
            offsetEast = -static_cast<long>(timezone);
        }
        const PlatformDate date = DateFromValue(*this);
        SYSTEMTIME st{};
        if (!date.valid || !VariantTimeToSystemTime(date.value, &st)) return CString();
        TextBuilder out;
        if (st.wYear == 1899 && st.wMonth == 12 && st.wDay == 30) {
            PutTime(out, st.wHour, st.wMinute, st.wSecond);
        } else if (st.wHour == 0 && st.wMinute == 0 && st.wSecond == 0) {
            PutIsoDate(out, st.wYear, st.wMonth, st.wDay);
            withZoneOffset = false;  // a date alone carries no zone
        } else {
            PutIsoDate(out, st.wYear, st.wMonth, st.wDay);
            out.Put('T');
            PutTime(out, st.wHour, st.wMinute, st.wSecond);
        }
        if (withZoneOffset && offsetEast != 0) {
            const long magnitude = offsetEast < 0 ? -offsetEast : offsetEast;
            out.Put(offsetEast < 0 ? '-' : '+');
            out.Number(magnitude / 3600, 2);
            out.Put(':');
            out.Number(magnitude % 3600 / 60, 2);
        }
        return out.Take();
    } catch (...) {
        return CString();
    }
}
