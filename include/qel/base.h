// Qel — what every public header shares: the export macro and the rectangle record.
#ifndef QEL_BASE_H
#define QEL_BASE_H

#include <cstdint>

// QEL_API marks the library's exported functions, and nothing else is exported: the library is
// built with hidden visibility by default. Functions are free functions in the global namespace
// with C++ linkage (overloads share a name) and the platform's default C calling convention.
#if defined(QEL_STATIC)
#  define QEL_API
#elif defined(_WIN32) || defined(__CYGWIN__)
#  if defined(QEL_BUILDING_LIBRARY)
#    define QEL_API __declspec(dllexport)
#  else
#    define QEL_API __declspec(dllimport)
#  endif
#else
#  define QEL_API __attribute__((visibility("default")))
#endif

#if defined(_WIN32)
// On Windows the rectangle record is the system's own.
#  ifndef WIN32_LEAN_AND_MEAN
#    define WIN32_LEAN_AND_MEAN
#  endif
#  ifndef NOMINMAX
#    define NOMINMAX
#  endif
#  include <windows.h>
// windef.h defines `near` and `far` away (as nothing); the library's own sources, its tests and its
// tool use them as names (an application may define QEL_UNDEF_NEAR_FAR for the same).
#  if defined(QEL_BUILDING_LIBRARY) || defined(QEL_UNDEF_NEAR_FAR)
#    undef near
#    undef far
#  endif
#else
/// Rectangle record, layout-compatible with the Windows one: left, top, right, bottom as 32-bit
/// signed integers. Qel treats both right and bottom as inside the rectangle.
struct tagRECT {
    int32_t left;
    int32_t top;
    int32_t right;
    int32_t bottom;
};
#endif

#endif  // QEL_BASE_H
