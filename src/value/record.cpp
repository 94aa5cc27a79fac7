// Record lengths, storage sizes, the raw byte record and the big-endian view
// of the value field.
//
// The record is a byte format, written and read byte by byte in little-endian
// order whatever the host's order:
//
//   offset 0  4 bytes      total length (6 + payload size), unsigned
//   offset 4  2 bytes      type code
//   offset 6  payload      the member (a VT_BSTR: its UTF-16 code units and a
//                          2-byte zero terminator)
#include <varion/varion.h>

#include "value/access.h"

#include <climits>
#include <cstdint>
#include <cstring>

using varion::detail::IsArrayType;
using varion::detail::Load;
using varion::detail::Store;

namespace {

// What a type code's record payload holds.
enum class Payload {
    None,      // no payload (VT_EMPTY)
    Byte,      // 1 byte
    BoolPair,  // the Boolean byte, then the value field's second byte
    Bits16,    // a 16-bit integer
    Bits32,    // a 32-bit integer or the bits of a single
    Bits64,    // a 64-bit integer or the bits of a double
    Text,      // UTF-16 code units and a zero terminator
};

struct SizeRow {
    VARTYPE code;
    Payload payload;  // record payload; per element for arrays
    int storage;      // bytes of storage; per element for arrays
};

// clang-format off
constexpr SizeRow kSizes[] = {
    // type code            record payload        storage
    {VT_EMPTY,              Payload::None,        0},
    {VT_I1,                 Payload::Byte,        1},
    {VT_UI1,                Payload::Byte,        1},
    {VT_BOOL,               Payload::BoolPair,    1},
    {VT_I2,                 Payload::Bits16,      2},
    {VT_UI2,                Payload::Bits16,      2},
    {VT_I4,                 Payload::Bits32,      4},
    {VT_R4,                 Payload::Bits32,      4},
    {VT_UI4,                Payload::Bits32,      4},
    {VT_R8,                 Payload::Bits64,      8},
    {VT_I8,                 Payload::Bits64,      8},
    {VT_UI8,                Payload::Bits64,      8},
    {VT_DATE,               Payload::Bits64,      8},
    {VTX_DURATION,          Payload::Bits64,      8},
    {VTX_DURATION_MSF,      Payload::Bits64,      8},
    {VTX_DATETIME_ALT,      Payload::Bits64,      8},
    {VTX_DATETIME,          Payload::Bits64,      8},
    {VTX_ISO_DURATION,      Payload::Bits64,      8},
    {VTX_ISO_DATETIME,      Payload::Bits64,      8},
    {VT_BSTR,               Payload::Text,        0},  // sized by its text
};
// clang-format on

constexpr long kHeader = 6;
constexpr long kTerminator = 2;  // the zero code unit ending a text payload

const SizeRow* FindSize(VARTYPE code) noexcept {
    for (const SizeRow& row : kSizes)
        if (row.code == code) return &row;
    return nullptr;
}

long PayloadBytes(Payload p) noexcept {
    switch (p) {
    case Payload::None: return 0;
    case Payload::Byte: return 1;
    case Payload::BoolPair: case Payload::Bits16: return 2;
    case Payload::Bits32: return 4;
    case Payload::Bits64: return 8;
    case Payload::Text: return 0;
    }
    return 0;
}

// Little-endian writing and reading of unsigned integers.
template <class U>
void PutLE(unsigned char* out, U x) noexcept {
    for (std::size_t k = 0; k < sizeof(U); ++k) out[k] = static_cast<unsigned char>(x >> (8 * k));
}

template <class U>
U GetLE(const unsigned char* in) noexcept {
    U x = 0;
    for (std::size_t k = 0; k < sizeof(U); ++k) x = static_cast<U>(x | static_cast<U>(static_cast<U>(in[k]) << (8 * k)));
    return x;
}

// The value field as raw bytes (the Boolean's two bytes are taken as they lie).
std::uint8_t FieldByte(const VARIANT& v, std::size_t k) noexcept {
    unsigned char bytes[8];
    std::memcpy(bytes, &v.llVal, sizeof(bytes));
    return bytes[k];
}

// Byte length of one string, without terminator.
unsigned long long TextBytes(BSTR s) noexcept { return SysStringByteLen(s); }

// Sum of the byte lengths of the strings along bound A of a string array.
unsigned long long TextBytesAlongA(const SAFEARRAY* psa) noexcept {
    if (psa == nullptr || psa->cDims < 1 || psa->pvData == nullptr) return 0;
    const auto* strings = static_cast<const BSTR*>(psa->pvData);
    unsigned long long sum = 0;
    for (ULONG k = 0; k < psa->rgsabound[0].cElements; ++k) sum += TextBytes(strings[k]);
    return sum;
}

unsigned long long CountAlongA(const SAFEARRAY* psa) noexcept {
    return psa == nullptr || psa->cDims < 1 ? 0 : psa->rgsabound[0].cElements;
}

// Record length (record = true) or storage size of a value; -1 without one.
long long Measure(const VARIANT& v, bool record) noexcept {
    const bool array = IsArrayType(v.vt);
    const VARTYPE e = array ? static_cast<VARTYPE>(v.vt & ~VT_ARRAY) : v.vt;
    const SizeRow* row = FindSize(e);
    if (row == nullptr) return -1;
    const long long header = record ? kHeader : 0;
    if (row->payload == Payload::Text) {
        const unsigned long long text = array ? TextBytesAlongA(v.parray) : TextBytes(v.bstrVal);
        return header + static_cast<long long>(text) + kTerminator;
    }
    const long long each = record ? PayloadBytes(row->payload) : row->storage;
    const long long count = array ? static_cast<long long>(CountAlongA(v.parray)) : 1;
    return header + each * count;
}

// Reads a record whose header was read already, `payload` bytes long, into
// `v`. Answers false (v unchanged) when a string cannot be allocated.
bool StoreRecord(CVarion& value, VARTYPE type, const unsigned char* payload, unsigned long long size) noexcept {
    VARIANT& v = varion::detail::Access::Var(value);
    const SizeRow* row = FindSize(type);
    if (row == nullptr) {
        // Codes without a record. An array or interface pointer cannot come
        // from bytes: those leave VT_EMPTY. Any other code is taken as it
        // stands over the value field, which nothing reads for it.
        value.Clear();
        if (!IsArrayType(type) && type != VT_UNKNOWN) v.vt = type;
        return true;
    }
    if (row->payload == Payload::Text) {
        // The string written before the terminator comes back as it was.
        if (size % 2 == 0 && size >= 2 && payload[size - 1] == 0 && payload[size - 2] == 0) size -= 2;
        if (size > 0x7FFFFFF0u) return false;  // more than the 32-bit platform allocates (some do not check)
        // Code units are assembled from their little-endian bytes.
        BSTR s = SysAllocStringByteLen(nullptr, static_cast<UINT>(size));
        if (s == nullptr) return false;
        auto* bytes = reinterpret_cast<unsigned char*>(s);
        for (unsigned long long k = 0; k + 1 < size; k += 2) {
            const auto unit = static_cast<OLECHAR>(GetLE<std::uint16_t>(payload + k));
            std::memcpy(bytes + k, &unit, sizeof(unit));
        }
        if (size % 2 != 0) bytes[size - 1] = payload[size - 1];
        value.Clear();
        v.bstrVal = s;
        v.vt = VT_BSTR;
        return true;
    }
    value.Clear();
    switch (row->payload) {
    case Payload::None: break;
    case Payload::Byte: Store<std::uint8_t>(v, payload[0]); break;
    case Payload::BoolPair: {
        const unsigned char pair[2] = {static_cast<unsigned char>(payload[0] != 0 ? 1 : 0), payload[1]};
        std::memcpy(&v.llVal, pair, sizeof(pair));
        break;
    }
    case Payload::Bits16: Store(v, GetLE<std::uint16_t>(payload)); break;
    case Payload::Bits32: Store(v, GetLE<std::uint32_t>(payload)); break;
    case Payload::Bits64: Store(v, GetLE<std::uint64_t>(payload)); break;
    case Payload::Text: break;
    }
    v.vt = type;
    return true;
}

}  // namespace

