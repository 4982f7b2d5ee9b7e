#!/usr/bin/env bash
# Builds the release library and the qel tool, then runs the main job on the bundled photograph:
# `qel inspect` finds the coins of samples/coins.bmp, prints their measures and writes the picture
# with each coin boxed and its centre marked to build/release/demo/coins_inspect.png.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/deps.sh
cmake --workflow --preset demo
