#include "tools/tool_run.h"

#include "support/test_support.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>

namespace tooltest {

ToolRun Varion(const std::string& arguments, const std::string& environment) {
    char errPath[] = "/tmp/varion-tool-test-XXXXXX";
    const int fd = mkstemp(errPath);
    ToolRun run;
    if (fd < 0) return run;
    close(fd);
    run.status = varion::test::RunCommand(std::string("env -u VARION_DEBUG LOCPATH='") + VARION_TEST_LOCPATH +
                                              "' LC_ALL=C TZ=UTC " + environment + " '" + VARION_TOOL_PATH + "' " +
                                              arguments + " 2>" + errPath,
                                          run.out);
    std::ifstream err(errPath, std::ios::binary);
    run.err.assign(std::istreambuf_iterator<char>(err), {});
    std::remove(errPath);
    return run;
}

ToolRun VarionArgv(const std::vector<std::string>& arguments, const std::string& environment) {
    std::string line;  // each argument in single quotes, a quote in it as '\''
    for (const std::string& a : arguments) {
        line += " '";
        for (char c : a) line += c == '\'' ? std::string("'\\''") : std::string(1, c);
        line += '\'';
    }
    return Varion(line, environment);
}

void ExpectGolden(std::span<const Golden> cases) {
    for (const Golden& c : cases) {
        SCOPED_TRACE(std::string(c.environment) + " varion " + c.arguments);
        const ToolRun run = Varion(c.arguments, c.environment);
        EXPECT_EQ(run.status, c.status) << run.err;
        EXPECT_EQ(run.out, c.out);
        if (c.status == 0)
            EXPECT_EQ(run.err, "");
        else
            EXPECT_TRUE(!run.err.empty() || !run.out.empty()) << "a failure must say something";
    }
}

std::string JsonErrors(const std::string& text) {
    // Python's json module is the reference reader; it refuses NaN and the
    // infinities only when told to.
    static const char* const kScript =
        "import json, sys\n"
        "def refuse(name): raise ValueError(name)\n"
        "for n, line in enumerate(open(sys.argv[1], \"rb\").read().split(b\"\\n\")[:-1], 1):\n"
        "    try:\n"
        "        if not isinstance(json.loads(line.decode(), parse_constant=refuse), dict):\n"
        "            raise ValueError(\"not an object\")\n"
        "    except Exception as e: print(\"line\", n, e, line[:200])\n";
    char path[] = "/tmp/varion-json-test-XXXXXX";
    const int fd = mkstemp(path);
    if (fd < 0) return "no temporary file";
    const bool written = write(fd, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    close(fd);
    std::string out;
    const int status = varion::test::RunCommand(std::string("python3 -c '") + kScript + "' " + path, out, true);
    std::remove(path);
    return written && status == 0 ? out : "python3 did not run: " + out;
}

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

}  // namespace tooltest
