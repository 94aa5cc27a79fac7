// Start-up of the Windows DLL: the system's loader calls DllMain when it maps
// the library into a process, and the module object is initialised there,
// before any value is used.
#include "module/module.h"

#include <windows.h>

namespace {

varion::detail::CVarionApp theApp;

}  // namespace

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID /*reserved*/) {
    if (reason == DLL_PROCESS_ATTACH) {
        DisableThreadLibraryCalls(instance);
        theApp.InitInstance();
    }
    return TRUE;
}
