#!/usr/bin/env bash
# Sets up, builds and runs the whole test suite, then each fuzz target for a short while.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
bash scripts/build.sh
build_dir=${ORVANE_BUILD_DIR:-build}
(cd "$build_dir" && ctest --output-on-failure -j"$(nproc)" --timeout 300)
# Each test executable once more, whole: cases must not depend on running alone.
bash scripts/run-whole-tests.sh "$build_dir"
bash scripts/fuzz-ci.sh
