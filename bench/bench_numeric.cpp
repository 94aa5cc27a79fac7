// Numbers: conversions between numeric types (make the value, convert, read
// it back), copies and assignments; varion beside the plain C++ that does the
// same work on native variables.
#include "contenders.h"

#include <varion/varion.h>

#include <cstdint>
#include <cstring>
#include <limits>
#include <new>
#include <string>
#include <type_traits>

namespace {

using bench::Add;

// What the conversion gives, for the result column. Kept out of the measured
// loop's function so that the value there shares no storage with it.
template <VARTYPE To, class Source>
[[gnu::noinline]] std::string ConversionResult(Source x) {
    CVarion v(x);
    return v.SetType(To) == RC_OK ? static_cast<CString>(v).ToUtf8() : "fails";
}

// A conversion of a value made from `x`, read back as the target's type.
// With `RuntimeTarget` the target type comes from a variable the compiler
// cannot see through, as when it comes from a device's description; else it
// is the constant it usually is in code, and the conversion folds inline.
// The choice is a template argument so that each loop is compiled as the
// code it stands for, not as one loop with both paths in it.
template <VARTYPE To, class Read, bool RuntimeTarget, class Source>
void Convert(benchmark::State& state, Source x) {
    VARTYPE target = To;
    for (auto _ : state) {
        bench::Launder(x);
        if constexpr (RuntimeTarget) bench::Launder(target);
        CVarion v(x);
        const long code = v.SetType(RuntimeTarget ? target : To);
        const Read back = code == RC_OK ? static_cast<Read>(v) : Read(0);
        bench::Keep(code);
        bench::Keep(back);
    }
    state.SetLabel(ConversionResult<To>(x));
}

// The plain C++ of the same conversions, range check and rounding included.
void CastI4ToR8(benchmark::State& state) {
    int x = bench::kI4Source;
    for (auto _ : state) {
        bench::Launder(x);
        const double back = static_cast<double>(x);
        bench::Keep(back);
    }
}

void CastR8ToI2(benchmark::State& state) {
    double x = bench::kR8ForI2;
    for (auto _ : state) {
        bench::Launder(x);
        const double rounded = x < 0 ? x - 0.5 : x + 0.5;
        const bool fits = rounded > -32769.0 && rounded < 32768.0;
        const short back = fits ? static_cast<short>(rounded) : short(0);
        bench::Keep(fits);
        bench::Keep(back);
    }
}

void CastUI8ToI8(benchmark::State& state) {
    unsigned long long x = bench::kUI8AboveI8;
    for (auto _ : state) {
        bench::Launder(x);
        const bool fits = x <= static_cast<unsigned long long>(std::numeric_limits<long long>::max());
        bench::Keep(fits);
        if (fits) {
            const long long back = static_cast<long long>(x);
            bench::Keep(back);
        }
    }
    state.SetLabel("fails");
}

// A value read through a conversion operator.
template <class Read>
void ReadAs(benchmark::State& state, const CVarion& v) {
    for (auto _ : state) {
        const Read r = v;
        bench::Keep(r);
    }
}

// ---- copies -------------------------------------------------------------

struct Raw16 {
    unsigned char bytes[16];
};

// The copy constructor alone, into storage that is never destroyed (a value
// without content needs no destructor).
void ConstructCopy(benchmark::State& state, CVarion source) {
    alignas(CVarion) unsigned char slot[sizeof(CVarion)];
    for (auto _ : state) {
        bench::Launder(source);
        new (slot) CVarion(source);
        bench::Keep(slot);
    }
}

void Copy16Bytes(benchmark::State& state) {
    Raw16 source{};
    source.bytes[0] = VT_R8;
    for (auto _ : state) {
        bench::Launder(source);
        Raw16 copy = source;
        bench::Keep(copy);
    }
}

void CopyString(benchmark::State& state, OleString source) {
    for (auto _ : state) {
        bench::Launder(source);
        OleString copy(source);
        bench::Keep(copy);
    }
}

[[maybe_unused]] const bool registered = bench::Register([] {
    // The conversions with the target type a constant, then from a variable.
    const auto conversions = [](auto runtime) {
        constexpr bool kRuntime = decltype(runtime)::value;
        const char* varion = kRuntime ? "varion, target type at run time" : "varion";
        Add("numeric", "VT_I4 to VT_R8", varion,
            [](auto& s) { Convert<VT_R8, double, kRuntime>(s, bench::kI4Source); });
        Add("numeric", "VT_R8 to VT_I2", varion,
            [](auto& s) { Convert<VT_I2, short, kRuntime>(s, bench::kR8ForI2); });
        Add("numeric", "VT_UI8 to VT_I8 (fails)", varion, [](auto& s) {
            Convert<VT_I8, LONGLONG, kRuntime>(s, static_cast<ULONGLONG>(bench::kUI8AboveI8));
        });
    };
    conversions(std::false_type{});
    conversions(std::true_type{});
    Add("numeric", "VT_I4 to VT_R8", "plain cast", CastI4ToR8);
    Add("numeric", "VT_R8 to VT_I2", "plain cast", CastR8ToI2);
    Add("numeric", "VT_UI8 to VT_I8 (fails)", "plain cast", CastUI8ToI8);
    // varion alone: other pairs and the conversion operators.
    Add("numeric", "VT_R4 to VT_UI1", "varion", [](auto& s) { Convert<VT_UI1, unsigned char, true>(s, 200.25f); });
    Add("numeric", "VT_I8 to VT_BOOL", "varion", [](auto& s) { Convert<VT_BOOL, int, true>(s, 5LL); });
    Add("numeric", "VT_R8 read as long", "varion", [v = CVarion(2.5)](auto& s) { ReadAs<long>(s, v); });
    Add("numeric", "VT_I4 read as double", "varion", [v = CVarion(42)](auto& s) { ReadAs<double>(s, v); });

    const CVarion real(2.5);
    const CVarion text(bench::kString32);
    const OleString wide(CString(bench::kString32).View());
    Add("copy", "copy VT_R8 (the copy constructor)", "varion", [real](auto& s) { ConstructCopy(s, real); });
    Add("copy", "copy VT_R8 (the copy constructor)", "16-byte copy", Copy16Bytes);
    Add("copy", "copy and destroy VT_R8", "varion", [real](auto& s) { bench::Copy(s, real); });
    Add("copy", "copy and destroy VT_R8", "16-byte copy", Copy16Bytes);
    Add("copy", "assign VT_R8", "varion", [real](auto& s) { bench::Assign(s, real); });
    Add("copy", "assign VT_R8", "16-byte copy", Copy16Bytes);
    Add("copy", "copy and destroy VT_BSTR of 32 characters", "varion", [text](auto& s) { bench::Copy(s, text); });
    Add("copy", "copy and destroy VT_BSTR of 32 characters", "std::u16string",
        [wide](auto& s) { CopyString(s, wide); });
    Add("copy", "assign VT_BSTR of 32 characters", "varion", [text](auto& s) { bench::Assign(s, text); });
});

}  // namespace
