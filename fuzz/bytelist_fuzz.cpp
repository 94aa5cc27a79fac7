// The byte-list rule: a text changed into a byte array (VT_UI1 | VT_ARRAY).
//
// Checked: nothing crashes or leaks; a refused text leaves the value byte
// for byte; an accepted list has no more bytes than the text has tokens,
// and its text ("0x01, 0xAB") reads back into the same bytes.
#include <varion/varion.h>

#include "platform/utf.h"
#include "value/access.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

constexpr VARTYPE kBytes = VT_ARRAY | VT_UI1;

void Check(bool condition) {
    if (!condition) std::abort();
}

std::string BytesOf(const CVarion& v) {
    const SAFEARRAY* a = varion::detail::Access::Var(v).parray;
    Check(a != nullptr && a->cDims == 1);
    return std::string(static_cast<const char*>(a->pvData), a->rgsabound[0].cElements);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const OleString text = varion::detail::Utf8ToUtf16(input);
    CVarion v;
    VARIANT& var = varion::detail::Access::Var(v);
    var.bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    if (var.bstrVal == nullptr) return 0;
    var.vt = VT_BSTR;

    unsigned char before[sizeof(CVarion)];
    std::memcpy(before, &v, sizeof(v));
    const long code = v.SetType(kBytes);
    if (code != RC_OK) {
        Check(code == RC_NOT_CONVERTIBLE);
        Check(std::memcmp(before, &v, sizeof(v)) == 0);
        return 0;
    }
    Check(v.GetType() == kBytes);
    const std::string bytes = BytesOf(v);
    const std::size_t cut = text.find(OLECHAR(0));
    const OleStringView read = OleStringView(text).substr(0, cut);
    std::size_t commas = 0;
    for (const OLECHAR c : read) commas += c == ',' ? 1 : 0;
    Check(bytes.size() <= commas + 1);

    CVarion back(v);
    Check(back.SetType(VT_BSTR) == RC_OK);
    Check(back.SetType(kBytes) == RC_OK);
    Check(BytesOf(back) == bytes);
    return 0;
}
