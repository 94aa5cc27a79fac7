// Dates and durations: a date-time from its fields and back, its text forms,
// the time between two date-times, and durations from fields and from text.
#include <varion/varion.h>

#include <cstdio>

namespace {

void Show(const char* what, const CVarion& value) {
    std::printf("%-22s %s\n", what, static_cast<CString>(value).ToUtf8().c_str());
}

}  // namespace

int main() {
    // A time stamp from its calendar fields, kept as an ISO 8601 date-time.
    const CVarion start(2026, 11, 17, 20, 18, 38, 250, VTX_ISO_DATETIME);
    Show("start:", start);
    std::printf("%-22s %04ld-%02ld-%02ld, day %ld of the week, %02ld:%02ld:%02ld and %ld ms\n", "fields:",
                start.GetYear(), start.GetMonth(), start.GetDay(), start.GetDayOfWeek(), start.GetHour(),
                start.GetMinute(), start.GetSecond(), start.GetMillisecond());
    std::printf("%-22s %s\n", "display:",
                start.GetStringWithDisplayFormat(CString(OLESTR("%d.%m.%Y %H:%M")), 0).ToUtf8().c_str());

    // The same instant as a VT_DATE shows in the user's locale (LC_ALL).
    CVarion local;
    start.CopyAs(local, VT_DATE);
    Show("in the user's locale:", local);

    // A German date text reads whatever the user's locale is.
    const CVarion german("17.11.2026 20:18:38");
    std::printf("%-22s %s\n", "German text as ISO:", german.GetISO8601DateTimeString(false).ToUtf8().c_str());

    // The end of a shift, from its ISO 8601 text; end - start is a duration.
    CVarion end("2026-11-18T06:00:00");
    long code = end.SetType(VTX_ISO_DATETIME);
    CVarion elapsed;
    code = CVarion::Arithmetic(elapsed, end, start, OP_SUB);
    Show("elapsed:", elapsed);
    std::printf("%-22s %lld ms (result code %ld)\n", "in milliseconds:", elapsed.GetTotalMilliseconds(), code);
    elapsed.SetType(VTX_ISO_DURATION);
    Show("as ISO 8601:", elapsed);

    // Durations from fields and from text; a date-time moved by one.
    const CVarion pause(0, 1, 30, 5, 250, 0, VTX_DURATION);
    Show("pause:", pause);
    std::printf("%-22s %s\n", "pause, hours only:",
                pause.GetStringWithDisplayFormat(CString(OLESTR("%H h %M min")), 0).ToUtf8().c_str());
    CVarion shift("1 12:00:00");
    code = shift.SetType(VTX_DURATION);
    std::printf("%-22s %ld days %ld hours (result code %ld)\n", "\"1 12:00:00\":", shift.GetDay(),
                shift.GetHour(), code);
    CVarion resumed;
    CVarion::Arithmetic(resumed, start, pause, OP_ADD);
    Show("resumed:", resumed);

    // A date that does not exist is refused and the text kept.
    CVarion bad("2026-02-30");
    code = bad.SetType(VTX_ISO_DATETIME);
    std::printf("%-22s result code %ld, still type %u\n", "\"2026-02-30\":", code, static_cast<unsigned>(bad.GetType()));
    return 0;
}
