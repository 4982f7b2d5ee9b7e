#!/usr/bin/env bash
# Installs what building and testing Qel needs on Debian/Ubuntu, when it is missing:
# a C++17 compiler, CMake, Ninja, GoogleTest and Google Benchmark, GNU Unifont (the source of the
# generated font file hzk16.dat), for the qel tool only libpng and libjpeg (libjpeg-turbo), and for
# the Python package pybind11, the Python development files, numpy, pytest, hypothesis and dask
# (Debian's own python3 packages, for the interpreter /usr/bin/python3).
set -euo pipefail
need=()
command -v c++ >/dev/null 2>&1 || need+=(g++)
command -v cmake >/dev/null 2>&1 || need+=(cmake)
command -v ninja >/dev/null 2>&1 || need+=(ninja-build)
[ -f /usr/include/gtest/gtest.h ] || need+=(libgtest-dev)
[ -f /usr/include/benchmark/benchmark.h ] || need+=(libbenchmark-dev)
[ -f /usr/share/unifont/unifont.hex ] || need+=(unifont)
[ -f /usr/include/png.h ] || need+=(libpng-dev)
# libjpeg62-turbo-dev on Debian; Ubuntu names it libjpeg-turbo8-dev, which libjpeg-dev pulls in.
jpeg_dev=libjpeg62-turbo-dev
apt-cache show "$jpeg_dev" >/dev/null 2>&1 || jpeg_dev=libjpeg-dev
[ -f /usr/include/jpeglib.h ] || need+=("$jpeg_dev")
# The release-archive test: pkg-config for its second consumer, dpkg-shlibdeps (dpkg-dev) for the
# .deb's dependencies.
command -v pkg-config >/dev/null 2>&1 || need+=(pkg-config)
command -v dpkg-shlibdeps >/dev/null 2>&1 || need+=(dpkg-dev)
# OpenCV only for the side-by-side benchmark (scripts/deps.sh bench); never for the library or tests.
if [ "${1:-}" = "bench" ]; then
  [ -f /usr/include/opencv4/opencv2/imgproc.hpp ] || need+=(libopencv-dev)
fi
# The clang++ build (scripts/test.sh clang) and the 32-bit x86 build (scripts/test.sh m32), which
# compiles GoogleTest from Debian's sources in /usr/src/googletest.
if [ "${1:-}" = "clang" ]; then
  command -v clang++ >/dev/null 2>&1 || need+=(clang)
fi
# The fuzzers (scripts/test.sh fuzz): clang++ with libFuzzer and the sanitizer runtimes.
if [ "${1:-}" = "fuzz" ]; then
  command -v clang++ >/dev/null 2>&1 || need+=(clang)
  clang_rt=$(clang++ -print-resource-dir 2>/dev/null || true)
  ls "$clang_rt"/lib/linux/libclang_rt.fuzzer-*.a >/dev/null 2>&1 || need+=(libclang-rt-14-dev)
fi
if [ "${1:-}" = "m32" ]; then
  dpkg -s g++-multilib >/dev/null 2>&1 || need+=(g++-multilib)
  [ -f /usr/src/googletest/CMakeLists.txt ] || need+=(googletest)
fi
# The Windows cross build (scripts/test.sh mingw): MinGW-w64 with posix threads, and wine64 to run it.
if [ "${1:-}" = "mingw" ]; then
  command -v x86_64-w64-mingw32-g++-posix >/dev/null 2>&1 || need+=(g++-mingw-w64-x86-64-posix)
  [ -x /usr/lib/wine/wine64 ] || need+=(wine64)
  [ -f /usr/src/googletest/CMakeLists.txt ] || need+=(googletest)
fi
# The 32-bit Windows cross build (scripts/test.sh mingw32): builds qel.dll and checks its exports.
if [ "${1:-}" = "mingw32" ]; then
  command -v i686-w64-mingw32-g++-posix >/dev/null 2>&1 || need+=(g++-mingw-w64-i686-posix)
  command -v x86_64-w64-mingw32-objdump >/dev/null 2>&1 || command -v i686-w64-mingw32-objdump >/dev/null 2>&1 ||
    need+=(binutils-mingw-w64-i686)
fi
[ -f /usr/include/pybind11/pybind11.h ] || need+=(pybind11-dev)
[ -f /usr/bin/python3 ] || need+=(python3)
python_has() { /usr/bin/python3 -c "import $1" >/dev/null 2>&1; }
pyinc=$(/usr/bin/python3 -c 'import sysconfig; print(sysconfig.get_paths()["include"])' 2>/dev/null || true)
[ -n "$pyinc" ] && [ -f "$pyinc/Python.h" ] || need+=(python3-dev)
python_has numpy || need+=(python3-numpy)
python_has pytest || need+=(python3-pytest)
python_has hypothesis || need+=(python3-hypothesis)
python_has dask || need+=(python3-dask)
python_has distributed || need+=(python3-distributed)
python_has setuptools || need+=(python3-setuptools)
command -v pip3 >/dev/null 2>&1 || /usr/bin/python3 -m pip --version >/dev/null 2>&1 || need+=(python3-pip)
if [ ${#need[@]} -gt 0 ]; then
  sudo=""
  [ "$(id -u)" -eq 0 ] || sudo="sudo"
  echo "installing: ${need[*]}"
  $sudo apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq "${need[@]}"
fi
