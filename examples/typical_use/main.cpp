// The typical use of a device parameter's value: it arrives from an
// Automation interface as a VARIANT holding the text "12,5", becomes a single
// as the device describes the parameter, is converted from bar to psi,
// compared with a limit, shown with two decimals and handed back out.
#include <varion/varion.h>

#include <cstdio>

int main() {
    // 1. The VARIANT as an interface hands it over; the value keeps its own
    //    copy of the text, so the VARIANT can be cleared at once.
    VARIANT received;
    VariantInit(&received);
    received.vt = VT_BSTR;
    received.bstrVal = SysAllocString(OLESTR("12,5"));
    CVarion value(received);
    VariantClear(&received);
    std::printf("received:      type %u, text %s\n", static_cast<unsigned>(value.GetType()),
                static_cast<CString>(value).ToUtf8().c_str());

    // 2. The device describes the parameter as type 3 (a floating number) of
    //    4 bytes: a single. The text reads with ',' or '.' as its separator.
    const VARTYPE type = CVarion::DDType2VariantType(3, 4);
    long code = value.SetType(type);
    if (code != RC_OK) {
        std::printf("the text is not a number (result code %ld)\n", code);
        return 1;
    }
    std::printf("as type %u:     %.1f\n", static_cast<unsigned>(type), static_cast<double>(value));

    // 3. From bar (unit code 1137) to psi (1141); the result keeps the type.
    CVarion psi;
    code = value.UnitConvert(1137, 1141, &psi);
    std::printf("in psi:        %.6f (result code %ld, type %u)\n", static_cast<double>(psi), code,
                static_cast<unsigned>(psi.GetType()));

    // 4. A single compared with a double limit: within a millionth counts as equal.
    const CVarion limit(200.0);
    std::printf("within 200:    %s\n", psi <= limit ? "yes" : "no");

    // 5. The display text, with the user's decimal separator.
    const CString shown = psi.GetStringWithDisplayFormat(CString(OLESTR("%.2f")), 0);
    std::printf("display:       %s psi\n", shown.ToUtf8().c_str());

    // 6. Handed back to an Automation interface; the caller owns the copy.
    VARIANT out;
    VariantInit(&out);
    code = psi.GetData(out);
    std::printf("handed back:   type %u, %.2f (result code %ld)\n", static_cast<unsigned>(out.vt),
                static_cast<double>(out.fltVal), code);
    VariantClear(&out);

    // A text that is no number: the conversion is refused and the value kept.
    CVarion typo("12,5 bar");
    code = typo.SetType(type);
    std::printf("\"12,5 bar\":    result code %ld, still type %u\n", code, static_cast<unsigned>(typo.GetType()));
    return 0;
}
