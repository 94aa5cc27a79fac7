// ParseDateTimeText in the user's locale: accepted instants from 1899-12-30
// on render with FormatDateTime and read back as the same fields.
#include "datetime/datetime.h"
#include "fuzz_text.h"

using namespace varion::detail;

namespace {

bool SameFields(const DateTimeFieldSet& a, const DateTimeFieldSet& b) {
    return a.year == b.year && a.month == b.month && a.day == b.day && a.hour == b.hour && a.minute == b.minute &&
           a.second == b.second && a.millisecond == b.millisecond;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const CString text = fuzz::TextOf(data, size);
    double value = 0;
    if (ParseDateTimeText(text, 0, 0, value) != RC_OK) return 0;
    DateTimeFieldSet fields;
    if (value < 0 || !DateTimeFields(value, fields)) return 0;
    double back = -1;
    fuzz::Require(ParseDateTimeText(FormatDateTime(value), 0, 0, back) == RC_OK);
    DateTimeFieldSet again;
    fuzz::Require(DateTimeFields(back, again) && SameFields(fields, again));
    return 0;
}
