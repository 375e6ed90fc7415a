#!/usr/bin/env bash
# Configures and builds Orvane into build/ (or $ORVANE_BUILD_DIR); extra arguments go to CMake.
# Installs nothing: scripts/setup.sh does that (run.sh and test.sh call it first).
set -euo pipefail
cd "$(dirname "$0")/.."
build_dir=${ORVANE_BUILD_DIR:-build}
cmake -S . -B "$build_dir" -G Ninja -DORVANE_WERROR=ON "$@" >/dev/null
cmake --build "$build_dir" -- -j"$(nproc)"
