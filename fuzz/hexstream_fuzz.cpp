// Fuzzes HexStream2Value with every type code as the target and several
// starting values: an odd length changes nothing, a failed change of type
// keeps the old content, and digits that read as a single or a double write
// back as the same digits.
#include <varion/varion.h>

#include "value/access.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {

CVarion Start(std::uint8_t which) {
    switch (which % 7) {
    case 0: return CVarion();
    case 1: return CVarion(1.5f);
    case 2: return CVarion(-2.25);
    case 3: return CVarion(OLESTR("1.5"));
    case 4: return CVarion(OLESTR("not a number"));
    case 5: return CVarion(static_cast<unsigned short>(VT_I4), 2, 0);
    default: return CVarion(static_cast<unsigned short>(VT_UI1), 3, 0);
    }
}

bool AllHexDigits(const CString& s) {
    for (int k = 0; k < s.GetLength(); ++k) {
        const OLECHAR c = s.GetAt(k);
        const bool digit = (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
        if (!digit) return false;
    }
    return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 3) return 0;
    const auto type = static_cast<VARTYPE>(data[0] | (data[1] << 8));
    CVarion value = Start(data[2]);
    // The remaining bytes are UTF-16 code units, little-endian.
    CString digits;
    for (std::size_t k = 3; k + 1 < size; k += 2)
        digits += static_cast<OLECHAR>(data[k] | (data[k + 1] << 8));

    unsigned char before[16];
    std::memcpy(before, &value, sizeof(before));
    const bool ok = value.HexStream2Value(digits, type);
    const bool unchanged = std::memcmp(before, &value, sizeof(before)) == 0;

    if (digits.GetLength() % 2 != 0 && (ok || !unchanged)) std::abort();
    if (!ok) {
        // Either untouched, or changed to the requested type and refused after.
        if (!unchanged && value.GetType() != type) std::abort();
        return 0;
    }
    if (value.GetType() != type || (type != VT_R4 && type != VT_R8)) std::abort();
    if (digits.GetLength() != (type == VT_R4 ? 8 : 16)) std::abort();
    CString written;
    if (!value.Value2HexStream(written)) std::abort();
    if (AllHexDigits(digits)) {
        CString lower = digits;
        lower.MakeLower();
        if (written != lower) std::abort();
    }
    return 0;
}
