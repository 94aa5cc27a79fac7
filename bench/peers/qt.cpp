// Qt 6's QVariant (and QString::asprintf, QDateTime for the texts) doing the
// work of varion's benchmarks on the same inputs. QVariant::convert changes
// the type in place, as SetType does; it has no range check, so a value that
// does not fit the target comes out wrapped rather than refused (its label
// shows what it gives).
#include "contenders.h"

#include <QDate>
#include <QDateTime>
#include <QMetaType>
#include <QString>
#include <QTime>
#include <QVariant>

#include <string>

namespace {

using bench::Add;

constexpr const char* kQt = "QVariant";

// Make the QVariant, convert it in place, read the result.
template <class To, class Source>
void Convert(benchmark::State& state, Source x) {
    bool converted = false;
    To back{};
    for (auto _ : state) {
        bench::Launder(x);
        QVariant v(x);
        converted = v.convert(QMetaType::fromType<To>());
        bench::Keep(converted);
        if (converted) {
            back = v.value<To>();
            bench::Keep(back);
        }
    }
    state.SetLabel(converted ? QVariant::fromValue(back).toString().toStdString() : "fails");
}

std::string Utf8(const QString& s) { return s.toStdString(); }

// A QVariant holding the text, read as a double or an int.
template <class T>
void ReadText(benchmark::State& state, const QVariant& v) {
    bool ok = false;
    T r{};
    for (auto _ : state) {
        if constexpr (std::is_same_v<T, double>)
            r = v.toDouble(&ok);
        else
            r = v.toInt(&ok);
        bench::Keep(r);
    }
    state.SetLabel(ok ? Utf8(QVariant(r).toString()) : "fails");
}

void ToText(benchmark::State& state, double x) {
    for (auto _ : state) {
        bench::Launder(x);
        QVariant v(x);
        QString text = v.toString();
        bench::Keep(text);
    }
    state.SetLabel(Utf8(QVariant(x).toString()));
}

template <class T>
void Format(benchmark::State& state, const char* format, T x) {
    for (auto _ : state) {
        bench::Launder(x);
        QString text = QString::asprintf(format, x);
        bench::Keep(text);
    }
    state.SetLabel(Utf8(QString::asprintf(format, x)));
}

QDateTime Instant() {
    const bench::Instant& t = bench::kInstant;
    return QDateTime(QDate(t.year, t.month, t.day), QTime(t.hour, t.minute, t.second, t.millisecond));
}

void FormatDate(benchmark::State& state) {
    const QDateTime instant = Instant();
    const QString format = QStringLiteral("dd.MM.yyyy HH:mm:ss,zzz");
    for (auto _ : state) {
        QString text = instant.toString(format);
        bench::Keep(text);
    }
    state.SetLabel(Utf8(instant.toString(format)));
}

void ParseIso(benchmark::State& state) {
    const QString text = QString::fromUtf8(bench::kIsoText);
    QDateTime parsed;
    for (auto _ : state) {
        parsed = QDateTime::fromString(text, Qt::ISODateWithMs);
        bench::Keep(parsed);
    }
    state.SetLabel(Utf8(parsed.toString(Qt::ISODateWithMs)));
}

[[maybe_unused]] const bool registered = bench::Register([] {
    Add("numeric", "VT_I4 to VT_R8", kQt, [](auto& s) { Convert<double>(s, bench::kI4Source); });
    Add("numeric", "VT_R8 to VT_I2", kQt, [](auto& s) { Convert<short>(s, bench::kR8ForI2); });
    Add("numeric", "VT_UI8 to VT_I8 (fails)", kQt,
        [](auto& s) { Convert<qlonglong>(s, static_cast<qulonglong>(bench::kUI8AboveI8)); });

    for (const bench::NumberText& input : bench::kTextsToR8)
        Add("text", bench::TextOperation(input, "to VT_R8"), kQt,
            [v = QVariant(QString::fromUtf8(input.text))](auto& s) { ReadText<double>(s, v); });
    for (const double x : bench::kR8ToText)
        Add("text", bench::ValueOperation("VT_R8", x, "to text"), kQt, [x](auto& s) { ToText(s, x); });
    for (const bench::NumberText& input : bench::kTextsToI4)
        Add("text", bench::TextOperation(input, "to VT_I4"), kQt,
            [v = QVariant(QString::fromUtf8(input.text))](auto& s) { ReadText<int>(s, v); });

    Add("copy", "copy and destroy VT_R8", kQt, [v = QVariant(2.5)](auto& s) { bench::Copy(s, v); });
    Add("copy", "assign VT_R8", kQt, [v = QVariant(2.5)](auto& s) { bench::Assign(s, v); });
    const QVariant text(QString::fromUtf8(bench::kString32));
    Add("copy", "copy and destroy VT_BSTR of 32 characters", kQt, [text](auto& s) { bench::Copy(s, text); });
    Add("copy", "assign VT_BSTR of 32 characters", kQt, [text](auto& s) { bench::Assign(s, text); });

    Add("ops", "VT_I4 == VT_I4", kQt, [](auto& s) { bench::Equal(s, QVariant(5), QVariant(5)); });
    Add("ops", "VT_R8 == VT_R8", kQt, [](auto& s) { bench::Equal(s, QVariant(2.5), QVariant(2.5)); });

    Add("format", "\"%.2f\" of VT_R8 3.14159", "QString::asprintf",
        [](auto& s) { Format(s, "%.2f", bench::kDisplayReal); });
    for (const int x : {bench::kDisplaySmall, bench::kDisplayLarge})
        Add("format", "\"%X\" of VT_I4 " + std::to_string(x), "QString::asprintf",
            [x](auto& s) { Format(s, "%X", static_cast<unsigned>(x)); });

    Add("dates", "FormatDateTime 2026-11-17 20:18:38.250 (de-DE)", "QDateTime::toString", FormatDate);
    Add("dates", std::string("ISO date-time parse \"") + bench::kIsoText + "\"", "QDateTime::fromString", ParseIso);
});

}  // namespace
