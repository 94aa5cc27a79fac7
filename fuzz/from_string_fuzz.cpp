// ChangeFromString into every target type. The first byte chooses the
// target, the second how the rest becomes text (UTF-8, or raw UTF-16 code
// units with embedded zeros and lone surrogates).
//
// Checked: nothing crashes or leaks; a refused text leaves the value byte
// for byte; an accepted one has the expected type; an accepted number
// writes a text that reads back into the same type; the shortcut for plain
// decimal texts agrees with the full floating rule.
#include <varion/varion.h>

#include "convert/number_text.h"
#include "platform/utf.h"
#include "value/access.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace {

constexpr VARTYPE kTargets[] = {
    VT_EMPTY, VT_I1,  VT_UI1,           VT_I2,        VT_UI2,        VT_I4,       VT_UI4,
    VT_I8,    VT_UI8, VT_R4,            VT_R8,        VT_BOOL,       VT_DATE,     VTX_DURATION,
    VTX_DURATION_MSF, VTX_DATETIME_ALT, VTX_DATETIME, VTX_ISO_DURATION, VTX_ISO_DATETIME,
    VT_ARRAY | VT_UI1, VT_ARRAY | VT_I4, VT_BSTR, VT_CY, VT_ERROR, VT_UNKNOWN, 104, 0xFFFF};

void Check(bool condition) {
    if (!condition) std::abort();
}

// A string value holding `text` exactly, embedded zeros included.
void HoldText(CVarion& v, const OLECHAR* text, std::size_t length) {
    VARIANT& var = varion::detail::Access::Var(v);
    var.bstrVal = SysAllocStringLen(text, static_cast<UINT>(length));
    var.vt = var.bstrVal != nullptr ? VT_BSTR : VT_EMPTY;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) return 0;
    const VARTYPE target = kTargets[data[0] % (sizeof(kTargets) / sizeof(kTargets[0]))];
    const bool utf16 = (data[1] & 1) != 0;
    data += 2;
    size -= 2;

    CVarion v;
    if (utf16) {
        OleString text(size / 2, OLECHAR(0));
        std::memcpy(text.data(), data, text.size() * sizeof(OLECHAR));
        HoldText(v, text.data(), text.size());
    } else {
        const OleString text = varion::detail::Utf8ToUtf16({reinterpret_cast<const char*>(data), size});
        HoldText(v, text.data(), text.size());
    }
    if (v.GetType() != VT_BSTR) return 0;

    if (target == VT_R4 || target == VT_R8) {
        const OleStringView text = varion::detail::TextOf(varion::detail::Access::Var(v).bstrVal);
        VARIANT viaShortcut{};
        long shortcutCode = RC_OK;
        if (varion::detail::PlainDecimalFromText(varion::detail::TrimmedView(text), target, viaShortcut,
                                                 shortcutCode)) {
            varion::detail::NarrowText prepared;
            Check(prepared.Assign(text));
            VARIANT viaRule{};
            Check(varion::detail::FloatingFromText(prepared.Data(), prepared.Size(), target, viaRule) ==
                  shortcutCode);
            Check(shortcutCode != RC_OK || std::memcmp(&viaShortcut, &viaRule, sizeof(VARIANT)) == 0);
        }
    }

    unsigned char before[sizeof(CVarion)];
    std::memcpy(before, &v, sizeof(v));
    const long code = v.SetType(target);
    if (code != RC_OK) {
        Check(code == RC_NOT_CONVERTIBLE);
        Check(std::memcmp(before, &v, sizeof(v)) == 0);
        return 0;
    }
    const bool dateTime = target == VTX_DATETIME || target == VTX_DATETIME_ALT;
    Check(v.GetType() == (dateTime ? VARTYPE(VT_DATE) : target));

    if (CVarion::IsNumericType(target) && target != VT_BOOL) {
        CVarion text(v);
        Check(text.SetType(VT_BSTR) == RC_OK);
        const bool decimalBeyondSigned =
            target == VT_UI8 && varion::detail::Load<std::uint64_t>(varion::detail::Access::Var(v)) > INT64_MAX;
        Check(text.SetType(target) == (decimalBeyondSigned ? RC_NOT_CONVERTIBLE : RC_OK));
    }
    return 0;
}
