// The platform's debugger output channel.
#pragma once

#include <varion/platform/automation.h>

namespace varion::detail {

/// Sends one line to the debugger output channel: OutputDebugStringW on
/// Windows. Platforms without such a channel drop the line. A null line is
/// ignored.
void DebuggerOutput(const OLECHAR* line) noexcept;

}  // namespace varion::detail
