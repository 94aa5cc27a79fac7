// The locale table and the resolution of the user's locale.
#include "platform/locales.h"

#include <cstdlib>
#include <cstring>
#include <iterator>
#include <string>

#if !defined(_WIN32)
extern char** environ;
#endif

namespace varion::detail {
namespace {

// clang-format off
constexpr LocaleNames kEnglish = {
    {OLESTR("January"), OLESTR("February"), OLESTR("March"), OLESTR("April"), OLESTR("May"), OLESTR("June"),
     OLESTR("July"), OLESTR("August"), OLESTR("September"), OLESTR("October"), OLESTR("November"), OLESTR("December")},
    {OLESTR("Jan"), OLESTR("Feb"), OLESTR("Mar"), OLESTR("Apr"), OLESTR("May"), OLESTR("Jun"),
     OLESTR("Jul"), OLESTR("Aug"), OLESTR("Sep"), OLESTR("Oct"), OLESTR("Nov"), OLESTR("Dec")},
    {OLESTR("Sunday"), OLESTR("Monday"), OLESTR("Tuesday"), OLESTR("Wednesday"), OLESTR("Thursday"),
     OLESTR("Friday"), OLESTR("Saturday")},
    {OLESTR("Sun"), OLESTR("Mon"), OLESTR("Tue"), OLESTR("Wed"), OLESTR("Thu"), OLESTR("Fri"), OLESTR("Sat")},
};

constexpr LocaleNames kGerman = {
    {OLESTR("Januar"), OLESTR("Februar"), OLESTR("März"), OLESTR("April"), OLESTR("Mai"), OLESTR("Juni"),
     OLESTR("Juli"), OLESTR("August"), OLESTR("September"), OLESTR("Oktober"), OLESTR("November"), OLESTR("Dezember")},
    {OLESTR("Jan"), OLESTR("Feb"), OLESTR("Mär"), OLESTR("Apr"), OLESTR("Mai"), OLESTR("Jun"),
     OLESTR("Jul"), OLESTR("Aug"), OLESTR("Sep"), OLESTR("Okt"), OLESTR("Nov"), OLESTR("Dez")},
    {OLESTR("Sonntag"), OLESTR("Montag"), OLESTR("Dienstag"), OLESTR("Mittwoch"), OLESTR("Donnerstag"),
     OLESTR("Freitag"), OLESTR("Samstag")},
    {OLESTR("So"), OLESTR("Mo"), OLESTR("Di"), OLESTR("Mi"), OLESTR("Do"), OLESTR("Fr"), OLESTR("Sa")},
};

constexpr LocaleNames kAustrian = {
    {OLESTR("Jänner"), OLESTR("Februar"), OLESTR("März"), OLESTR("April"), OLESTR("Mai"), OLESTR("Juni"),
     OLESTR("Juli"), OLESTR("August"), OLESTR("September"), OLESTR("Oktober"), OLESTR("November"), OLESTR("Dezember")},
    {OLESTR("Jän"), OLESTR("Feb"), OLESTR("Mär"), OLESTR("Apr"), OLESTR("Mai"), OLESTR("Jun"),
     OLESTR("Jul"), OLESTR("Aug"), OLESTR("Sep"), OLESTR("Okt"), OLESTR("Nov"), OLESTR("Dez")},
    {OLESTR("Sonntag"), OLESTR("Montag"), OLESTR("Dienstag"), OLESTR("Mittwoch"), OLESTR("Donnerstag"),
     OLESTR("Freitag"), OLESTR("Samstag")},
    {OLESTR("So"), OLESTR("Mo"), OLESTR("Di"), OLESTR("Mi"), OLESTR("Do"), OLESTR("Fr"), OLESTR("Sa")},
};

constexpr LocaleNames kFrench = {
    {OLESTR("janvier"), OLESTR("février"), OLESTR("mars"), OLESTR("avril"), OLESTR("mai"), OLESTR("juin"),
     OLESTR("juillet"), OLESTR("août"), OLESTR("septembre"), OLESTR("octobre"), OLESTR("novembre"), OLESTR("décembre")},
    {OLESTR("janv"), OLESTR("févr"), OLESTR("mars"), OLESTR("avr"), OLESTR("mai"), OLESTR("juin"),
     OLESTR("juil"), OLESTR("août"), OLESTR("sept"), OLESTR("oct"), OLESTR("nov"), OLESTR("déc")},
    {OLESTR("dimanche"), OLESTR("lundi"), OLESTR("mardi"), OLESTR("mercredi"), OLESTR("jeudi"),
     OLESTR("vendredi"), OLESTR("samedi")},
    {OLESTR("dim"), OLESTR("lun"), OLESTR("mar"), OLESTR("mer"), OLESTR("jeu"), OLESTR("ven"), OLESTR("sam")},
};

constexpr LocaleNames kItalian = {
    {OLESTR("gennaio"), OLESTR("febbraio"), OLESTR("marzo"), OLESTR("aprile"), OLESTR("maggio"), OLESTR("giugno"),
     OLESTR("luglio"), OLESTR("agosto"), OLESTR("settembre"), OLESTR("ottobre"), OLESTR("novembre"), OLESTR("dicembre")},
    {OLESTR("gen"), OLESTR("feb"), OLESTR("mar"), OLESTR("apr"), OLESTR("mag"), OLESTR("giu"),
     OLESTR("lug"), OLESTR("ago"), OLESTR("set"), OLESTR("ott"), OLESTR("nov"), OLESTR("dic")},
    {OLESTR("domenica"), OLESTR("lunedì"), OLESTR("martedì"), OLESTR("mercoledì"), OLESTR("giovedì"),
     OLESTR("venerdì"), OLESTR("sabato")},
    {OLESTR("dom"), OLESTR("lun"), OLESTR("mar"), OLESTR("mer"), OLESTR("gio"), OLESTR("ven"), OLESTR("sab")},
};

constexpr LocaleNames kSpanish = {
    {OLESTR("enero"), OLESTR("febrero"), OLESTR("marzo"), OLESTR("abril"), OLESTR("mayo"), OLESTR("junio"),
     OLESTR("julio"), OLESTR("agosto"), OLESTR("septiembre"), OLESTR("octubre"), OLESTR("noviembre"), OLESTR("diciembre")},
    {OLESTR("ene"), OLESTR("feb"), OLESTR("mar"), OLESTR("abr"), OLESTR("may"), OLESTR("jun"),
     OLESTR("jul"), OLESTR("ago"), OLESTR("sep"), OLESTR("oct"), OLESTR("nov"), OLESTR("dic")},
    {OLESTR("domingo"), OLESTR("lunes"), OLESTR("martes"), OLESTR("miércoles"), OLESTR("jueves"),
     OLESTR("viernes"), OLESTR("sábado")},
    {OLESTR("dom"), OLESTR("lun"), OLESTR("mar"), OLESTR("mié"), OLESTR("jue"), OLESTR("vie"), OLESTR("sáb")},
};

constexpr LocaleNames kDutch = {
    {OLESTR("januari"), OLESTR("februari"), OLESTR("maart"), OLESTR("april"), OLESTR("mei"), OLESTR("juni"),
     OLESTR("juli"), OLESTR("augustus"), OLESTR("september"), OLESTR("oktober"), OLESTR("november"), OLESTR("december")},
    {OLESTR("jan"), OLESTR("feb"), OLESTR("mrt"), OLESTR("apr"), OLESTR("mei"), OLESTR("jun"),
     OLESTR("jul"), OLESTR("aug"), OLESTR("sep"), OLESTR("okt"), OLESTR("nov"), OLESTR("dec")},
    {OLESTR("zondag"), OLESTR("maandag"), OLESTR("dinsdag"), OLESTR("woensdag"), OLESTR("donderdag"),
     OLESTR("vrijdag"), OLESTR("zaterdag")},
    {OLESTR("zo"), OLESTR("ma"), OLESTR("di"), OLESTR("wo"), OLESTR("do"), OLESTR("vr"), OLESTR("za")},
};

// The first row is the invariant locale; within a language the first row is
// the one an unknown country of that language falls back to.
constexpr LocaleInfo kLocales[] = {
//   LCID    name     short date              long time               dec  AM                PM                names
    {0x007F, "",      OLESTR("MM/dd/yyyy"),   OLESTR("HH:mm:ss"),     '.', OLESTR("AM"),     OLESTR("PM"),     &kEnglish},
    {0x0409, "en-US", OLESTR("M/d/yyyy"),     OLESTR("h:mm:ss tt"),   '.', OLESTR("AM"),     OLESTR("PM"),     &kEnglish},
    {0x0809, "en-GB", OLESTR("dd/MM/yyyy"),   OLESTR("HH:mm:ss"),     '.', OLESTR("am"),     OLESTR("pm"),     &kEnglish},
    {0x0407, "de-DE", OLESTR("dd.MM.yyyy"),   OLESTR("HH:mm:ss"),     ',', OLESTR("AM"),     OLESTR("PM"),     &kGerman},
    {0x0C07, "de-AT", OLESTR("dd.MM.yyyy"),   OLESTR("HH:mm:ss"),     ',', OLESTR("AM"),     OLESTR("PM"),     &kAustrian},
    {0x0807, "de-CH", OLESTR("dd.MM.yyyy"),   OLESTR("HH:mm:ss"),     '.', OLESTR("AM"),     OLESTR("PM"),     &kGerman},
    {0x040C, "fr-FR", OLESTR("dd/MM/yyyy"),   OLESTR("HH:mm:ss"),     ',', OLESTR("AM"),     OLESTR("PM"),     &kFrench},
    {0x0410, "it-IT", OLESTR("dd/MM/yyyy"),   OLESTR("HH:mm:ss"),     ',', OLESTR("AM"),     OLESTR("PM"),     &kItalian},
    {0x0C0A, "es-ES", OLESTR("dd/MM/yyyy"),   OLESTR("H:mm:ss"),      ',', OLESTR("a. m."),  OLESTR("p. m."),  &kSpanish},
    {0x0413, "nl-NL", OLESTR("d-M-yyyy"),     OLESTR("HH:mm:ss"),     ',', OLESTR("a.m."),   OLESTR("p.m."),   &kDutch},
};
// clang-format on

char Lower(char c) noexcept { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

// Compares a locale name with a row name: letters in any case, "_" for "-".
bool SameName(std::string_view a, std::string_view b) noexcept {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        const char x = a[i] == '_' ? '-' : Lower(a[i]);
        const char y = b[i] == '_' ? '-' : Lower(b[i]);
        if (x != y) return false;
    }
    return true;
}

std::string_view Language(std::string_view name) noexcept {
    const std::size_t end = name.find_first_of("-_");
    return name.substr(0, end);
}

}  // namespace

const LocaleInfo& InvariantLocale() noexcept { return kLocales[0]; }

std::span<const LocaleInfo> AllLocales() noexcept { return kLocales; }

const LocaleInfo& LocaleFromName(std::string_view name) noexcept {
    name = name.substr(0, name.find_first_of(".@"));  // drop the encoding and modifier
    if (name.empty() || name == "C" || name == "POSIX") return InvariantLocale();
    for (const LocaleInfo& row : kLocales)
        if (SameName(name, row.name)) return row;
    const std::string_view language = Language(name);
    for (const LocaleInfo& row : kLocales)
        if (row.name[0] != 0 && SameName(language, Language(row.name))) return row;
    return InvariantLocale();
}

namespace {

// The three variables that name the user's locale, in the order they count.
constexpr const char* kLocaleVariables[] = {"LC_ALL=", "LC_TIME=", "LANG="};

// The value in `entry` ("NAME=value") when its name is that of `variable`
// ("NAME="); else null.
const char* ValueOf(const char* entry, const char* variable) noexcept {
    for (; *variable != 0; ++entry, ++variable)
        if (*entry != *variable) return nullptr;
    return entry;
}

bool SameText(const char* a, const char* b) noexcept {
    for (; *a == *b; ++a, ++b)
        if (*a == 0) return true;
    return false;
}

// The value of the first of LC_ALL, LC_TIME and LANG that is set and not
// empty, or null. One pass over the environment finds all three, where three
// getenv calls would pass over it three times; each variable is the first
// entry of its name, as getenv finds it.
const char* UserLocaleName() noexcept {
#if defined(_WIN32)
    for (const char* variable : kLocaleVariables) {
        const std::string name(variable, std::strlen(variable) - 1);
        const char* value = std::getenv(name.c_str());
        if (value != nullptr && value[0] != 0) return value;
    }
    return nullptr;
#else
    const char* found[std::size(kLocaleVariables)] = {};
    for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
        const char* e = *entry;
        if (e[0] != 'L') continue;  // none of the three: most entries stop here
        // The second and fourth characters tell the three apart.
        std::size_t i = std::size(found);
        if (e[1] == 'A')
            i = 2;
        else if (e[1] == 'C' && e[2] == '_' && (e[3] == 'A' || e[3] == 'T'))
            i = e[3] == 'A' ? 0 : 1;
        if (i < std::size(found) && found[i] == nullptr) found[i] = ValueOf(e, kLocaleVariables[i]);
        if (found[0] != nullptr && found[0][0] != 0) break;  // LC_ALL decides; nothing after it counts
    }
    for (const char* value : found)
        if (value != nullptr && value[0] != 0) return value;
    return nullptr;
#endif
}

}  // namespace

const LocaleInfo& UserLocale() noexcept {
    const char* name = UserLocaleName();
    if (name == nullptr) return InvariantLocale();
    // The row of the last name this thread resolved: comparing a short name
    // is cheaper than matching it against the table. The name is compared
    // whole on every call, so a changed environment is always seen.
    struct LastName {
        char text[32];
        const LocaleInfo* row;
    };
    static thread_local LastName last{{}, nullptr};
    if (last.row != nullptr && SameText(last.text, name)) return *last.row;
    const LocaleInfo& row = LocaleFromName(name);
    const std::size_t length = std::strlen(name);
    if (length < sizeof last.text) {
        std::memcpy(last.text, name, length + 1);
        last.row = &row;
    }
    return row;
}

const LocaleInfo* LocaleFromLcid(LCID lcid) noexcept {
    lcid &= 0xFFFF;
    if (lcid == 0 || lcid == LOCALE_USER_DEFAULT || lcid == LOCALE_SYSTEM_DEFAULT) return &UserLocale();
    for (const LocaleInfo& row : kLocales)
        if (row.lcid == lcid) return &row;
    return nullptr;
}

}  // namespace varion::detail
