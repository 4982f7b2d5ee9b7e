#!/usr/bin/env bash
# Builds the release library and the qel tool, then runs the tool on the bundled photograph:
# to a YUV420P camera frame and back, and to grey. Outputs land in build/release/demo/.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/deps.sh
cmake --workflow --preset demo
