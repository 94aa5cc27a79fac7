// Poco's Poco::Dynamic::Var (and Poco::format, Poco::DateTimeFormatter and
// Poco::DateTimeParser for the texts) doing the work of varion's benchmarks on
// the same inputs. Var reports a failed conversion with an exception
// (RangeException, SyntaxException), which is part of what its failure costs.
#include "contenders.h"

#include <Poco/DateTime.h>
#include <Poco/DateTimeFormat.h>
#include <Poco/DateTimeFormatter.h>
#include <Poco/DateTimeParser.h>
#include <Poco/Dynamic/Var.h>
#include <Poco/Exception.h>
#include <Poco/Format.h>

#include <string>

namespace {

using bench::Add;
using Poco::Dynamic::Var;

constexpr const char* kPoco = "Poco::Dynamic::Var";

// Make the Var, convert, read the result.
template <class To, class Source>
void Convert(benchmark::State& state, Source x) {
    for (auto _ : state) {
        bench::Launder(x);
        Var v(x);
        try {
            const To back = v.convert<To>();
            bench::Keep(back);
        } catch (const Poco::Exception&) {
            // the failure answered
        }
    }
    try {
        state.SetLabel(Var(Var(x).convert<To>()).convert<std::string>());
    } catch (const Poco::Exception& e) {
        state.SetLabel(std::string("fails: ") + e.name());
    }
}

// A Var holding the text, read as T.
template <class T>
void ReadText(benchmark::State& state, const Var& v) {
    std::string outcome;
    for (auto _ : state) {
        try {
            const T r = v.convert<T>();
            bench::Keep(r);
        } catch (const Poco::Exception& e) {
            outcome = std::string("fails: ") + e.name();
        }
    }
    if (outcome.empty()) outcome = Var(v.convert<T>()).convert<std::string>();
    state.SetLabel(outcome);
}

void ToText(benchmark::State& state, double x) {
    for (auto _ : state) {
        bench::Launder(x);
        Var v(x);
        std::string text = v.convert<std::string>();
        bench::Keep(text);
    }
    state.SetLabel(Var(x).convert<std::string>());
}

void Sum(benchmark::State& state, const Var& a, const Var& b) {
    for (auto _ : state) {
        Var r = a + b;
        bench::Keep(r);
    }
    state.SetLabel((a + b).convert<std::string>());
}

template <class T>
void Format(benchmark::State& state, const char* format, T x) {
    for (auto _ : state) {
        bench::Launder(x);
        std::string text = Poco::format(format, x);
        bench::Keep(text);
    }
    state.SetLabel(Poco::format(format, x));
}

Poco::DateTime Instant() {
    const bench::Instant& t = bench::kInstant;
    return Poco::DateTime(t.year, t.month, t.day, t.hour, t.minute, t.second, t.millisecond);
}

void FormatDate(benchmark::State& state) {
    const Poco::DateTime instant = Instant();
    const std::string format = "%d.%m.%Y %H:%M:%S,%i";
    for (auto _ : state) {
        std::string text = Poco::DateTimeFormatter::format(instant, format);
        bench::Keep(text);
    }
    state.SetLabel(Poco::DateTimeFormatter::format(instant, format));
}

void ParseIso(benchmark::State& state) {
    const std::string text = bench::kIsoText;
    Poco::DateTime parsed;
    int zone = 0;
    for (auto _ : state) {
        Poco::DateTimeParser::parse(Poco::DateTimeFormat::ISO8601_FRAC_FORMAT, text, parsed, zone);
        bench::Keep(parsed);
    }
    state.SetLabel(Poco::DateTimeFormatter::format(parsed, "%Y-%m-%dT%H:%M:%S.%i"));
}

[[maybe_unused]] const bool registered = bench::Register([] {
    Add("numeric", "VT_I4 to VT_R8", kPoco, [](auto& s) { Convert<double>(s, bench::kI4Source); });
    Add("numeric", "VT_R8 to VT_I2", kPoco, [](auto& s) { Convert<Poco::Int16>(s, bench::kR8ForI2); });
    Add("numeric", "VT_UI8 to VT_I8 (fails)", kPoco,
        [](auto& s) { Convert<Poco::Int64>(s, static_cast<Poco::UInt64>(bench::kUI8AboveI8)); });

    for (const bench::NumberText& input : bench::kTextsToR8)
        Add("text", bench::TextOperation(input, "to VT_R8"), kPoco,
            [v = Var(std::string(input.text))](auto& s) { ReadText<double>(s, v); });
    for (const double x : bench::kR8ToText)
        Add("text", bench::ValueOperation("VT_R8", x, "to text"), kPoco, [x](auto& s) { ToText(s, x); });
    for (const bench::NumberText& input : bench::kTextsToI4)
        Add("text", bench::TextOperation(input, "to VT_I4"), kPoco,
            [v = Var(std::string(input.text))](auto& s) { ReadText<Poco::Int32>(s, v); });

    Add("copy", "copy and destroy VT_R8", kPoco, [v = Var(2.5)](auto& s) { bench::Copy(s, v); });
    Add("copy", "assign VT_R8", kPoco, [v = Var(2.5)](auto& s) { bench::Assign(s, v); });
    Add("copy", "copy and destroy VT_BSTR of 32 characters", kPoco, [v = Var(std::string(bench::kString32))](auto& s) { bench::Copy(s, v); });
    Add("copy", "assign VT_BSTR of 32 characters", kPoco,
        [v = Var(std::string(bench::kString32))](auto& s) { bench::Assign(s, v); });

    Add("ops", "VT_I4 == VT_I4", kPoco, [](auto& s) { bench::Equal(s, Var(5), Var(5)); });
    Add("ops", "VT_R8 == VT_R8", kPoco, [](auto& s) { bench::Equal(s, Var(2.5), Var(2.5)); });
    Add("ops", "ADD VT_I4 + VT_I4", kPoco, [](auto& s) { Sum(s, Var(5), Var(7)); });

    Add("format", "\"%.2f\" of VT_R8 3.14159", "Poco::format", [](auto& s) { Format(s, "%.2f", bench::kDisplayReal); });
    for (const int x : {bench::kDisplaySmall, bench::kDisplayLarge})
        Add("format", "\"%X\" of VT_I4 " + std::to_string(x), "Poco::format", [x](auto& s) { Format(s, "%X", x); });

    Add("dates", "FormatDateTime 2026-11-17 20:18:38.250 (de-DE)", "Poco::DateTimeFormatter", FormatDate);
    Add("dates", std::string("ISO date-time parse \"") + bench::kIsoText + "\"", "Poco::DateTimeParser", ParseIso);
});

}  // namespace
