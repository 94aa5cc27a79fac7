// The inputs of each measured operation, shared by the benchmarks of varion,
// of its peers and of the floors, and by the instruction-count driver, so that
// every contender works on the same values and texts.
#pragma once

#include <charconv>
#include <string>

namespace bench {

/// Numeric conversions: VT_I4 to VT_R8, VT_R8 to VT_I2 (range-checked and
/// rounded), VT_UI8 to VT_I8 (above the range: fails).
inline constexpr int kI4Source = 123456;
inline constexpr double kR8ForI2 = 1234.5;
inline constexpr unsigned long long kUI8AboveI8 = ~0ULL;

/// A number text, as the value holds it and as std::from_chars reads it (the
/// same digits with "." as separator, without a base prefix).
struct NumberText {
    const char* text;
    const char* digits;
    int base;
};

inline constexpr NumberText kTextsToR8[] = {
    {"12.5", "12.5", 10},
    {"12,5", "12.5", 10},
    {"-1.25e3", "-1.25e3", 10},
    {"0.000123456789012345", "0.000123456789012345", 10},
};

inline constexpr NumberText kTextsToI4[] = {
    {"42", "42", 10},
    {"0x1F", "1F", 16},
    {"-2147483648", "-2147483648", 10},
};

/// Doubles written as text.
inline constexpr double kR8ToText[] = {12.5, 1234567.891, 1e-7};

/// A string of 32 characters, for copies and assignments.
inline constexpr const char* kString32 = "pressure transmitter PT-101 (A3)";
static_assert(std::char_traits<char>::length(kString32) == 32);

/// Display formats: "%.2f" of a VT_R8, "%X" of two VT_I4 values (a short
/// text and one of ten characters).
inline constexpr double kDisplayReal = 3.14159;
inline constexpr int kDisplaySmall = 31;
inline constexpr int kDisplayLarge = 0x1F2E3D4C;

/// UnitConvert: bar (7) to psi (6).
inline constexpr short kBar = 7;
inline constexpr short kPsi = 6;
inline constexpr double kPressure = 2.5;

/// Dates: 2026-11-17 20:18:38.250, its ISO text, and the de-DE user locale
/// FormatDateTime writes in.
struct Instant {
    int year, month, day, hour, minute, second, millisecond;
};
inline constexpr Instant kInstant = {2026, 11, 17, 20, 18, 38, 250};
inline constexpr const char* kIsoText = "2026-11-17T20:18:38.250";
inline constexpr const char* kUserLocale = "de_DE.UTF-8";

/// Operation names: ("12,5", "to VT_R8") gives "\"12,5\" to VT_R8",
/// ("VT_R8", 12.5, "to text") gives "VT_R8 12.5 to text".
inline std::string TextOperation(const NumberText& input, const char* what) {
    return "\"" + std::string(input.text) + "\" " + what;
}
inline std::string ValueOperation(const char* type, double value, const char* what) {
    char digits[32];
    const auto r = std::to_chars(digits, digits + sizeof digits, value);
    return std::string(type) + " " + std::string(digits, r.ptr) + " " + what;
}

}  // namespace bench
