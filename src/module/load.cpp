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
