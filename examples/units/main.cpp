// Engineering units: converting numbers between unit codes, looking codes
// up, and the answers for codes that do not convert into each other.
#include <varion/varion.h>

#include <cstdio>

namespace {

const char* Symbol(short code) {
    VarionUnitInfo info{};
    return VarionUnitFind(code, &info) ? info.symbol : "(no unit)";
}

void Convert(const CVarion& value, short from, short to) {
    CVarion result;
    const long code = value.UnitConvert(from, to, &result);
    std::printf("%s %s -> %s %s (type %u, result code %ld)\n", static_cast<CString>(value).ToUtf8().c_str(),
                Symbol(from), static_cast<CString>(result).ToUtf8().c_str(), Symbol(to),
                static_cast<unsigned>(result.GetType()), code);
}

}  // namespace

int main() {
    Convert(CVarion(2.5), 1010, 1013);      // metres to millimetres
    Convert(CVarion(12.5f), 1137, 1141);    // bar to psi, still a single
    Convert(CVarion(-40.0), 1001, 1002);    // Celsius to Fahrenheit, by formula
    Convert(CVarion(20), 32, 35);           // an integer stays one: 293.15 K rounds to 293

    // Codes from different tables or quantities do not convert: the value is
    // passed on unconverted with result code 1; target 0 gives 2.
    Convert(CVarion(1.0), 7, 1137);         // HART bar and fieldbus bar
    Convert(CVarion(1.0), 1010, 1130);      // metres and pascals
    Convert(CVarion(1.0), 1010, 0);

    // Every unit that converts into degrees Celsius (code 1001): those of its group.
    VarionUnitInfo celsius{};
    VarionUnitFind(1001, &celsius);
    std::printf("the %s units of group %u:", celsius.quantity, static_cast<unsigned>(celsius.group));
    VarionUnitInfo info{};
    for (int i = 0; VarionUnitAt(i, &info); ++i)
        if (info.group == celsius.group) std::printf(" %u %s (%s);", static_cast<unsigned>(info.code), info.symbol, info.name);
    std::printf("\n%d codes in the table\n", VarionUnitCount());
    return 0;
}
