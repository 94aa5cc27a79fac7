# The platform layer: which sources a build compiles for its platform. This is
# the one place where the library chooses by platform.
#
# On Windows the Automation services (BSTR, VARIANT, SAFEARRAY, the date
# services and the VT_R4 to VT_BSTR change) are the system's, from oleaut32,
# and the DLL starts up in DllMain. Elsewhere the stand-ins below take their
# place and a static object starts the library up when it is loaded.
# CString, CByteArray, the formatter, the strftime renderer, the number
# readers and the calendar serve on every platform.
#
# In:  VARION_SOURCES (every .cpp under src/)
# Out: VARION_SOURCES without the other platform's sources and the loaders,
#      VARION_LOADER_SOURCE (the start-up source of the shared or static
#      library), VARION_PLATFORM_LIBRARIES (what the library links).

set(VARION_STANDIN_SOURCES
  alloc.cpp            # the allocation hook behind the strings and arrays
  bstr.cpp             # SysAllocString ...
  variant.cpp          # VariantInit, VariantClear, VariantCopy, VariantCopyInd
  variant_change.cpp   # VariantChangeType
  safearray.cpp        # SafeArray*
  dates.cpp            # SystemTimeToVariantTime, VariantTimeToSystemTime, VarUdateFromDate
  date_format.cpp      # VarBstrFromDate
  date_parse.cpp       # VarDateFromStr
  locales.cpp          # the locale table the date services read
  debug_output.cpp)    # no debugger output channel
list(TRANSFORM VARION_STANDIN_SOURCES PREPEND ${CMAKE_CURRENT_LIST_DIR}/)
file(GLOB VARION_WIN32_SOURCES CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/win32/*.cpp)

set(VARION_LOADERS ${PROJECT_SOURCE_DIR}/src/module/load.cpp ${PROJECT_SOURCE_DIR}/src/module/dll_main.cpp)
list(REMOVE_ITEM VARION_SOURCES ${VARION_LOADERS})

if(WIN32)
  list(REMOVE_ITEM VARION_SOURCES ${VARION_STANDIN_SOURCES})
  set(VARION_PLATFORM_LIBRARIES oleaut32 ole32)
  if(VARION_SHARED)
    set(VARION_LOADER_SOURCE ${PROJECT_SOURCE_DIR}/src/module/dll_main.cpp)
  else()
    set(VARION_LOADER_SOURCE ${PROJECT_SOURCE_DIR}/src/module/load.cpp)
  endif()
else()
  list(REMOVE_ITEM VARION_SOURCES ${VARION_WIN32_SOURCES})
  set(VARION_PLATFORM_LIBRARIES)
  set(VARION_LOADER_SOURCE ${PROJECT_SOURCE_DIR}/src/module/load.cpp)
endif()