long CVarion::GetLen() const noexcept {
    const long long n = Measure(m_v, true);
    return n > LONG_MAX ? -1 : static_cast<long>(n);
}

int CVarion::SizeOf() const noexcept {
    const long long n = Measure(m_v, false);
    return n > INT_MAX ? -1 : static_cast<int>(n);
}

long CVarion::GetTypeValue(char* buffer) const noexcept {
    const SizeRow* row = FindSize(m_v.vt);
    if (buffer == nullptr || row == nullptr) return -1;
    const long long total = Measure(m_v, true);
    if (total < 0 || total > UINT32_MAX || total > LONG_MAX) return -1;
    auto* out = reinterpret_cast<unsigned char*>(buffer);
    PutLE(out, static_cast<std::uint32_t>(total));
    PutLE(out + 4, static_cast<std::uint16_t>(m_v.vt));
    unsigned char* payload = out + kHeader;
    switch (row->payload) {
    case Payload::None: break;
    case Payload::Byte: payload[0] = FieldByte(m_v, 0); break;
    case Payload::BoolPair:
        payload[0] = FieldByte(m_v, 0);
        payload[1] = FieldByte(m_v, 1);
        break;
    case Payload::Bits16: PutLE(payload, Load<std::uint16_t>(m_v)); break;
    case Payload::Bits32: PutLE(payload, Load<std::uint32_t>(m_v)); break;
    case Payload::Bits64: PutLE(payload, Load<std::uint64_t>(m_v)); break;
    case Payload::Text: {
        const UINT units = SysStringLen(m_v.bstrVal);
        for (UINT k = 0; k < units; ++k)
            PutLE(payload + 2 * static_cast<std::size_t>(k), static_cast<std::uint16_t>(m_v.bstrVal[k]));
        // An odd byte length leaves one byte beyond the last whole code unit.
        std::size_t written = 2 * static_cast<std::size_t>(units);
        const UINT bytes = SysStringByteLen(m_v.bstrVal);
        if (bytes > written) {
            payload[written] = reinterpret_cast<const unsigned char*>(m_v.bstrVal)[written];
            ++written;
        }
        payload[written] = 0;
        payload[written + 1] = 0;
        break;
    }
    }
    return static_cast<long>(total);
}

