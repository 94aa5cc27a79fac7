// Shared pieces of the varion command-line tool: the command table, argument
// reading, type names, the one value reader and the printing of results as
// text or as JSON. The tool is a thin layer over the public API.
#pragma once

#include <varion/varion.h>

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace cli {

/// Exit statuses: 0 success, 1 the library reported a failure, 2 usage error.
enum Exit { kOk = 0, kFailure = 1, kUsage = 2 };

/// An option a command accepts: --name, followed by a value when `takesValue`.
struct Option {
    const char* name;
    bool takesValue;
};

/// The arguments after the command name.
class Args {
public:
    /// Reads argv[first] to argv[argc - 1]: "--name VALUE", "--name=VALUE",
    /// flags and positionals; "--" ends the options and "-h" is --help.
    /// Every command also takes --help, --json and --locale NAME. Answers
    /// false with `error` naming the argument for an unknown option, a
    /// missing value or a value given to a flag.
    bool Parse(int argc, char** argv, int first, std::span<const Option> options, std::string& error);

    const std::vector<std::string>& Positionals() const { return m_positionals; }
    /// The value of --name, if it was given (the last one wins).
    std::optional<std::string> Value(std::string_view name) const;
    /// Whether --name was given.
    bool Flag(std::string_view name) const;
    /// --json: results as JSON objects.
    bool Json() const { return Flag("json"); }

private:
    std::vector<std::string> m_positionals;
    std::vector<std::pair<std::string, std::string>> m_options;
};

/// One subcommand: its name, one-line summary, help text (usage, meaning and
/// at least one "example: varion ..." line that runs as it stands), the
/// options it takes besides the common ones, and its body, which answers an
/// exit status.
struct Command {
    const char* name;
    const char* summary;
    const char* help;
    std::span<const Option> options;
    int (*run)(const Args&);
};

extern const Command kConvertCommand;
extern const Command kFormatCommand;
extern const Command kCalcCommand;
extern const Command kCompareCommand;
extern const Command kUnitCommand;
extern const Command kUnitsCommand;
extern const Command kDateCommand;
extern const Command kDurationCommand;
extern const Command kRecordCommand;
extern const Command kHexCommand;
extern const Command kDdtypeCommand;
extern const Command kDemoCommand;

// ---------------------------------------------------------------------------
// Types and values
// ---------------------------------------------------------------------------

/// A type code from "VT_I4", "I4", "4", "0x2011", "UI1_ARRAY" or
/// "VT_UI1|VT_ARRAY" (any case); nullopt for anything else.
std::optional<VARTYPE> ParseType(std::string_view name);
/// "VT_I4", "VTX_DURATION", "VT_UI1|VT_ARRAY", or the number for unknown codes.
std::string TypeName(VARTYPE type);
/// "RC_OK", "RC_ABOVE_MAX", "RC_UNIT_NO_TARGET", ..., or "RC_<n>".
std::string ResultName(long code);
/// The value in the library's own text form (operator CString): "2.5" or
/// "2,5" by the numeric locale, "0x01, 0xAB" for a byte array; empty for a
/// value without one.
std::string ValueText(const CVarion& value);

/// A whole decimal number ("+" allowed) from `min` to `max`; nullopt otherwise.
std::optional<long long> ParseInteger(std::string_view text, long long min, long long max);

/// The day count a date or duration value holds (days since 1899-12-30 for
/// date-times, the length in days for durations).
double DayCount(const CVarion& value);
/// A value of date or duration type `type` holding exactly `days`.
CVarion DayCountValue(VARTYPE type, double days);

/// A value of `type` from a command-line text, read in this order:
///  1. plainly: "" for VT_EMPTY; the text itself for VT_BSTR; true, false, 1
///     or 0 for VT_BOOL; a decimal integer that fits an integer type as it
///     stands; a decimal number with '.' (also inf, nan) for VT_R4 and VT_R8;
///     the stored day count (a decimal number) for date and duration types;
///  2. otherwise as the library reads a string into `type` (SetType from
///     VT_BSTR): "0x1F", "12,5", "17.11.2026", "PT90.5S", "0x01, 0xAB", ...
/// nullopt when neither reads.
std::optional<CVarion> ParseValue(const std::string& text, VARTYPE type);
/// A value whose type follows from the text's look: VT_I4, VT_I8 or VT_UI8
/// for an integer, VT_R8 for a decimal number, else VT_BSTR.
std::optional<CVarion> GuessValue(const std::string& text);

/// The text of an argument for a message: control characters escaped and a
/// long text shortened, so that the message stays on one line.
std::string Quoted(std::string_view text);

// ---------------------------------------------------------------------------
// Arguments shared by the commands; each answers nullopt after printing a
// usage error (its status left in `status`).
// ---------------------------------------------------------------------------

/// Prints "varion: <command>: <message>" to standard error; answers kUsage.
int Usage(std::string_view command, const std::string& message);
/// Checks that there are `min` to `max` positionals, named by `names` in the
/// message for missing ones ("VALUE", "A OP B").
bool CheckPositionals(const Args& args, std::string_view command, std::size_t min, std::size_t max,
                      const char* names, int& status);
/// The type named by --`option`; `fallback` when the option is not given
/// (a usage error when there is no fallback).
std::optional<VARTYPE> TypeArgument(const Args& args, std::string_view command, std::string_view option,
                                    std::optional<VARTYPE> fallback, int& status);
/// ParseValue of `text`, or a usage error naming it.
std::optional<CVarion> ValueArgument(std::string_view command, const std::string& text, VARTYPE type, int& status);
/// A whole number from `min` to `max` given as `what`, or a usage error.
std::optional<long long> IntegerArgument(std::string_view command, const std::string& text, const char* what,
                                         long long min, long long max, int& status);

// ---------------------------------------------------------------------------
// Results
// ---------------------------------------------------------------------------

/// `text` as a JSON string literal: quotes, backslashes and control
/// characters escaped, invalid UTF-8 replaced by U+FFFD.
std::string JsonString(std::string_view text);
/// `x` as a JSON number in its shortest exact form; null when not finite.
std::string JsonReal(double x);

/// One result of a command: a type, the value's text and the code the
/// library answered, with members of the command's own. Printed as aligned
/// "label: text" lines (type, value and code first), or with --json as one
/// JSON object on one line: {"type":3,"type_name":"VT_I4","value":"3",
/// "code":0,"code_name":"RC_OK", ...}.
class Report {
public:
    Report(const CVarion& value, long code);
    Report(VARTYPE type, std::string valueText, long code);

    /// A member of both forms; with an empty label it appears in JSON only.
    Report& Add(std::string key, std::string text, std::string label = {});
    Report& Add(std::string key, long long number, std::string label = {});
    /// A floating member (null in JSON when not finite).
    Report& AddReal(std::string key, double number, std::string label = {});
    /// A line of the text form only.
    Report& Line(std::string label, std::string text);
    /// Text after the code in the text form: "RC_OK (0): converted".
    Report& Meaning(std::string text);

    void Print(bool json) const;
    long Code() const { return m_code; }
    /// kFailure for a negative code, else kOk.
    int Status() const { return m_code < 0 ? kFailure : kOk; }

private:
    struct Member {
        std::string key;    // empty: text form only
        std::string json;   // the JSON value as written
        std::string label;  // empty: JSON only
        std::string text;
    };
    VARTYPE m_type;
    std::string m_value;
    long m_code;
    std::string m_meaning;
    std::vector<Member> m_members;
};

}  // namespace cli
