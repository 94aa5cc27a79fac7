# Cross build for 32-bit Windows with Debian's mingw-w64 toolchain
# (g++-mingw-w64-i686):
#   cmake -S . -B build-win -DCMAKE_TOOLCHAIN_FILE=cmake/toolchains/mingw-i686.cmake
set(CMAKE_SYSTEM_PROCESSOR x86)
set(VARION_MINGW_TRIPLE i686-w64-mingw32)
include(${CMAKE_CURRENT_LIST_DIR}/mingw-common.cmake)

# 32-bit programs cannot run here (no 32-bit Wine): the build is checked, not run.
