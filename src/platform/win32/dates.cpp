// The locale texts of dates through the system's VarBstrFromDate and
// VarDateFromStr.
#include "platform/locale_dates.h"

#include <string>

namespace varion::detail {

int UserDateText(double value, OLECHAR* out) noexcept {
    BSTR text = nullptr;
    if (FAILED(VarBstrFromDate(value, LOCALE_USER_DEFAULT, 0, &text)) || text == nullptr) return -1;
    const UINT length = SysStringLen(text);
    int written = -1;
    if (length < static_cast<UINT>(kDateTextCapacity)) {
        for (UINT i = 0; i <= length; ++i) out[i] = text[i];
        written = static_cast<int>(length);
    }
    SysFreeString(text);
    return written;
}

HRESULT DateFromText(OleStringView text, LCID lcid, ULONG flags, double& value) noexcept {
    // The service reads a null-terminated text: a U+0000 inside would cut it short.
    if (text.find(OLECHAR(0)) != OleStringView::npos) return DISP_E_TYPEMISMATCH;
    constexpr std::size_t kSmall = 128;
    OLECHAR small[kSmall];
    OleString large;
    OLECHAR* copy = small;
    if (text.size() >= kSmall) {
        try {
            large.assign(text);
        } catch (...) {
            return E_OUTOFMEMORY;
        }
        copy = large.data();
    } else {
        text.copy(small, text.size());
        small[text.size()] = 0;
    }
    DATE result = 0.0;
    const HRESULT hr = VarDateFromStr(copy, lcid, flags, &result);
    if (SUCCEEDED(hr)) value = result;
    return hr;
}

}  // namespace varion::detail
