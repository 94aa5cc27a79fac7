// Platforms without a debugger output channel drop the line; the module's
// diagnostic sink still writes it to standard error when asked to.
#include "platform/debug_output.h"

namespace varion::detail {

void DebuggerOutput(const OLECHAR* /*line*/) noexcept {}

}  // namespace varion::detail
