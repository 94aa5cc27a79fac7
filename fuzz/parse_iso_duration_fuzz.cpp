// ParseIsoDuration: accepted texts of ordinary size write back with
// FormatIsoDuration and read as the same double.
#include "datetime/datetime.h"
#include "fuzz_text.h"

#include <cmath>

using namespace varion::detail;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const CString text = fuzz::TextOf(data, size);
    double value = 0;
    const long rc = ParseIsoDuration(text, value);
    fuzz::Require(rc == RC_OK || rc == RC_NOT_APPLICABLE || rc == RC_NOT_CONVERTIBLE);
    if (rc != RC_OK || std::fabs(value) > 1e7) return 0;
    double back = 1;
    fuzz::Require(ParseIsoDuration(FormatIsoDuration(value), back) == RC_OK && back == value);
    return 0;
}
