// Start-up of the shared or static library image: the module object is
// constructed and initialised once, when the library is loaded.
#include "module/module.h"

namespace {

struct ModuleLoader {
    varion::detail::CVarionApp app;
    ModuleLoader() noexcept { app.InitInstance(); }
};

const ModuleLoader theModule;

}  // namespace

// Nothing else refers to this file, so a static link would leave it out and
// the start-up with it; linking the static library with
// -Wl,--undefined=varion_module_anchor (its CMake target and varion.pc say
// so) pulls it in.
extern "C" const int varion_module_anchor = 1;
