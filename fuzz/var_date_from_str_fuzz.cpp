// VarDateFromStr in every locale of the table: accepted texts lie in the
// calendar range, render in the same locale, and that text reads back as the
// same date.
#include "fuzz_text.h"
#include "platform/locales.h"

#include <varion/platform/automation.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const auto locales = varion::detail::AllLocales();
    const varion::detail::LocaleInfo& locale = locales[data[0] % locales.size()];
    const ULONG flags = (data[0] / 16) % 3;  // none, time only, date only
    const CString text = fuzz::TextOf(data + 1, size - 1);
    DATE value = 0;
    if (VarDateFromStr(text, locale.lcid, flags, &value) != S_OK) return 0;
    SYSTEMTIME st{};
    fuzz::Require(VariantTimeToSystemTime(value, &st) != FALSE);
    BSTR rendered = nullptr;
    fuzz::Require(VarBstrFromDate(value, locale.lcid, 0, &rendered) == S_OK);
    DATE back = -1;
    fuzz::Require(VarDateFromStr(rendered, locale.lcid, 0, &back) == S_OK && back == value);
    SysFreeString(rendered);
    return 0;
}
