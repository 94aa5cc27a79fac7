// Shared pieces of the varion command-line tool: argument reading, type names
// and the printing of results. The tool is a thin layer over the public API.
#pragma once

#include <varion/varion.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cli {

/// Exit statuses: 0 success, 1 the library reported a failure, 2 usage error.
enum Exit { kOk = 0, kFailure = 1, kUsage = 2 };

/// The arguments after the subcommand: positionals and --name value options.
class Args {
public:
    Args(int argc, char** argv, int first);
    const std::vector<std::string>& Positionals() const { return m_positionals; }
    /// The value of --name, if given.
    std::optional<std::string> Option(std::string_view name) const;
    bool Flag(std::string_view name) const;
    /// The first argument that is neither a positional nor one of `known`.
    std::optional<std::string> Unknown(const std::vector<std::string_view>& known) const;

private:
    std::vector<std::string> m_positionals;
    std::vector<std::pair<std::string, std::optional<std::string>>> m_options;
};

/// A type code from "VT_I4", "I4", "4", "0x2011" or "UI1_ARRAY" (any case).
std::optional<VARTYPE> ParseType(std::string_view name);
/// "VT_I4", "VTX_DURATION", "VT_UI1|VT_ARRAY", or the number for unknown codes.
std::string TypeName(VARTYPE type);
/// "RC_OK", "RC_ABOVE_MAX", ...
std::string ResultName(long code);
/// The value in the library's own text form (operator CString): "2.5" or
/// "2,5" by the numeric locale, "0x01, 0xAB" for a byte array; empty for a
/// value without one.
std::string ValueText(const CVarion& value);

/// A value of `type` from a command-line text: numbers of that type for the
/// numeric types ("12.5" with '.'), the stored day count for date and duration
/// types, the text itself for VT_BSTR, any other type from its text through
/// SetType (byte arrays from "0x01, 0xAB"). nullopt when it does not read.
std::optional<CVarion> ParseValue(const std::string& text, VARTYPE type);
/// A value whose type follows from the text: VT_I4, VT_I8 or VT_UI8 for an
/// integer, VT_R8 for a decimal number, else VT_BSTR.
std::optional<CVarion> GuessValue(const std::string& text);

/// Prints type, value and result code of a conversion.
void PrintResult(const CVarion& value, long code);
/// Prints "varion: <message>" to standard error and answers kUsage.
int Usage(const std::string& message);

// Subcommands: each answers an exit status.
int Convert(const Args& args);
int Calc(const Args& args);
int Compare(const Args& args);
int Date(const Args& args);
int Duration(const Args& args);
int Demo(const Args& args);
int Format(const Args& args);
int Unit(const Args& args);
int Units(const Args& args);
int Hex(const Args& args);
int Record(const Args& args);

}  // namespace cli
