#include "tools/tool_run.h"

#include "support/test_support.h"

#include <gtest/gtest.h>

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <poll.h>
#include <spawn.h>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace tooltest {
namespace {

// The environment of a run: this process's, with the tool's diagnostics
// off, the test locales reachable, LC_ALL=C and TZ=UTC, then `extra`
// ("NAME=value" words separated by spaces).
std::vector<std::string> Environment(const std::string& extra) {
    std::vector<std::string> env;
    for (char** e = environ; *e != nullptr; ++e) {
        const std::string entry(*e);
        const std::string name = entry.substr(0, entry.find('='));
        if (name != "VARION_DEBUG" && name != "LC_ALL" && name != "TZ" && name != "LOCPATH") env.push_back(entry);
    }
    env.push_back(std::string("LOCPATH=") + VARION_TEST_LOCPATH);
    env.push_back("LC_ALL=C");
    env.push_back("TZ=UTC");
    std::istringstream words(extra);
    for (std::string word; words >> word;) env.push_back(word);
    return env;
}

std::vector<char*> Pointers(std::vector<std::string>& strings) {
    std::vector<char*> pointers;
    for (std::string& s : strings) pointers.push_back(s.data());
    pointers.push_back(nullptr);
    return pointers;
}

// Reads both pipes until the child closes them.
void Drain(int outFd, int errFd, ToolRun& run) {
    pollfd fds[2] = {{outFd, POLLIN, 0}, {errFd, POLLIN, 0}};
    std::string* sinks[2] = {&run.out, &run.err};
    int open = 2;
    while (open > 0) {
        if (poll(fds, 2, -1) < 0) break;
        for (int k = 0; k < 2; ++k) {
            if (fds[k].fd < 0 || fds[k].revents == 0) continue;
            char buffer[65536];
            const ssize_t n = read(fds[k].fd, buffer, sizeof(buffer));
            if (n > 0) {
                sinks[k]->append(buffer, static_cast<std::size_t>(n));
            } else {
                close(fds[k].fd);
                fds[k].fd = -1;
                --open;
            }
        }
    }
}

std::string ReadFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

// A JSON reader that only checks: objects, arrays, strings (escapes and
// UTF-8), numbers and the three literals.
class JsonChecker {
public:
    explicit JsonChecker(const std::string& text) : m_text(text) {}

    std::string Check() {
        Space();
        if (Peek() != '{') return "not an object";
        if (!Value(0)) return m_error + " at byte " + std::to_string(m_at);
        Space();
        if (m_at != m_text.size()) return "text after the object at byte " + std::to_string(m_at);
        return {};
    }

private:
    char Peek() const { return m_at < m_text.size() ? m_text[m_at] : '\0'; }
    void Space() {
        while (Peek() == ' ' || Peek() == '\t') ++m_at;
    }
    bool Fail(const char* what) {
        m_error = what;
        return false;
    }
    bool Literal(const char* word) {
        const std::string w(word);
        if (m_text.compare(m_at, w.size(), w) != 0) return Fail("bad literal");
        m_at += w.size();
        return true;
    }
    bool Digits() {
        const std::size_t start = m_at;
        while (Peek() >= '0' && Peek() <= '9') ++m_at;
        return m_at > start;
    }
    bool Number() {
        if (Peek() == '-') ++m_at;
        if (Peek() == '0')
            ++m_at;
        else if (!Digits())
            return Fail("bad number");
        if (Peek() == '.' && (++m_at, !Digits())) return Fail("bad fraction");
        if (Peek() == 'e' || Peek() == 'E') {
            ++m_at;
            if (Peek() == '+' || Peek() == '-') ++m_at;
            if (!Digits()) return Fail("bad exponent");
        }
        return true;
    }
    bool Utf8() {
        const auto lead = static_cast<unsigned char>(Peek());
        int more = lead >= 0xF0 && lead <= 0xF4 ? 3 : lead >= 0xE0 ? 2 : lead >= 0xC2 && lead <= 0xDF ? 1 : -1;
        if (more < 0) return Fail("invalid UTF-8 lead byte");
        unsigned code = lead & (0x3F >> more);
        for (++m_at; more > 0; --more, ++m_at) {
            const auto c = static_cast<unsigned char>(Peek());
            if ((c & 0xC0) != 0x80) return Fail("invalid UTF-8 continuation");
            code = code << 6 | (c & 0x3F);
        }
        if ((code >= 0xD800 && code <= 0xDFFF) || code > 0x10FFFF) return Fail("invalid code point");
        return true;
    }
    bool String() {
        ++m_at;  // the opening quote
        while (Peek() != '"') {
            const auto c = static_cast<unsigned char>(Peek());
            if (m_at >= m_text.size()) return Fail("unterminated string");
            if (c < 0x20) return Fail("raw control character in a string");
            if (c == '\\') {
                ++m_at;
                const char e = Peek();
                if (e == 'u') {
                    for (std::size_t k = 1; k <= 4; ++k)
                        if (!std::isxdigit(static_cast<unsigned char>(m_at + k < m_text.size() ? m_text[m_at + k] : 0)))
                            return Fail("bad \\u escape");
                    m_at += 5;
                } else if (std::string("\"\\/bfnrt").find(e) != std::string::npos && e != '\0') {
                    ++m_at;
                } else {
                    return Fail("bad escape");
                }
            } else if (c < 0x80) {
                ++m_at;
            } else if (!Utf8()) {
                return false;
            }
        }
        ++m_at;
        return true;
    }
    template <class Item>
    bool Sequence(char close, Item item) {
        ++m_at;
        Space();
        if (Peek() == close) return ++m_at, true;
        for (;;) {
            if (!item()) return false;
            Space();
            if (Peek() == close) return ++m_at, true;
            if (Peek() != ',') return Fail("expected ',' or the closing bracket");
            ++m_at;
            Space();
        }
    }
    bool Value(int depth) {
        if (depth > 64) return Fail("nested too deeply");
        Space();
        switch (Peek()) {
        case '{':
            return Sequence('}', [&] {
                if (Peek() != '"') return Fail("expected a member name");
                if (!String()) return false;
                Space();
                if (Peek() != ':') return Fail("expected ':'");
                ++m_at;
                return Value(depth + 1);
            });
        case '[': return Sequence(']', [&] { return Value(depth + 1); });
        case '"': return String();
        case 't': return Literal("true");
        case 'f': return Literal("false");
        case 'n': return Literal("null");
        default: return Number();
        }
    }

