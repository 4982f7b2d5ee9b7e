#!/usr/bin/env bash
# Builds Qel with its tests and runs them: `scripts/test.sh` (debug build) or
# `scripts/test.sh asan` (AddressSanitizer + UndefinedBehaviorSanitizer build) or
# `scripts/test.sh portable` (portable loops instead of SIMD).
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/deps.sh
preset="${1:-dev}"
cmake --workflow --preset "$preset"
