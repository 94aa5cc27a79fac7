# GoogleTest for the test programs: the installed package on the build
# machine, or, in a cross build, GoogleTest compiled from source with the
# target's toolchain (Debian's googletest package puts the sources in
# /usr/src/googletest).
if(CMAKE_CROSSCOMPILING)
  set(VARION_GTEST_SOURCE_DIR /usr/src/googletest CACHE PATH "GoogleTest sources for cross builds")
  if(NOT EXISTS ${VARION_GTEST_SOURCE_DIR}/CMakeLists.txt)
    message(FATAL_ERROR "No GoogleTest sources in ${VARION_GTEST_SOURCE_DIR} (install googletest)")
  endif()
  set(BUILD_GMOCK OFF CACHE BOOL "" FORCE)
  set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
  set(gtest_force_shared_crt ON CACHE BOOL "" FORCE)
  # SYSTEM: the project's warnings do not apply to GoogleTest's headers.
  add_subdirectory(${VARION_GTEST_SOURCE_DIR} ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
  if(NOT TARGET GTest::gtest)  # GoogleTest 1.11 and later name them itself
    add_library(GTest::gtest ALIAS gtest)
    add_library(GTest::gtest_main ALIAS gtest_main)
  endif()
else()
  find_package(GTest REQUIRED)
endif()
