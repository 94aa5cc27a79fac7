// Symbol visibility of the varion library.
#pragma once

#if defined(VARION_STATIC)
#  define VARION_API
#elif defined(_WIN32)
#  if defined(VARION_BUILDING)
#    define VARION_API __declspec(dllexport)
#  else
#    define VARION_API __declspec(dllimport)
#  endif
#else
#  define VARION_API __attribute__((visibility("default")))
#endif
