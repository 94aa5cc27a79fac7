// The library's module object: start-up and its diagnostic line.
#pragma once

#include <varion/varion.h>

namespace varion::detail {

/// Runs once when the library is loaded.
class CVarionApp {
public:
    CVarionApp() = default;
    /// Sets the C library's numeric locale (LC_NUMERIC only) to the user's
    /// default from the environment and sends the line
    /// "Ländereinstellung für Numerik:  <locale name>\r\n" to the diagnostic
    /// sink. Always answers true.
    bool InitInstance() noexcept;
};

/// Sends one line to the current diagnostic sink.
void WriteDiagnostic(const OLECHAR* line) noexcept;

}  // namespace varion::detail
