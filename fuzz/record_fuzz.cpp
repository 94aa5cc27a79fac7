// Fuzzes the bounded byte-record reader: any bytes either read as a record,
// which then writes back as exactly the bytes read, or are refused with the
// value left byte for byte as it was. The unbounded reader must agree with the
// bounded one on every record the bounded one accepts.
#include <varion/varion.h>

#include "value/access.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const char* bytes = reinterpret_cast<const char*>(data);
    CVarion value(OLESTR("held before"));
    unsigned char before[16];
    std::memcpy(before, &value, sizeof(before));

    const long length = value.SetTypeValue(bytes, size);
    if (length < 0) {
        if (length != RC_NOT_CONVERTIBLE || std::memcmp(before, &value, sizeof(before)) != 0) std::abort();
        return 0;
    }
    if (static_cast<std::size_t>(length) > size || value.GetLen() != length) std::abort();

    std::vector<char> written(static_cast<std::size_t>(length));
    if (value.GetTypeValue(written.data()) != length) std::abort();
    if (std::memcmp(written.data(), bytes, written.size()) != 0) std::abort();

    CVarion unbounded(3.5);
    if (unbounded.SetTypeValue(bytes) != length || unbounded.GetType() != value.GetType()) std::abort();
    std::vector<char> again(static_cast<std::size_t>(length));
    if (unbounded.GetTypeValue(again.data()) != length || again != written) std::abort();
    return 0;
}
