// The debugger output channel of Windows.
#include "platform/debug_output.h"

namespace varion::detail {

void DebuggerOutput(const OLECHAR* line) noexcept {
    if (line != nullptr) OutputDebugStringW(line);
}

}  // namespace varion::detail
