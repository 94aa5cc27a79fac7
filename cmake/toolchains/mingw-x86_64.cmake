# Cross build for 64-bit Windows with Debian's mingw-w64 toolchain
# (g++-mingw-w64-x86-64):
#   cmake -S . -B build-win -DCMAKE_TOOLCHAIN_FILE=cmake/toolchains/mingw-x86_64.cmake
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR AMD64)

set(VARION_MINGW_TRIPLE x86_64-w64-mingw32)
# The POSIX thread model: its C++ runtime has std::mutex, which GoogleTest needs.
set(CMAKE_C_COMPILER ${VARION_MINGW_TRIPLE}-gcc-posix)
set(CMAKE_CXX_COMPILER ${VARION_MINGW_TRIPLE}-g++-posix)
set(CMAKE_RC_COMPILER ${VARION_MINGW_TRIPLE}-windres)
set(CMAKE_OBJDUMP ${VARION_MINGW_TRIPLE}-objdump CACHE FILEPATH "objdump of the target")

# Headers and libraries of the target only; programs of the build machine.
set(CMAKE_FIND_ROOT_PATH /usr/${VARION_MINGW_TRIPLE})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Test programs run under Wine (Debian's wine64 puts its launcher off PATH).
find_program(VARION_WINE64 NAMES wine64 PATHS /usr/lib/wine NO_CMAKE_FIND_ROOT_PATH)
if(VARION_WINE64)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${VARION_WINE64})
endif()
