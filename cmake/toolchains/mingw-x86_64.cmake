# Cross build for 64-bit Windows with Debian's mingw-w64 toolchain
# (g++-mingw-w64-x86-64):
#   cmake -S . -B build-win -DCMAKE_TOOLCHAIN_FILE=cmake/toolchains/mingw-x86_64.cmake
set(CMAKE_SYSTEM_PROCESSOR AMD64)
set(VARION_MINGW_TRIPLE x86_64-w64-mingw32)
include(${CMAKE_CURRENT_LIST_DIR}/mingw-common.cmake)

# Test programs run under Wine (Debian's wine64 puts its launcher off PATH).
find_program(VARION_WINE64 NAMES wine64 PATHS /usr/lib/wine NO_CMAKE_FIND_ROOT_PATH)
if(VARION_WINE64)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${VARION_WINE64})
endif()
