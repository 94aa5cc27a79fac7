// Dates: the user locale's date-time text (FormatDateTime, de-DE) beside
// strftime, the ISO 8601 date-time parse, and for varion alone the other date
// and duration texts, which should allocate at most their result.
#include "contenders.h"

#include "datetime/datetime.h"

#include <charconv>
#include <cstdlib>
#include <ctime>
#include <string>

using namespace varion::detail;

namespace {

using bench::Add;

double InstantValue() {
    const bench::Instant& t = bench::kInstant;
    double value = 0;
    DateFromFields(t.year, t.month, t.day, t.hour, t.minute, t.second, t.millisecond, value);
    return value;
}

void FormatLocaleText(benchmark::State& state) {
    setenv("LC_ALL", bench::kUserLocale, 1);
    const double value = InstantValue();
    for (auto _ : state) {
        CString text = FormatDateTime(value);
        bench::Keep(text);
    }
    state.SetLabel(FormatDateTime(value).ToUtf8());
}

// strftime of the fields and the milliseconds after ",".
void Strftime(benchmark::State& state) {
    const bench::Instant& t = bench::kInstant;
    std::tm fields{};
    fields.tm_year = t.year - 1900;
    fields.tm_mon = t.month - 1;
    fields.tm_mday = t.day;
    fields.tm_hour = t.hour;
    fields.tm_min = t.minute;
    fields.tm_sec = t.second;
    int millisecond = t.millisecond;
    char buffer[64];
    for (auto _ : state) {
        bench::Launder(fields);
        bench::Launder(millisecond);
        std::size_t n = std::strftime(buffer, sizeof buffer, "%d.%m.%Y %H:%M:%S", &fields);
        buffer[n++] = ',';
        n = static_cast<std::size_t>(std::to_chars(buffer + n, buffer + sizeof buffer, millisecond).ptr - buffer);
        bench::Keep(n);
        bench::Keep(buffer);
    }
}

void ParseIso(benchmark::State& state, const CString& text) {
    double value = 0;
    for (auto _ : state) {
        bench::Keep(ParseIsoDateTime(text, value));
        bench::Keep(value);
    }
    state.SetLabel(FormatIsoDateTime(value).ToUtf8());
}

// ---- varion alone -------------------------------------------------------------

void ParseLocaleText(benchmark::State& state, const CString& text) {
    setenv("LC_ALL", bench::kUserLocale, 1);
    for (auto _ : state) {
        double value = 0;
        bench::Keep(ParseDateTimeText(text, 0, 0, value));
        bench::Keep(value);
    }
}

template <class Produce>
void Text(benchmark::State& state, Produce produce) {
    for (auto _ : state) {
        CString text = produce();
        bench::Keep(text);
    }
    state.SetLabel(produce().ToUtf8());
}

void Fields(benchmark::State& state) {
    const double value = InstantValue();
    for (auto _ : state) {
        DateTimeFieldSet fields;
        bench::Keep(DateTimeFields(value, fields));
        bench::Keep(fields);
    }
}

[[maybe_unused]] const bool registered = bench::Register([] {
    const std::string format = "FormatDateTime 2026-11-17 20:18:38.250 (de-DE)";
    Add("dates", format, "varion", FormatLocaleText);
    Add("dates", format, "strftime", Strftime);
    const std::string parse = std::string("ISO date-time parse \"") + bench::kIsoText + "\"";
    Add("dates", parse, "varion", [text = CString(bench::kIsoText)](auto& s) { ParseIso(s, text); });

    Add("dates", "locale date-time parse \"17.11.2026 20:18:38,250\" (de-DE)", "varion",
        [text = CString("17.11.2026 20:18:38,250")](auto& s) { ParseLocaleText(s, text); });
    Add("dates", "FormatIsoDateTime 2026-11-17 20:18:38.250", "varion",
        [](auto& s) { Text(s, [value = InstantValue()] { return FormatIsoDateTime(value); }); });
    Add("dates", "FormatDuration 1 day 12:30:05.250", "varion", [](auto& s) {
        Text(s, [value = DurationFromFields(1, 12, 30, 5, 250, 0)] { return FormatDuration(value, CString()); });
    });
    Add("dates", "FormatIsoDuration -10 years of milliseconds", "varion", [](auto& s) {
        Text(s, [value = DurationFromMilliseconds(-315569520000LL)] { return FormatIsoDuration(value); });
    });
    Add("dates", "DateTimeFields 2026-11-17 20:18:38.250", "varion", Fields);
});

}  // namespace
