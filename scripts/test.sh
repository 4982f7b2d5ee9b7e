#!/usr/bin/env bash
# Builds Qel with its tests and runs them: `scripts/test.sh` (debug build) or
# `scripts/test.sh asan` (AddressSanitizer + UndefinedBehaviorSanitizer build) or
# `scripts/test.sh portable` (portable loops instead of SIMD) or
# `scripts/test.sh clang` (clang++ 64-bit) or
# `scripts/test.sh fuzz` (clang++ libFuzzer targets, each run 20 s from its corpus under ASan + UBSan) or
# `scripts/test.sh m32` (g++ -m32, 32-bit x86; without the tool and the Python package) or
# `scripts/test.sh tsan` (ThreadSanitizer: builds only the library and its concurrency test) or
# `scripts/test.sh mingw` (Windows x86-64 cross build, the whole suite under wine64) or
# `scripts/test.sh mingw32` (Windows 32-bit x86 cross build: qel.dll and its export check only).
set -euo pipefail
cd "$(dirname "$0")/.."
preset="${1:-dev}"
bash scripts/deps.sh "$preset"
cmake --workflow --preset "$preset"