    const std::string& m_text;
    std::size_t m_at = 0;
    std::string m_error;
};

}  // namespace

ToolRun Varion(const std::string& arguments, const std::string& environment) {
    char errPath[] = "/tmp/varion-tool-test-XXXXXX";
    const int fd = mkstemp(errPath);
    ToolRun run;
    if (fd < 0) return run;
    close(fd);
    const std::string command = std::string("env -u VARION_DEBUG LOCPATH='") + VARION_TEST_LOCPATH +
                                "' LC_ALL=C TZ=UTC " + environment + " '" + VARION_TOOL_PATH + "' " + arguments +
                                " 2>" + errPath;
    run.status = varion::test::RunCommand(command, run.out);
    run.err = ReadFile(errPath);
    std::remove(errPath);
    return run;
}

ToolRun VarionArgv(const std::vector<std::string>& arguments, const std::string& environment) {
    ToolRun run;
    std::vector<std::string> argv = {VARION_TOOL_PATH};
    argv.insert(argv.end(), arguments.begin(), arguments.end());
    std::vector<std::string> env = Environment(environment);
    std::vector<char*> argvPointers = Pointers(argv);
    std::vector<char*> envPointers = Pointers(env);
    int out[2];
    int err[2];
    if (pipe2(out, O_CLOEXEC) != 0) return run;
    if (pipe2(err, O_CLOEXEC) != 0) {
        close(out[0]);
        close(out[1]);
        return run;
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, out[1], 1);
    posix_spawn_file_actions_adddup2(&actions, err[1], 2);
    pid_t pid = -1;
    const int spawned = posix_spawn(&pid, argv[0].c_str(), &actions, nullptr, argvPointers.data(), envPointers.data());
    posix_spawn_file_actions_destroy(&actions);
    close(out[1]);
    close(err[1]);
    if (spawned != 0) {
        close(out[0]);
        close(err[0]);
        return run;
    }
    Drain(out[0], err[0], run);
    int status = 0;
    if (waitpid(pid, &status, 0) == pid && WIFEXITED(status)) run.status = WEXITSTATUS(status);
    return run;
}

void ExpectGolden(std::span<const Golden> cases) {
    for (const Golden& c : cases) {
        SCOPED_TRACE(std::string(c.environment) + " varion " + c.arguments);
        const ToolRun run = Varion(c.arguments, c.environment);
        EXPECT_EQ(run.status, c.status) << run.err;
        EXPECT_EQ(run.out, c.out);
        if (c.status == 0) {
            EXPECT_EQ(run.err, "");
        } else {
            EXPECT_TRUE(!run.err.empty() || !run.out.empty()) << "a failure must say something";
        }
    }
}

std::string JsonObjectError(const std::string& line) { return JsonChecker(line).Check(); }

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::size_t start = 0;
    while (start < text.size()) {
        const std::size_t end = text.find('\n', start);
        lines.push_back(text.substr(start, end == std::string::npos ? std::string::npos : end - start));
        if (end == std::string::npos) break;
        start = end + 1;
    }
    return lines;
}

}  // namespace tooltest
