// Running the varion tool from the tests, and checking what it prints.
#pragma once

#include <span>
#include <string>
#include <vector>

namespace tooltest {

/// What one run of the tool left: its exit status (-1 when it did not exit
/// normally, a signal for instance), standard output and standard error.
struct ToolRun {
    int status = -1;
    std::string out;
    std::string err;
};

/// Runs the tool with `arguments` as a shell would split them, under
/// LC_ALL=C and TZ=UTC (or the assignments in `environment`, which come
/// later and win), with the test locales reachable through LOCPATH.
ToolRun Varion(const std::string& arguments, const std::string& environment = "");
/// Runs the tool with each argument passed as it is (any bytes but zero).
ToolRun VarionArgv(const std::vector<std::string>& arguments, const std::string& environment = "");

/// One run and what it must print on standard output, exactly.
struct Golden {
    const char* arguments;
    int status;
    const char* out;
    const char* environment = "";
};
/// Runs every case and compares status and standard output; a success
/// prints nothing on standard error, a failure prints something somewhere.
void ExpectGolden(std::span<const Golden> cases);

/// Empty when every line of `text` is one well-formed JSON object in valid
/// UTF-8, else the lines that are not and what is wrong with them.
std::string JsonErrors(const std::string& text);
/// The lines of a text, without their line ends.
std::vector<std::string> Lines(const std::string& text);

}  // namespace tooltest
