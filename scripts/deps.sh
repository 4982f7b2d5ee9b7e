#!/usr/bin/env bash
# Installs what building and testing Qel needs on Debian/Ubuntu, when it is missing:
# a C++17 compiler, CMake, Ninja, GoogleTest and Google Benchmark, GNU Unifont (the source of the
# generated font file hzk16.dat), and for the qel tool only libpng and libjpeg (libjpeg-turbo).
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
# OpenCV only for the side-by-side benchmark (scripts/deps.sh bench); never for the library or tests.
if [ "${1:-}" = "bench" ]; then
  [ -f /usr/include/opencv4/opencv2/imgproc.hpp ] || need+=(libopencv-dev)
fi
if [ ${#need[@]} -gt 0 ]; then
  sudo=""
  [ "$(id -u)" -eq 0 ] || sudo="sudo"
  echo "installing: ${need[*]}"
  $sudo apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq "${need[@]}"
fi
