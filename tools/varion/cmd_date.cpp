// varion date TEXT [--locale NAME] [--iso]
// varion duration TEXT [--iso]
#include "cli.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace cli {
namespace {

// The day count a date-family value holds: its value field, read through the
// VARIANT layout the class guarantees.
double DayCount(const CVarion& value) {
    VARIANT raw;
    std::memcpy(&raw, &value, sizeof(raw));
    return raw.date;
}

std::string TextOf(const CVarion& value) {
    CVarion text;
    if (value.CopyAs(text, VT_BSTR) != RC_OK) return "(no text)";
    return static_cast<CString>(text).ToUtf8();
}

const char* WeekdayName(long day) {
    static const char* const kNames[] = {"Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday", "Sunday"};
    return day >= 1 && day <= 7 ? kNames[day - 1] : "-";
}

// Parses TEXT into `type` through the library's own text route.
bool Parse(const std::string& text, VARTYPE type, CVarion& value, long& code) {
    value = CVarion(text.c_str());
    code = value.SetType(type);
    return code == RC_OK;
}

}  // namespace

int Date(const Args& args) {
    if (args.Flag("help")) {
        std::printf(
            "usage: varion date TEXT [--locale NAME] [--iso]\n"
            "  Parses TEXT as a date-time in the user's locale (or, with --iso, as an\n"
            "  ISO 8601 text) and prints its day count, calendar fields and text forms.\n"
            "  --locale NAME sets the user's locale for the run (de-DE, en_US.UTF-8, C).\n"
            "examples: varion date \"17.11.2026 20:18:38,250\" --locale de-DE\n"
            "          varion date 2026-11-17T20:18:38.25 --iso\n");
        return kOk;
    }
    if (auto unknown = args.Unknown({"locale", "iso", "help"})) return Usage("date: unknown option " + *unknown);
    if (args.Positionals().size() != 1) return Usage("date: expected one TEXT");
    if (auto locale = args.Option("locale")) {
        if (locale->empty()) return Usage("date: --locale needs a NAME");
        setenv("LC_ALL", locale->c_str(), 1);
    }
    const bool iso = args.Flag("iso");
    const std::string& text = args.Positionals()[0];
    CVarion value;
    long code = 0;
    if (!Parse(text, iso ? static_cast<VARTYPE>(VTX_ISO_DATETIME) : static_cast<VARTYPE>(VT_DATE), value, code)) {
        std::fprintf(stderr, "varion: date: '%s' is not a %s date (%s)\n", text.c_str(), iso ? "ISO 8601" : "locale",
                     ResultName(code).c_str());
        return kFailure;
    }
    std::printf("type:      %s\n", TypeName(value.GetType()).c_str());
    std::printf("day count: %.10f\n", DayCount(value));
    std::printf("date:      %04ld-%02ld-%02ld (%s)\n", value.GetYear(), value.GetMonth(), value.GetDay(),
                WeekdayName(value.GetDayOfWeek()));
    std::printf("time:      %02ld:%02ld:%02ld, millisecond %ld\n", value.GetHour(), value.GetMinute(),
                value.GetSecond(), value.GetMillisecond());
    // The same instant in the other date-time type, rebuilt from its fields.
    const CVarion other(value.GetYear(), value.GetMonth(), value.GetDay(), value.GetHour(), value.GetMinute(),
                        value.GetSecond(), value.GetMillisecond(),
                        iso ? static_cast<unsigned short>(VT_DATE) : static_cast<unsigned short>(VTX_ISO_DATETIME));
    const CVarion& local = iso ? other : value;
    std::printf("text:      %s\n", TextOf(local).c_str());
    std::printf("iso:       %s\n", TextOf(iso ? value : other).c_str());
    std::printf("iso zone:  %s\n", local.GetISO8601DateTimeString(true).ToUtf8().c_str());
    return kOk;
}

int Duration(const Args& args) {
    if (args.Flag("help")) {
        std::printf(
            "usage: varion duration TEXT [--iso]\n"
            "  Parses TEXT as a duration (\"[days ]hours:minutes[:seconds]\", or with\n"
            "  --iso an ISO 8601 \"PT...S\" text) and prints its day count, components,\n"
            "  totals and text forms.\n"
            "examples: varion duration \"1 12:30:05,25\"\n"
            "          varion duration PT90.5S --iso\n");
        return kOk;
    }
    if (auto unknown = args.Unknown({"iso", "help"})) return Usage("duration: unknown option " + *unknown);
    if (args.Positionals().size() != 1) return Usage("duration: expected one TEXT");
    const bool iso = args.Flag("iso");
    const std::string& text = args.Positionals()[0];
    CVarion value;
    long code = 0;
    if (!Parse(text, iso ? static_cast<VARTYPE>(VTX_ISO_DURATION) : static_cast<VARTYPE>(VTX_DURATION_MSF), value,
               code)) {
        std::fprintf(stderr, "varion: duration: '%s' is not a%s duration (%s)\n", text.c_str(),
                     iso ? "n ISO 8601" : "", ResultName(code).c_str());
        return kFailure;
    }
    std::printf("type:        %s\n", TypeName(value.GetType()).c_str());
    std::printf("day count:   %.12g\n", DayCount(value));
    std::printf("components:  %ld days %ld h %ld min %ld s %ld ms", value.GetDay(), value.GetHour(), value.GetMinute(),
                value.GetSecond(), value.GetMillisecond());
    if (value.GetType() == VTX_DURATION_MSF) std::printf(" %ld/32 ms", value.GetMillisecondFractions());
    std::printf("\ntotal:       %lld ms", value.GetTotalMilliseconds());
    if (value.GetType() == VTX_DURATION_MSF) std::printf(", %lld/32 ms", value.GetTotalMillisecondFractions());
    // The same length in the other text form, rebuilt from its components.
    const CVarion other(value.GetDay(), value.GetHour(), value.GetMinute(), value.GetSecond(), value.GetMillisecond(),
                        value.GetType() == VTX_DURATION_MSF ? value.GetMillisecondFractions() : 0,
                        iso ? VTX_DURATION_MSF : VTX_ISO_DURATION);
    std::printf("\ntext:        %s\n", TextOf(iso ? other : value).c_str());
    std::printf("iso:         %s\n", TextOf(iso ? value : other).c_str());
    return kOk;
}

}  // namespace cli
