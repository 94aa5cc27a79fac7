// Helpers shared by the test suites.
#pragma once

#include <varion/varion.h>

#include <array>
#include <string>

namespace varion::test {

/// The 16 bytes of a value, for byte-for-byte comparisons.
std::array<unsigned char, 16> Bytes(const CVarion& v);
/// UTF-8 text of a CString or a BSTR, for readable assertions.
std::string Utf8(const CString& s);
std::string Utf8(BSTR s);

/// An interface object that only counts its references.
struct CountingUnknown : IUnknown {
    ULONG refs = 1;
    virtual ~CountingUnknown() = default;
    HRESULT QueryInterface(const IID&, void** out) override {
        *out = nullptr;
        return E_NOTIMPL;
    }
    ULONG AddRef() override { return ++refs; }
    ULONG Release() override { return --refs; }
};

/// Heap allocations (operator new, every form) made on any thread since start.
long AllocationCount();

/// Switches the C library's LC_NUMERIC (or another category) to a locale
/// built for the tests ("de_DE.UTF-8", "en_US.UTF-8") or to "C", and back on
/// destruction. Fails the test (never skips) when the locale is missing.
class ScopedCLocale {
public:
    explicit ScopedCLocale(const char* name, int category = -1);
    ~ScopedCLocale();
    ScopedCLocale(const ScopedCLocale&) = delete;
    ScopedCLocale& operator=(const ScopedCLocale&) = delete;
    bool ok() const { return m_ok; }

private:
    int m_category;
    std::string m_previous;
    bool m_ok = false;
};

/// Sets an environment variable for the scope and restores it.
class ScopedEnv {
public:
    ScopedEnv(const char* name, const char* value);
    ~ScopedEnv();
    ScopedEnv(const ScopedEnv&) = delete;
    ScopedEnv& operator=(const ScopedEnv&) = delete;

private:
    std::string m_name;
    std::string m_previous;
    bool m_had = false;
};

/// Runs a command line with /bin/sh; answers its exit status and fills `output`
/// with its standard output (and standard error when `withStderr`).
int RunCommand(const std::string& command, std::string& output, bool withStderr = false);

}  // namespace varion::test
