// Text to value: the route of SetType for every change from a string.
//
// The string is prepared (trimmed of white space, upper-cased) and read by
// the rule of the new type; the value changes only when the rule succeeds.
// Numbers are read from a narrowed copy on the stack, so parsing a number
// allocates nothing for texts of ordinary length.
#include <varion/varion.h>

#include "convert/number_text.h"
#include "convert/routes.h"
#include "datetime/datetime.h"
#include "value/access.h"

#include <new>

using namespace varion::detail;

namespace {

// The Boolean rule: an empty or blank text is false, every other text true
// (so "false" and "0" are true).
long BoolFromText(OleStringView text, VARIANT& out) noexcept {
    out.vt = VT_BOOL;
    Store<std::uint8_t>(out, TrimmedView(text).empty() ? 0 : 1);
    return RC_OK;
}

// Dates and durations through their parsers. A date-time text gives VT_DATE
// whichever date-time code was asked for.
long DateFromText(OleStringView text, VARTYPE type, VARIANT& out) noexcept {
    try {
        CString prepared(text);
        prepared.Trim();
        prepared.MakeUpper();
        double value = 0.0;
        long code = RC_NOT_CONVERTIBLE;
        VARTYPE resultType = type;
        switch (type) {
        case VTX_DURATION: case VTX_DURATION_MSF:
            code = ParseDuration(prepared, value);
            break;
        case VT_DATE: case VTX_DATETIME_ALT: case VTX_DATETIME:
            code = ParseDateTimeText(prepared, 0, 0, value);
            resultType = VT_DATE;
            break;
        case VTX_ISO_DURATION:
            code = ParseIsoDuration(prepared, value);
            break;
        case VTX_ISO_DATETIME:
            code = ParseIsoDateTime(prepared, value);
            break;
        default:
            break;
        }
        if (code != 0) return RC_NOT_CONVERTIBLE;
        out.vt = resultType;
        Store(out, value);
        return RC_OK;
    } catch (const std::bad_alloc&) {
        return RC_NOT_CONVERTIBLE;
    }
}

}  // namespace

long varion::detail::ValueFromText(BSTR text, VARTYPE type, VARIANT& out) noexcept {
    switch (type) {
    case VT_BOOL: return BoolFromText(TextOf(text), out);
    case VT_I1: case VT_UI1: case VT_I2: case VT_UI2:
    case VT_I4: case VT_UI4: case VT_I8: case VT_UI8:
    case VT_R4: case VT_R8:
        return NumberFromString(text, type, out);
    case VT_DATE: case VTX_DURATION: case VTX_DURATION_MSF: case VTX_DATETIME_ALT: case VTX_DATETIME:
    case VTX_ISO_DURATION: case VTX_ISO_DATETIME:
        return DateFromText(TextOf(text), type, out);
    case kByteArray: return ByteListFromText(TextOf(text), out);
    default: return RC_NOT_CONVERTIBLE;
    }
}

long CVarion::ChangeFromString(VARTYPE type) noexcept {
    if (m_v.vt != VT_BSTR) return RC_NOT_CONVERTIBLE;
    VARIANT result{};
    if (ValueFromText(m_v.bstrVal, type, result) != RC_OK) return RC_NOT_CONVERTIBLE;
    SysFreeString(m_v.bstrVal);
    CommitMember(m_v, result);
    return RC_OK;
}
