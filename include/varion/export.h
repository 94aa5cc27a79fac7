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

// The small members of CVarion (include/varion/detail/inline_members.h) are
// inline, so that a conversion between numbers compiles into its caller. A
// Windows DLL must export every member, and GCC does not export the inline
// members of an exported class: on Windows they are ordinary members, defined
// once in the library (the static library too, which is built from the same
// objects as the DLL).
#if defined(_WIN32)
#  define VARION_OUT_OF_LINE_MEMBERS 1
#  define VARION_MEMBER
#  define VARION_MEMBER_FOLD
#  define VARION_MEMBER_CONSTEXPR
#else
#  define VARION_MEMBER inline
#  define VARION_MEMBER_FOLD VARION_FOLD_INLINE
#  define VARION_MEMBER_CONSTEXPR constexpr
#endif
