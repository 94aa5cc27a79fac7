#include "module/module.h"

#include "platform/debug_output.h"
#include "platform/utf.h"

#include <atomic>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <new>

namespace varion::detail {
namespace {

// Sends the line to the debugger output channel (where the platform has
// one) and, when VARION_DEBUG is set, to standard error.
void DefaultSink(const OLECHAR* line) {
    DebuggerOutput(line);
    if (line == nullptr || std::getenv("VARION_DEBUG") == nullptr) return;
    try {
        const std::string text = Utf16ToUtf8(line);
        std::fwrite(text.data(), 1, text.size(), stderr);
        std::fflush(stderr);
    } catch (const std::bad_alloc&) {
    }
}

std::atomic<VARION_DIAGNOSTIC_SINK> g_sink{nullptr};

}  // namespace

void WriteDiagnostic(const OLECHAR* line) noexcept {
    const VARION_DIAGNOSTIC_SINK sink = g_sink.load();
    (sink != nullptr ? sink : DefaultSink)(line);
}

bool CVarionApp::InitInstance() noexcept {
    const char* name = std::setlocale(LC_NUMERIC, "");
    try {
        CString line(OLESTR("L\u00e4ndereinstellung f\u00fcr Numerik:  "));
        line += CString(name);  // a null name gives an empty middle part
        line += OLESTR("\r\n");
        WriteDiagnostic(line.GetString());
    } catch (const std::bad_alloc&) {
    }
    return true;
}

}  // namespace varion::detail

extern "C" VARION_DIAGNOSTIC_SINK VarionSetDiagnosticSink(VARION_DIAGNOSTIC_SINK sink) {
    return varion::detail::g_sink.exchange(sink);
}
