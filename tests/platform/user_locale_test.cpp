// The user's locale is found in one pass over the environment, and the row
// of the last name seen is remembered: the pass must find exactly what
// getenv finds, and nothing the environment says may be missed because a row
// was remembered.
#include "platform/locales.h"
#include "support/test_support.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>

using varion::detail::LocaleFromLcid;
using varion::detail::UserLocale;
using varion::test::ScopedEnv;

#if !defined(_WIN32)  // Windows takes the user's locale from the system
namespace {

std::string UserRow() { return UserLocale().name; }

TEST(UserLocaleName, TheFirstNonEmptyOfThreeVariablesNamesTheRow) {
    const struct {
        const char* variable;
        const char* value;
        const char* row;  // "" is the invariant row
    } cases[] = {
        // Look-alike names are other variables; empty values are skipped.
        {"LANGUAGE", "de_DE.UTF-8", "en-US"}, {"LC_ALLX", "de_DE.UTF-8", "en-US"}, {"LC_TIMEZONE", "de_DE.UTF-8", "en-US"},
        {"LC_ALL", "", "en-US"}, {"LC_TIME", "de_DE.UTF-8", "de-DE"}, {"LC_TIME", "de-DE", "de-DE"},
        {"LC_ALL", "fr_FR.UTF-8", "fr-FR"}, {"LC_ALL", "de_DE@euro", "de-DE"}, {"LANG", "en_GB", "en-GB"},
        {"LANG", "de_LU.UTF-8", "de-DE"},  // unknown country: its language
        {"LANG", "C", ""}, {"LANG", "POSIX", ""}, {"LANG", "C.UTF-8", ""}, {"LANG", "ja_JP.UTF-8", ""},
        {"LANG", "", ""},  // unknown language or nothing: invariant
    };
    ScopedEnv all("LC_ALL", nullptr);
    ScopedEnv time("LC_TIME", nullptr);
    ScopedEnv lang("LANG", "en_US.UTF-8");
    ASSERT_EQ(UserRow(), "en-US");
    for (const auto& c : cases) {
        ScopedEnv set(c.variable, c.value);
        EXPECT_EQ(UserRow(), c.row) << c.variable << "=" << c.value;
    }
    EXPECT_EQ(UserRow(), "en-US");  // every variable put back
    ScopedEnv byTime("LC_TIME", "fr_FR.UTF-8");  // LC_ALL wins over LC_TIME, which wins over LANG
    EXPECT_EQ(UserRow(), "fr-FR");
    ScopedEnv byAll("LC_ALL", "de_DE.UTF-8");
    EXPECT_EQ(UserRow(), "de-DE");
}

// The default identifiers take the user's row; a given identifier is its own row whatever the user's.
TEST(UserLocaleName, TheDefaultIdentifiersFollowTheEnvironment) {
    const auto row = [](LCID lcid) { return LocaleFromLcid(lcid) != nullptr ? LocaleFromLcid(lcid)->name : "<none>"; };
    ScopedEnv all("LC_ALL", "fr_FR.UTF-8");
    for (LCID lcid : {LCID(0), LOCALE_USER_DEFAULT, LOCALE_SYSTEM_DEFAULT}) EXPECT_STREQ(row(lcid), "fr-FR") << lcid;
    EXPECT_STREQ(row(0x0407), "de-DE");
}

TEST(UserLocaleName, EveryChangeIsSeenWhateverWasRemembered) {
    ScopedEnv all("LC_ALL", nullptr);
    ScopedEnv time("LC_TIME", nullptr);
    ScopedEnv lang("LANG", "de_DE.UTF-8");
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(UserRow(), "de-DE");
        {
            ScopedEnv english("LANG", "en_GB.UTF-8");
            EXPECT_EQ(UserRow(), "en-GB");
        }
        EXPECT_EQ(UserRow(), "de-DE");
        // A name longer than the remembered ones is matched every time.
        ScopedEnv longName("LANG", "nl_NL.UTF-8@a-modifier-long-enough-not-to-be-remembered");
        EXPECT_EQ(UserRow(), "nl-NL");
    }
    // A string given to putenv stays the environment's: changed in place, the
    // environment changes with it.
    static char entry[] = "LC_ALL=it_IT.UTF-8";
    ASSERT_EQ(putenv(entry), 0);
    EXPECT_EQ(UserRow(), "it-IT");
    std::memcpy(entry + 7, "es", 2);
    EXPECT_EQ(UserRow(), "es-ES");
    std::memcpy(entry, "XC", 2);  // renamed in place: LC_ALL is gone
    EXPECT_EQ(UserRow(), "de-DE");
    std::memcpy(entry, "LC", 2);
    unsetenv("LC_ALL");
    EXPECT_EQ(UserRow(), "de-DE");
}

}  // namespace
#endif
