// ParseDuration: accepted texts give finite durations; positive ones of
// ordinary size write with the default format and read back to the same
// components. (Components, not totals: the whole days are truncated while the
// other fields are rounded counts, so 5 days less 5 microseconds writes as
// "4 00:00:00", whose total is a day short.)
#include "datetime/datetime.h"
#include "fuzz_text.h"

using namespace varion::detail;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const CString text = fuzz::TextOf(data, size);
    double value = 0;
    const long rc = ParseDuration(text, value);
    fuzz::Require(rc == RC_OK || rc == RC_NOT_APPLICABLE);
    if (rc != RC_OK) return 0;
    fuzz::Require(value == value && value - value == 0);  // finite
    const CString written = FormatDuration(value, CString());
    if (value < 0 || value > 1e6) return 0;
    double back = -1;
    fuzz::Require(ParseDuration(written, back) == RC_OK);
    const DurationFieldSet a = DurationFields(value), b = DurationFields(back);
    fuzz::Require(a.days == b.days && a.hours == b.hours && a.minutes == b.minutes && a.seconds == b.seconds &&
                  a.milliseconds == b.milliseconds);
    return 0;
}
