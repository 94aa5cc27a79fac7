// ParseIsoDateTime: every accepted text writes back as an ISO text, and from
// 1899-12-30 on (before it the text has no milliseconds) that text reads as
// the very same double.
#include "datetime/datetime.h"
#include "fuzz_text.h"

using namespace varion::detail;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const CString text = fuzz::TextOf(data, size);
    double value = 0;
    if (ParseIsoDateTime(text, value) != 0) return 0;
    const CString written = FormatIsoDateTime(value);
    fuzz::Require(!written.IsEmpty());
    if (value < 0) return 0;
    double back = -1;
    fuzz::Require(ParseIsoDateTime(written, back) == 0 && back == value);
    return 0;
}
