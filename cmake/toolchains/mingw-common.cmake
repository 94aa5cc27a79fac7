# What both mingw-w64 toolchain files share; they set VARION_MINGW_TRIPLE
# and CMAKE_SYSTEM_PROCESSOR first.
set(CMAKE_SYSTEM_NAME Windows)

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
