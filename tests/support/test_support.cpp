#include "support/test_support.h"

#include <gtest/gtest.h>

#include <atomic>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <sys/wait.h>

namespace {
std::atomic<long> g_allocations{0};
}

// A counting allocator for the whole test program: tests read the count
// around the code under test to prove it allocates nothing.
void* operator new(std::size_t size) {
    ++g_allocations;
    if (void* p = std::malloc(size == 0 ? 1 : size)) return p;
    throw std::bad_alloc();
}
void* operator new[](std::size_t size) { return ::operator new(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    ++g_allocations;
    return std::malloc(size == 0 ? 1 : size);
}
void* operator new[](std::size_t size, const std::nothrow_t& tag) noexcept { return ::operator new(size, tag); }
void operator delete(void* p) noexcept { std::free(p); }
void operator delete[](void* p) noexcept { std::free(p); }
void operator delete(void* p, std::size_t) noexcept { std::free(p); }
void operator delete[](void* p, std::size_t) noexcept { std::free(p); }
void operator delete(void* p, const std::nothrow_t&) noexcept { std::free(p); }
void operator delete[](void* p, const std::nothrow_t&) noexcept { std::free(p); }

namespace varion::test {

std::array<unsigned char, 16> Bytes(const CVarion& v) {
    std::array<unsigned char, 16> b{};
    std::memcpy(b.data(), &v, sizeof(v));
    return b;
}

std::string Utf8(const CString& s) { return s.ToUtf8(); }
std::string Utf8(BSTR s) { return CString(OleStringView(s == nullptr ? OLESTR("") : s, SysStringLen(s))).ToUtf8(); }

long AllocationCount() { return g_allocations.load(); }

ScopedCLocale::ScopedCLocale(const char* name, int category) : m_category(category < 0 ? LC_NUMERIC : category) {
    if (const char* prev = std::setlocale(m_category, nullptr)) m_previous = prev;
    setenv("LOCPATH", VARION_TEST_LOCPATH, 1);
    m_ok = std::setlocale(m_category, name) != nullptr;
    EXPECT_TRUE(m_ok) << "test locale " << name << " is missing from " << VARION_TEST_LOCPATH;
}

ScopedCLocale::~ScopedCLocale() { std::setlocale(m_category, m_previous.empty() ? "C" : m_previous.c_str()); }

ScopedEnv::ScopedEnv(const char* name, const char* value) : m_name(name) {
    if (const char* prev = std::getenv(name)) {
        m_had = true;
        m_previous = prev;
    }
    if (value != nullptr)
        setenv(name, value, 1);
    else
        unsetenv(name);
}

ScopedEnv::~ScopedEnv() {
    if (m_had)
        setenv(m_name.c_str(), m_previous.c_str(), 1);
    else
        unsetenv(m_name.c_str());
}

int RunCommand(const std::string& command, std::string& output, bool withStderr) {
    output.clear();
    const std::string line = command + (withStderr ? " 2>&1" : "");
    FILE* pipe = popen(line.c_str(), "r");
    if (pipe == nullptr) return -1;
    char buffer[4096];
    std::size_t n = 0;
    while ((n = std::fread(buffer, 1, sizeof(buffer), pipe)) > 0) output.append(buffer, n);
    const int status = pclose(pipe);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace varion::test
