// Fuzz target: the formatter, the pattern renderer and the display formats of
// the value class with untrusted formats.
//
// Input layout: byte 0 chooses the argument's kind and how the rest is read
// as text (bit 7: UTF-16 pairs, otherwise one code unit per byte); bytes 1-8
// are the argument's value and the broken-down time's fields; the rest is
// the format. Every output buffer is allocated at its exact capacity, so a
// write beyond it is caught by AddressSanitizer; the invariants are checked
// with __builtin_trap.
#include "platform/format.h"
#include "platform/strftime.h"
#include "value/access.h"

#include <varion/varion.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <ctime>
#include <memory>

using varion::FormatArg;
using varion::detail::FormatStatus;

namespace {

void Check(bool condition) {
    if (!condition) __builtin_trap();
}

void CheckResult(const varion::detail::FormatResult& r, const OLECHAR* out, std::size_t capacity) {
    Check(r.length < capacity);
    Check(out[r.length] == 0);
    Check(r.status == FormatStatus::Ok || r.length == 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 9) return 0;
    const std::uint8_t mode = data[0];
    std::uint64_t bits = 0;
    std::memcpy(&bits, data + 1, 8);
    data += 9;
    size -= 9;

    OleString format;
    if (mode & 0x80) {
        for (std::size_t i = 0; i + 1 < size; i += 2)
            format.push_back(static_cast<OLECHAR>(data[i] | (data[i + 1] << 8)));
    } else {
        for (std::size_t i = 0; i < size; ++i) format.push_back(static_cast<OLECHAR>(data[i]));
    }

    const OleString text(format.rbegin(), format.rend());  // some text for %s
    double number = 0;
    std::memcpy(&number, &bits, sizeof number);
    FormatArg arg(0);
    switch (mode & 3) {
    case 0: arg = FormatArg(static_cast<long long>(bits)); break;
    case 1: arg = FormatArg(static_cast<unsigned long long>(bits)); break;
    case 2: arg = FormatArg(number); break;
    default: arg = FormatArg(OleStringView(text)); break;
    }

    // One argument into the display buffer, and into a tiny one.
    for (const std::size_t capacity : {varion::detail::kFormatBufferSize, std::size_t{1} + (mode >> 2 & 7)}) {
        const auto out = std::make_unique<OLECHAR[]>(capacity);
        const auto r = varion::detail::FormatOne(format, arg, out.get(), capacity);
        CheckResult(r, out.get(), capacity);
    }

    // Several arguments, no length limit.
    const FormatArg args[] = {arg, FormatArg(-1), FormatArg(number), FormatArg(OleStringView(text))};
    OleString list;
    if (varion::detail::FormatList(format, args, (mode >> 5) & 3, list) != FormatStatus::Ok) Check(list.empty());

    // The same text as a time pattern, with fields from the value's bytes.
    std::tm t{};
    t.tm_sec = static_cast<std::int8_t>(bits);
    t.tm_min = static_cast<std::int8_t>(bits >> 8);
    t.tm_hour = static_cast<std::int8_t>(bits >> 16);
    t.tm_mday = static_cast<std::int8_t>(bits >> 24);
    t.tm_mon = static_cast<std::int8_t>(bits >> 32);
    t.tm_wday = static_cast<std::int8_t>(bits >> 40);
    t.tm_yday = static_cast<std::int16_t>(bits >> 48);
    t.tm_year = static_cast<int>(static_cast<std::int32_t>(bits >> 16));
    const std::size_t capacity = varion::detail::kTimeBufferSize;
    const auto out = std::make_unique<OLECHAR[]>(capacity);
    CheckResult(varion::detail::FormatTime(format, t, out.get(), capacity), out.get(), capacity);

    // The display formats: a value of a type chosen by the mode, holding the
    // value's bytes, under the format and a device-description type.
    static constexpr VARTYPE kTypes[] = {VT_I1, VT_UI1, VT_I2,  VT_UI2,  VT_I4,   VT_UI4,  VT_I8,  VT_UI8,
                                         VT_R4, VT_R8,  VT_BOOL, VT_DATE, VT_EMPTY, VTX_DURATION,
                                         VTX_ISO_DURATION, VTX_ISO_DATETIME};
    const VARTYPE type = kTypes[(mode >> 2) & 15];
    CVarion value;
    VARIANT& v = varion::detail::Access::Var(value);
    v.vt = type;
    v.ullVal = type == VT_BOOL ? (bits & 1) : bits;
    const CString shown = value.GetStringWithDisplayFormat(CString(OleStringView(format)), static_cast<short>(bits >> 48));
    Check(shown.GetLength() >= 0);

    // And a byte array of the format's first bytes.
    CVarion bytes(VT_UI1, static_cast<long>(size < 16 ? size : 16), 0L);
    for (long i = 0; i < static_cast<long>(size < 16 ? size : 16); ++i) bytes.SetElementValue(&data[i], i);
    (void)bytes.GetStringWithDisplayFormat(CString(OleStringView(format)), 0);
    return 0;
}
