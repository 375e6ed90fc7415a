#!/usr/bin/env bash
# Sets up, builds and runs the whole test suite.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
bash scripts/build.sh
build_dir=${ORVANE_BUILD_DIR:-build}
cd "$build_dir"
ctest --output-on-failure -j"$(nproc)" --timeout 300
