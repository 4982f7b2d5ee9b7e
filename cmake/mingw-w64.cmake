# Cross-compiling Qel for Windows with MinGW-w64 (Debian: g++-mingw-w64-x86-64-posix, posix
# threads, which GoogleTest needs). QEL_MINGW_ARCH selects x86_64 (default) or i686 (32-bit, see
# mingw-w64-i686.cmake).
#   cmake -B build/mingw64 -G Ninja -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64.cmake -DQEL_BUILD_TESTS=ON \
#         -DQEL_GTEST_SOURCE_DIR=/usr/src/googletest -DQEL_BUILD_PYTHON=OFF
# Tests run under wine64 (CMAKE_CROSSCOMPILING_EMULATOR, Debian's /usr/lib/wine/wine64); the MinGW
# runtime DLLs, qel.dll and GoogleTest's DLLs are found through WINEPATH, which the `mingw` test
# preset sets (see CMakePresets.json).
set(CMAKE_SYSTEM_NAME Windows)
if(NOT DEFINED QEL_MINGW_ARCH)
  set(QEL_MINGW_ARCH x86_64)
endif()
set(CMAKE_SYSTEM_PROCESSOR ${QEL_MINGW_ARCH})
set(triple ${QEL_MINGW_ARCH}-w64-mingw32)
set(CMAKE_C_COMPILER ${triple}-gcc-posix)
set(CMAKE_CXX_COMPILER ${triple}-g++-posix)
set(CMAKE_RC_COMPILER ${triple}-windres)
set(CMAKE_NM ${triple}-nm CACHE FILEPATH "")
set(CMAKE_FIND_ROOT_PATH /usr/${triple})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
if(QEL_MINGW_ARCH STREQUAL "i686")
  # Every target (tests too) computes with SSE2, as the library itself always does on 32-bit x86.
  set(CMAKE_C_FLAGS_INIT "-msse2 -mfpmath=sse")
  set(CMAKE_CXX_FLAGS_INIT "-msse2 -mfpmath=sse")
endif()
if(QEL_MINGW_ARCH STREQUAL "x86_64")
  find_program(QEL_WINE64 wine64 PATHS /usr/lib/wine)
  if(QEL_WINE64)
    set(CMAKE_CROSSCOMPILING_EMULATOR ${QEL_WINE64})
  endif()
endif()
