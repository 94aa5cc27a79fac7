// varion date TEXT [--iso]   and   varion duration TEXT [--iso]
#include "cli.h"

#include <cstdio>

namespace cli {
namespace {

constexpr Option kOptions[] = {{"iso", false}};

const char* WeekdayName(long day) {
    static const char* const kNames[] = {"Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday", "Sunday"};
    return day >= 1 && day <= 7 ? kNames[day - 1] : "-";
}

// "2026-11-17" and "20:18:38"; fields that do not apply read -1.
std::string DateText(long year, long month, long day) {
    char buffer[64];
    std::snprintf(buffer, sizeof(buffer), "%04ld-%02ld-%02ld", year, month, day);
    return buffer;
}

std::string TimeText(long hour, long minute, long second) {
    char buffer[64];
    std::snprintf(buffer, sizeof(buffer), "%02ld:%02ld:%02ld", hour, minute, second);
    return buffer;
}

// TEXT read by the library's own text route into `localType`, or with --iso
// into `isoType`, together with the same day count held as the other of the
// two types (for its text form).
struct Parsed {
    CVarion value;
    CVarion other;
    bool iso;
};

// nullopt with `status` set when TEXT is missing or the library refuses it;
// the refusal is printed as a report of the text and the code.
std::optional<Parsed> Parse(const Args& args, std::string_view command, VARTYPE localType, VARTYPE isoType,
                            int& status) {
    if (!CheckPositionals(args, command, 1, 1, "TEXT", status)) return std::nullopt;
    const bool iso = args.Flag("iso");
    CVarion value(args.Positionals()[0].c_str());
    if (value.GetType() != VT_BSTR) {
        status = kFailure;  // the text could not be allocated
        return std::nullopt;
    }
    const long code = value.SetType(iso ? isoType : localType);
    if (code != RC_OK) {
        const Report report(value, code);
        report.Print(args.Json());
        status = report.Status();
        return std::nullopt;
    }
    CVarion other = DayCountValue(iso ? localType : isoType, DayCount(value));
    return Parsed{std::move(value), std::move(other), iso};
}

int Date(const Args& args) {
    int status = kOk;
    const auto parsed = Parse(args, "date", VT_DATE, VTX_ISO_DATETIME, status);
    if (!parsed) return status;
    const CVarion& value = parsed->value;
    const CVarion& local = parsed->iso ? parsed->other : parsed->value;
    const CVarion& iso = parsed->iso ? parsed->value : parsed->other;
    const long year = value.GetYear(), month = value.GetMonth(), day = value.GetDay();
    const long hour = value.GetHour(), minute = value.GetMinute(), second = value.GetSecond();
    Report(value, RC_OK)
        .AddReal("day_count", DayCount(value), "day count")
        .Add("year", year)
        .Add("month", month)
        .Add("day", day)
        .Add("day_of_week", value.GetDayOfWeek())
        .Add("hour", hour)
        .Add("minute", minute)
        .Add("second", second)
        .Add("millisecond", value.GetMillisecond())
        .Line("date", DateText(year, month, day) + " (" + WeekdayName(value.GetDayOfWeek()) + ")")
        .Line("time", TimeText(hour, minute, second) + ", millisecond " +
                          std::to_string(value.GetMillisecond()))
        .Add("text", ValueText(local), "text")
        .Add("iso", ValueText(iso), "iso")
        .Add("iso_zone", local.GetISO8601DateTimeString(true).ToUtf8(), "iso zone")
        .Print(args.Json());
    return kOk;
}

int Duration(const Args& args) {
    int status = kOk;
    const auto parsed = Parse(args, "duration", VTX_DURATION_MSF, VTX_ISO_DURATION, status);
    if (!parsed) return status;
    const CVarion& msf = parsed->iso ? parsed->other : parsed->value;
    const CVarion& iso = parsed->iso ? parsed->value : parsed->other;
    std::string components = std::to_string(msf.GetDay()) + " days " + std::to_string(msf.GetHour()) + " h " +
                             std::to_string(msf.GetMinute()) + " min " + std::to_string(msf.GetSecond()) + " s " +
                             std::to_string(msf.GetMillisecond()) + " ms " +
                             std::to_string(msf.GetMillisecondFractions()) + "/32 ms";
    Report(parsed->value, RC_OK)
        .AddReal("day_count", DayCount(msf), "day count")
        .Add("days", msf.GetDay())
        .Add("hours", msf.GetHour())
        .Add("minutes", msf.GetMinute())
        .Add("seconds", msf.GetSecond())
        .Add("milliseconds", msf.GetMillisecond())
        .Add("fractions", msf.GetMillisecondFractions())
        .Line("components", components)
        .Add("total_milliseconds", msf.GetTotalMilliseconds(), "total ms")
        .Add("total_fractions", msf.GetTotalMillisecondFractions(), "total 1/32 ms")
        .Add("text", ValueText(msf), "text")
        .Add("iso", ValueText(iso), "iso")
        .Print(args.Json());
    return kOk;
}

}  // namespace

const Command kDateCommand = {
    "date",
    "parse a date text and show its fields and text forms",
    "usage: varion date TEXT [--iso]\n"
    "  Parses TEXT as a date-time in the user's locale (VT_DATE), or with --iso\n"
    "  as an ISO 8601 text (VTX_ISO_DATETIME), and prints its day count (days\n"
    "  since 1899-12-30), calendar fields and text forms: the locale text, the\n"
    "  ISO 8601 text and GetISO8601DateTimeString with the zone offset of TZ.\n"
    "  Exit status 1 when the library does not read TEXT.\n"
    "example: varion date \"17.11.2026 20:18:38,250\" --locale de-DE\n"
    "example: varion date 2026-11-17T20:18:38.25 --iso\n",
    kOptions,
    Date,
};

const Command kDurationCommand = {
    "duration",
    "parse a duration text and show its components and text forms",
    "usage: varion duration TEXT [--iso]\n"
    "  Parses TEXT as a duration, \"[days ]hours:minutes[:seconds]\" with '.' or\n"
    "  ',' before a fraction of a second (VTX_DURATION_MSF), or with --iso as an\n"
    "  ISO 8601 \"PT<seconds>S\" text (VTX_ISO_DURATION), and prints its day\n"
    "  count, components (each with the duration's sign), totals and text forms.\n"
    "  Exit status 1 when the library does not read TEXT.\n"
    "example: varion duration \"1 12:30:05,25\"\n"
    "example: varion duration PT90.5S --iso\n",
    kOptions,
    Duration,
};

}  // namespace cli
