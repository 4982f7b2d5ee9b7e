#!/usr/bin/env bash
# Regenerates tests/golden/digests.txt, the golden output digests, from a 64-bit Linux debug build
# (build/dev, the dev preset). Run it after a deliberate change of behaviour, check the diff names
# only the functions you meant to change, and commit the list with the change.
set -euo pipefail
cd "$(dirname "$0")/.."
cmake --preset dev >/dev/null
cmake --build build/dev --target qel_test_golden_digests
QEL_GOLDEN_REGENERATE="$PWD/tests/golden/digests.txt" \
  build/dev/tests/qel_test_golden_digests --gtest_filter=GoldenDigests.Regenerate
git --no-pager diff --stat -- tests/golden/digests.txt || true