long CVarion::SetTypeValue(const char* buffer) noexcept {
    if (buffer == nullptr) return RC_NOT_CONVERTIBLE;
    const auto* in = reinterpret_cast<const unsigned char*>(buffer);
    const std::uint32_t total = GetLE<std::uint32_t>(in);
    const auto type = static_cast<VARTYPE>(GetLE<std::uint16_t>(in + 4));
    // Only a string reads as many bytes as the length field says; every other
    // type reads the payload its code calls for.
    unsigned long long size = 0;
    if (const SizeRow* row = FindSize(type); row != nullptr) {
        size = row->payload == Payload::Text ? (total > kHeader ? total - kHeader : 0) : static_cast<unsigned long long>(PayloadBytes(row->payload));
    }
    if (!StoreRecord(*this, type, in + kHeader, size)) Clear();  // no string could be made
    return static_cast<long>(total);
}

long CVarion::SetTypeValue(const char* buffer, std::size_t size) noexcept {
    if (buffer == nullptr || size < static_cast<std::size_t>(kHeader)) return RC_NOT_CONVERTIBLE;
    const auto* in = reinterpret_cast<const unsigned char*>(buffer);
    const std::uint32_t total = GetLE<std::uint32_t>(in);
    const auto type = static_cast<VARTYPE>(GetLE<std::uint16_t>(in + 4));
    if (total < kHeader || total > size) return RC_NOT_CONVERTIBLE;
    const SizeRow* row = FindSize(type);
    if (row == nullptr) return RC_NOT_CONVERTIBLE;  // a code without a record
    const unsigned char* payload = in + kHeader;
    const unsigned long long payloadSize = total - kHeader;
    if (row->payload == Payload::Text) {
        // Whole code units ending in the zero terminator.
        if (payloadSize < 2 || payloadSize % 2 != 0 || payload[payloadSize - 1] != 0 ||
            payload[payloadSize - 2] != 0)
            return RC_NOT_CONVERTIBLE;
    } else {
        if (payloadSize != static_cast<unsigned long long>(PayloadBytes(row->payload))) return RC_NOT_CONVERTIBLE;
        if (row->payload == Payload::BoolPair && payload[0] > 1) return RC_NOT_CONVERTIBLE;
    }
    if (!StoreRecord(*this, type, payload, payloadSize)) return RC_NOT_CONVERTIBLE;
    return static_cast<long>(total);
}

bool CVarion::ToByteArray(CByteArray& bytes) const noexcept {
    if (bytes.GetSize() != 8) return false;
    const std::uint64_t field = Load<std::uint64_t>(m_v);
    for (long k = 0; k < 8; ++k) bytes.SetAt(7 - k, static_cast<BYTE>(field >> (8 * k)));
    return true;
}
