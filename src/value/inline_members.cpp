// A Windows DLL defines the members the header keeps inline elsewhere, so
// that they are exported with the rest of the class.
#include <varion/varion.h>

#if defined(VARION_OUT_OF_LINE_MEMBERS)
#include <varion/detail/inline_members.h>
#endif
