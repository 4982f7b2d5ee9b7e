# Cross-compiling Qel for 32-bit Windows (i686) with MinGW-w64, posix threads (Debian:
# g++-mingw-w64-i686-posix) and SSE2 arithmetic throughout (-msse2 -mfpmath=sse, not the x87
# stack), so that its results are the 64-bit builds' bits. Used by the `mingw32` preset.
set(QEL_MINGW_ARCH i686)
include(${CMAKE_CURRENT_LIST_DIR}/mingw-w64.cmake)
