// GetStringWithDisplayFormat: the dispatch on the value's type code, the
// date, duration and array forms; numbers go the scalar path (scalar.cpp).
#include "format/display.h"

#include "datetime/datetime.h"
#include "platform/strftime.h"
#include "value/access.h"

#include <cstdint>
#include <ctime>
#include <new>

namespace varion::detail {
namespace {

constexpr VARTYPE kCharArray = VT_ARRAY | VT_I1;

const OLECHAR* const kInvalidDateTime = OLESTR("Invalid DateTime");

// Device-description type codes that choose how a VT_DATE shows.
enum : short { kDdTime = 15, kDdDuration = 16, kDdDurationAlt = 17, kDdDate = 20 };

// The platform's locale text of a date; false when it cannot render it.
bool LocaleDateText(double date, ULONG flags, CString& text) {
    BSTR b = nullptr;
    if (FAILED(VarBstrFromDate(date, LOCALE_USER_DEFAULT, flags, &b))) return false;
    try {
        text = CString(b);
    } catch (...) {
        SysFreeString(b);
        throw;
    }
    SysFreeString(b);
    return true;
}

CString DateText(const CVarion& value, double date, const CString& format, short ddType) {
    CString text;
    switch (ddType) {
    case kDdTime:
        if (!LocaleDateText(date, VAR_TIMEVALUEONLY, text)) text = kInvalidDateTime;
        return text;
    case kDdDuration:
    case kDdDurationAlt:
        return FormatDuration(date, format);
    case kDdDate: {
        SYSTEMTIME st{};
        if (!VariantTimeToSystemTime(date, &st) || st.wYear == 1899) return CString();
        if (!LocaleDateText(date, VAR_DATEVALUEONLY, text)) text.Empty();
        return text;
    }
    default:
        return static_cast<CString>(value);
    }
}

// A VTX_ISO_DATETIME under a strftime pattern, the time to the nearest second.
CString PatternText(double date, const CString& pattern) {
    UDATE ud{};
    if (FAILED(VarUdateFromDate(date, 0, &ud))) return CString(kInvalidDateTime);
    std::tm t{};
    t.tm_sec = ud.st.wSecond;
    t.tm_min = ud.st.wMinute;
    t.tm_hour = ud.st.wHour;
    t.tm_mday = ud.st.wDay;
    t.tm_mon = ud.st.wMonth - 1;
    t.tm_year = ud.st.wYear - 1900;
    t.tm_wday = ud.st.wDayOfWeek;
    t.tm_yday = ud.wDayOfYear - 1;
    t.tm_isdst = 0;
    OLECHAR buffer[kTimeBufferSize];
    FormatTime(pattern.View(), t, buffer, kTimeBufferSize);
    return CString(buffer);
}

// The elements of a byte or VT_I1 array in storage order (for a vector, index
// order); false when the array cannot be read.
template <class Visit>
bool ForEachByte(SAFEARRAY* psa, Visit visit) {
    if (psa == nullptr || psa->cbElements != 1 || psa->cDims == 0) return false;
    std::uint64_t count = 1;
    for (USHORT d = 0; d < psa->cDims; ++d) count *= psa->rgsabound[d].cElements;
    if (count == 0) return true;
    if (psa->pvData == nullptr) return false;
    if (FAILED(SafeArrayLock(psa))) return false;
    const auto* bytes = static_cast<const std::uint8_t*>(psa->pvData);
    try {
        for (std::uint64_t i = 0; i < count; ++i) visit(bytes[i]);
    } catch (...) {
        SafeArrayUnlock(psa);
        throw;
    }
    SafeArrayUnlock(psa);
    return true;
}

// Every byte as a VT_I2 through the scalar path, joined by ", ".
CString ByteArrayText(SAFEARRAY* psa, const CString& format) {
    const CString f = format.IsEmpty() ? CString(OLESTR("%X")) : format;
    CString text;
    ForEachByte(psa, [&](std::uint8_t b) {
        text += ScalarText(CVarion(static_cast<short>(b)), f);
        text += OLESTR(", ");
    });
    if (text.GetLength() > 2) text.Delete(text.GetLength() - 2, 2);
    return text;
}

// Every VT_I1 element as one UTF-16 code unit, sign-extended: 72, 105 give "Hi".
CString CharArrayText(SAFEARRAY* psa) {
    CString text;
    ForEachByte(psa, [&](std::uint8_t b) {
        text += static_cast<OLECHAR>(static_cast<std::uint16_t>(static_cast<std::int16_t>(static_cast<std::int8_t>(b))));
    });
    return text;
}

CString DisplayText(const CVarion& value, const CString& format, short ddType) {
    const VARIANT& v = Access::Var(value);
    switch (v.vt) {
    case VT_BSTR:
        return CString(v.bstrVal);
    case VT_DATE:
        return DateText(value, v.date, format, ddType);
    case VTX_DURATION:
    case VTX_DURATION_MSF:
        return FormatDuration(v.date, format);
    case VTX_ISO_DURATION:
        return FormatIsoDuration(v.date);
    case VTX_ISO_DATETIME:
        return format.IsEmpty() ? FormatIsoDateTime(v.date) : PatternText(v.date, format);
    case kByteArray:
        return ByteArrayText(v.parray, format);
    case kCharArray:
        return CharArrayText(v.parray);
    default:
        return ScalarText(value, format);
    }
}

}  // namespace
}  // namespace varion::detail

CString CVarion::GetStringWithDisplayFormat(CString format, short ddType) const noexcept {
    try {
        return varion::detail::DisplayText(*this, format, ddType);
    } catch (const std::bad_alloc&) {
        return CString();
    }
}
