// Shifts, bitwise and unary operations, and the ADD ... DEC wrapper families.
#include <varion/varion.h>

#include "value/access.h"

#include <cstdint>

using varion::detail::Access;
using varion::detail::Load;
using varion::detail::Store;

namespace {

enum class Bitwise { LeftShift, RightShift, Or, And, Xor };

// The 32-bit operation of `a` read as VT_I4 with n; the result is VT_UI4 when
// a was VT_UI4, else VT_I4. n is taken as a 32-bit number.
void Apply32(CVarion& result, const CVarion& a, long n, Bitwise op) {
    const VARTYPE typeOfA = a.GetType();
    const auto v = static_cast<std::int32_t>(static_cast<long>(a));
    const auto m = static_cast<std::int32_t>(static_cast<std::uint32_t>(static_cast<unsigned long>(n)));
    const unsigned shift = static_cast<std::uint32_t>(m) & 31u;
    std::uint32_t r = 0;
    switch (op) {
    case Bitwise::LeftShift: r = static_cast<std::uint32_t>(v) << shift; break;
    case Bitwise::RightShift: r = static_cast<std::uint32_t>(v >> shift); break;
    case Bitwise::Or: r = static_cast<std::uint32_t>(v | m); break;
    case Bitwise::And: r = static_cast<std::uint32_t>(v & m); break;
    case Bitwise::Xor: r = static_cast<std::uint32_t>(v ^ m); break;
    }
    result.Clear();
    VARIANT& out = Access::Var(result);
    Store(out, r);
    out.vt = typeOfA == VT_UI4 ? VARTYPE{VT_UI4} : VARTYPE{VT_I4};
}

enum class Unary { Not, Negate, Increment, Decrement };

template <class T>
T Step(T x, Unary op) {
    using U = std::make_unsigned_t<T>;
    const auto u = static_cast<U>(x);
    switch (op) {
    case Unary::Not: return static_cast<T>(static_cast<U>(~u));
    case Unary::Negate: return static_cast<T>(static_cast<U>(U(0) - u));
    case Unary::Increment: return static_cast<T>(static_cast<U>(u + U(1)));
    case Unary::Decrement: return static_cast<T>(static_cast<U>(u - U(1)));
    }
    return x;
}

template <class F>
F StepFloating(F x, Unary op) {
    switch (op) {
    case Unary::Not: return x;
    case Unary::Negate: return -x;
    case Unary::Increment: return static_cast<F>(x + F(1));
    case Unary::Decrement: return static_cast<F>(x - F(1));
    }
    return x;
}

template <class T>
void StepMember(VARIANT& v, Unary op) {
    if constexpr (std::is_floating_point_v<T>)
        Store(v, StepFloating(Load<T>(v), op));
    else
        Store(v, Step(Load<T>(v), op));
}

// result = a (with the assignment's rules), then changed in place at its own width.
void ApplyUnary(CVarion& result, const CVarion& a, Unary op) {
    result = a;
    VARIANT& v = Access::Var(result);
    switch (v.vt) {
    case VT_I1: case VT_UI1: StepMember<std::uint8_t>(v, op); break;
    case VT_I2: case VT_UI2: StepMember<std::uint16_t>(v, op); break;
    case VT_I4: case VT_UI4: StepMember<std::uint32_t>(v, op); break;
    case VT_I8: case VT_UI8: StepMember<std::uint64_t>(v, op); break;
    case VT_R4: StepMember<float>(v, op); break;
    case VT_R8: StepMember<double>(v, op); break;
    default: break;
    }
}

CVarion Computed(const CVarion& a, const CVarion& b, int op) {
    CVarion result;
    CVarion::Arithmetic(result, a, b, op);
    return result;
}

}  // namespace

void CVarion::ADD(CVarion& result, const CVarion& a, const CVarion& b) noexcept { Arithmetic(result, a, b, OP_ADD); }
void CVarion::SUB(CVarion& result, const CVarion& a, const CVarion& b) noexcept { Arithmetic(result, a, b, OP_SUB); }
void CVarion::MUL(CVarion& result, const CVarion& a, const CVarion& b) noexcept { Arithmetic(result, a, b, OP_MUL); }
void CVarion::DIV(CVarion& result, const CVarion& a, const CVarion& b) noexcept { Arithmetic(result, a, b, OP_DIV); }
void CVarion::MOD(CVarion& result, const CVarion& a, const CVarion& b) noexcept { Arithmetic(result, a, b, OP_MOD); }

CVarion CVarion::ADD(const CVarion& b) const noexcept {
    if (isArray()) return CONCAT_ARRAY(b);
    return Computed(*this, b, OP_ADD);
}
CVarion CVarion::SUB(const CVarion& b) const noexcept { return Computed(*this, b, OP_SUB); }
CVarion CVarion::MUL(const CVarion& b) const noexcept { return Computed(*this, b, OP_MUL); }
CVarion CVarion::DIV(const CVarion& b) const noexcept { return Computed(*this, b, OP_DIV); }
CVarion CVarion::MOD(const CVarion& b) const noexcept { return Computed(*this, b, OP_MOD); }

// The second operand of the value forms is read as VT_I4 (0 when it does not convert).
#define VARION_BITWISE_FAMILY(NAME, OP)                                                          \
    void CVarion::NAME(CVarion& result, const CVarion& a, const CVarion& b) noexcept {          \
        Apply32(result, a, static_cast<long>(b), OP);                                            \
    }                                                                                            \
    void CVarion::NAME(CVarion& result, const CVarion& a, long n) noexcept { Apply32(result, a, n, OP); } \
    CVarion CVarion::NAME(const CVarion& b) const noexcept {                                     \
        CVarion result;                                                                          \
        Apply32(result, *this, static_cast<long>(b), OP);                                        \
        return result;                                                                           \
    }                                                                                            \
    CVarion CVarion::NAME(long n) const noexcept {                                               \
        CVarion result;                                                                          \
        Apply32(result, *this, n, OP);                                                           \
        return result;                                                                           \
    }

VARION_BITWISE_FAMILY(L_SHIFT, Bitwise::LeftShift)
VARION_BITWISE_FAMILY(R_SHIFT, Bitwise::RightShift)
VARION_BITWISE_FAMILY(BIT_OR, Bitwise::Or)
VARION_BITWISE_FAMILY(BIT_AND, Bitwise::And)
VARION_BITWISE_FAMILY(BIT_XOR, Bitwise::Xor)

#define VARION_UNARY_FAMILY(NAME, OP)                                                         \
    void CVarion::NAME(CVarion& result, const CVarion& a) noexcept { ApplyUnary(result, a, OP); } \
    CVarion CVarion::NAME() const noexcept {                                                  \
        CVarion result;                                                                       \
        ApplyUnary(result, *this, OP);                                                        \
        return result;                                                                        \
    }

VARION_UNARY_FAMILY(BIT_NOT, Unary::Not)
VARION_UNARY_FAMILY(NEG, Unary::Negate)
VARION_UNARY_FAMILY(INC, Unary::Increment)
VARION_UNARY_FAMILY(DEC, Unary::Decrement)

#undef VARION_BITWISE_FAMILY
#undef VARION_UNARY_FAMILY
