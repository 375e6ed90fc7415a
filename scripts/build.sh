#!/usr/bin/env bash
# Installs what is missing, configures and builds Orvane into build/ (or $ORVANE_BUILD_DIR).
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
build_dir=${ORVANE_BUILD_DIR:-build}
cmake -S . -B "$build_dir" -G Ninja -DORVANE_WERROR=ON "$@" >/dev/null
cmake --build "$build_dir" -- -j"$(nproc)"
