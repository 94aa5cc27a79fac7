// Helpers shared by the test suites.
#pragma once

#include <varion/varion.h>

#include <array>
#include <string>
#include <vector>

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
/// The operator new allocations one new BSTR makes: the stand-ins take their
/// strings from operator new; Windows from its task allocator, which
/// AllocationCount does not see.
#if defined(_WIN32)
constexpr long kNewPerString = 0;
#else
constexpr long kNewPerString = 1;
#endif

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

/// A locale the date tests render and parse in: its identifier and the
/// environment's name for it ("" for the invariant locale).
struct TestLocale {
    LCID lcid;
    const char* name;
};
/// The rows of the library's locale table: invariant, en-US, en-GB, de-DE,
/// de-AT, de-CH, fr-FR, it-IT, es-ES, nl-NL.
extern const TestLocale kTestLocales[10];

/// Makes `name` ("de_DE.UTF-8", "en_US.UTF-8", "C") the user's locale of
/// the Automation services for the scope, through LC_ALL, and restores it.
/// Windows takes the user's locale from the system, which a process cannot
/// change: there the scope changes nothing, and Active() tells whether the
/// system's user locale is the one named ("C" never is; the Windows test
/// runs start the programs with de-DE).
class ScopedUserLocale {
public:
    explicit ScopedUserLocale(const char* name);
    ~ScopedUserLocale();
    ScopedUserLocale(const ScopedUserLocale&) = delete;
    ScopedUserLocale& operator=(const ScopedUserLocale&) = delete;
    bool Active() const { return m_active; }

private:
    std::string m_previous;
    bool m_had = false;
    bool m_active = false;
};

/// Skips the rest of the test where the user's locale cannot be the one the
/// scope names.
#define VARION_REQUIRE_USER_LOCALE(scope) \
    if (!(scope).Active()) GTEST_SKIP() << "the system's user locale is not the one this test needs"

/// The user locales a test can run under: every table locale where the
/// environment chooses it; on Windows the system's alone (null: leave it).
std::vector<const char*> ChoosableUserLocales();

/// Wraps an assertion about an argument that the stand-ins refuse and the
/// system's services on Windows do not check: a null pointer (read through
/// there) or a length whose byte count overflows 32 bits (Wine allocates
/// the wrapped-around size). The library itself never passes such arguments.
#if defined(_WIN32)
#define VARION_STANDIN_ONLY(...) static_cast<void>(0)
#else
#define VARION_STANDIN_ONLY(...) __VA_ARGS__
#endif

/// Skips a test whose oracle is the GNU C library's printf or strftime: the
/// C runtimes of other platforms write some corner cases differently (Windows'
/// runtimes, for one, "%#.0o" of 0 as "").
#if defined(__GLIBC__)
#define VARION_REQUIRE_GLIBC_ORACLE() static_cast<void>(0)
#else
#define VARION_REQUIRE_GLIBC_ORACLE() GTEST_SKIP() << "the oracle is the GNU C library"
#endif

/// The text of a date that depends on a locale's data: `standIn` where the
/// stand-ins serve (their table holds Windows' patterns); on Windows the
/// system's own short date and long time of `value` in `lcid`
/// (GetDateFormatW, GetTimeFormatW, joined by a blank), whose data differ
/// between Windows versions and Wine (Wine's de-DE short date is d.M.yyyy).
/// `parts`: 3 date and time, 1 the date alone, 2 the time alone.
std::string LocaleText(const char* standIn, double value, LCID lcid = LOCALE_USER_DEFAULT, int parts = 3);

/// Whether the Automation services are the library's stand-ins (everywhere
/// but Windows). Rows of a table that describe the stand-ins where the
/// system's services differ run only there.
#if defined(_WIN32)
constexpr bool kStandInServices = false;
#else
constexpr bool kStandInServices = true;
#endif

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

#if !defined(_WIN32)
/// Runs a command line with /bin/sh; answers its exit status and fills `output`
/// with its standard output (and standard error when `withStderr`). Only
/// where there is a POSIX shell.
int RunCommand(const std::string& command, std::string& output, bool withStderr = false);
#endif

}  // namespace varion::test
