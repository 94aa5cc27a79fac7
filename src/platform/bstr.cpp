// BSTR: UTF-16 text with its byte length stored in the four bytes before the
// first character and a zero code unit after the last. The block starts 8
// bytes before the text so that the characters stay 8-byte aligned.
#include <varion/platform/automation.h>

#include "platform/alloc.h"

#include <cstring>

namespace {

constexpr std::size_t kHeader = 8;

unsigned char* BlockOf(BSTR s) { return reinterpret_cast<unsigned char*>(s) - kHeader; }

// A string of `bytes` bytes whose content the caller fills; null when the
// size is refused or the block cannot be had.
BSTR AllocateBytes(std::size_t bytes) {
    if (bytes > varion::detail::kMaxBlockSize - kHeader - sizeof(OLECHAR)) return nullptr;
    auto* block = static_cast<unsigned char*>(varion::detail::PlatformAlloc(kHeader + bytes + sizeof(OLECHAR)));
    if (block == nullptr) return nullptr;
    const auto length = static_cast<std::uint32_t>(bytes);
    std::memset(block, 0, kHeader);
    std::memcpy(block + kHeader - sizeof(length), &length, sizeof(length));
    // Two zero bytes end the text; an odd byte length gets a zero byte more.
    std::memset(block + kHeader + bytes, 0, sizeof(OLECHAR));
    return reinterpret_cast<BSTR>(block + kHeader);
}

std::size_t TextLength(const OLECHAR* s) {
    std::size_t n = 0;
    while (s[n] != 0) ++n;
    return n;
}

}  // namespace

extern "C" {

BSTR SysAllocString(const OLECHAR* psz) {
    if (psz == nullptr) return nullptr;
    const std::size_t n = TextLength(psz);
    if (n > 0x7FFFFFFFu) return nullptr;
    return SysAllocStringLen(psz, static_cast<UINT>(n));
}

BSTR SysAllocStringLen(const OLECHAR* strIn, UINT ui) {
    const std::size_t bytes = static_cast<std::size_t>(ui) * sizeof(OLECHAR);
    BSTR s = AllocateBytes(bytes);
    if (s == nullptr) return nullptr;
    if (strIn != nullptr)
        std::memcpy(s, strIn, bytes);
    else
        std::memset(s, 0, bytes);
    return s;
}

BSTR SysAllocStringByteLen(const char* psz, UINT len) {
    BSTR s = AllocateBytes(len);
    if (s == nullptr) return nullptr;
    if (psz != nullptr)
        std::memcpy(s, psz, len);
    else
        std::memset(s, 0, len);
    return s;
}

void SysFreeString(BSTR bstrString) {
    if (bstrString != nullptr) varion::detail::PlatformFree(BlockOf(bstrString));
}

UINT SysStringByteLen(BSTR bstr) {
    if (bstr == nullptr) return 0;
    std::uint32_t length = 0;
    std::memcpy(&length, BlockOf(bstr) + kHeader - sizeof(length), sizeof(length));
    return length;
}

UINT SysStringLen(BSTR pbstr) { return SysStringByteLen(pbstr) / sizeof(OLECHAR); }

}  // extern "C"
