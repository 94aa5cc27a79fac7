// Byte arrays as text: "0x01, 0xAB, 0xFF" is written and read back.
#include "convert/number_text.h"
#include "convert/routes.h"
#include "value/access.h"

#include <cstring>

namespace varion::detail {
namespace {

constexpr OLECHAR kHexDigits[] = OLESTR("0123456789ABCDEF");

// Calls `visit(token)` for every non-empty ","-separated token of `text`;
// stops and answers false as soon as a visit does.
template <class Visit>
bool ForEachToken(OleStringView text, Visit visit) {
    std::size_t start = 0;
    while (start <= text.size()) {
        std::size_t end = text.find(OLECHAR(','), start);
        if (end == OleStringView::npos) end = text.size();
        if (end > start && !visit(text.substr(start, end - start))) return false;
        start = end + 1;
    }
    return true;
}

}  // namespace

std::size_t MemberBytes(VARTYPE vt) noexcept {
    switch (vt) {
    case VT_I1: case VT_UI1: case VT_BOOL: return 1;
    case VT_I2: case VT_UI2: return 2;
    case VT_I4: case VT_UI4: case VT_R4: return 4;
    case VT_I8: case VT_UI8: case VT_R8: case VT_DATE:
    case VTX_DURATION: case VTX_DURATION_MSF: case VTX_DATETIME_ALT: case VTX_DATETIME:
    case VTX_ISO_DURATION: case VTX_ISO_DATETIME:
        return 8;
    case VT_BSTR: return sizeof(BSTR);
    default: return IsArrayType(vt) ? sizeof(SAFEARRAY*) : 0;
    }
}

void CommitMember(VARIANT& target, const VARIANT& result) noexcept {
    std::memcpy(&target.llVal, &result.llVal, MemberBytes(result.vt));
    target.vt = result.vt;
}

BSTR ByteArrayText(SAFEARRAY* bytes) noexcept {
    std::size_t count = 0;
    if (bytes != nullptr && bytes->cDims > 0) {
        count = 1;
        for (USHORT d = 0; d < bytes->cDims; ++d) count *= bytes->rgsabound[d].cElements;
    }
    if (count == 0 || bytes->pvData == nullptr) return SysAllocString(OLESTR(""));
    // Six characters per byte ("0xAB, "), less the separator after the last.
    if (count > (0x7FFFFFFFu + 2u) / 6u) return nullptr;
    BSTR text = SysAllocStringLen(nullptr, static_cast<UINT>(count * 6 - 2));
    if (text == nullptr) return nullptr;
    SafeArrayLock(bytes);
    const auto* data = static_cast<const BYTE*>(bytes->pvData);
    OLECHAR* out = text;
    for (std::size_t k = 0; k < count; ++k) {
        if (k > 0) {
            *out++ = ',';
            *out++ = ' ';
        }
        *out++ = '0';
        *out++ = 'x';
        *out++ = kHexDigits[data[k] >> 4];
        *out++ = kHexDigits[data[k] & 0x0F];
    }
    SafeArrayUnlock(bytes);
    return text;
}

long ByteListFromText(OleStringView raw, VARIANT& out) noexcept {
    const OleStringView text = TrimmedView(raw);

    // Every token must scan before the array is made.
    long count = 0;
    BYTE last = 0;
    const bool scanned = ForEachToken(text, [&](OleStringView token) {
        ++count;
        return ReadByteToken(token, last);
    });
    if (!scanned) return RC_NOT_CONVERTIBLE;

    CVarion array(static_cast<unsigned short>(VT_UI1), 0L, 0L);
    VARIANT& a = Access::Var(array);
    if (a.vt != kByteArray) return RC_NOT_CONVERTIBLE;
    if (count > 0) {
        // Writing the last element first grows the array once to its full
        // size; the others are then written in place, index by index.
        array.SetElementValue(count - 1, 0, &last);
        if (array.GetElementCount() != static_cast<unsigned long>(count)) return RC_NOT_CONVERTIBLE;
        long index = 0;
        ForEachToken(text, [&](OleStringView token) {
            BYTE value = 0;
            ReadByteToken(token, value);
            array.SetElementValue(index++, 0, &value);
            return true;
        });
    }
    out = a;
    a.vt = VT_EMPTY;  // `out` owns the array now
    a.parray = nullptr;
    return RC_OK;
}

}  // namespace varion::detail
