#!/usr/bin/env bash
# CI: every fuzz target for a short, bounded time over its committed seed corpus
# (FUZZ_SECONDS each, 30 by default). Fails on the first target that crashes.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${FUZZ_SECONDS:-30}
mkdir -p build-fuzz
for folder in fuzz/corpus/*/; do
  target=$(basename "$folder")
  echo "fuzz-ci: $target for ${seconds} s"
  # libFuzzer reports every new input; the last lines hold the figures and any crash.
  if ! bash scripts/fuzz.sh "$target" "$seconds" >"build-fuzz/$target.log" 2>&1; then
    tail -n 60 "build-fuzz/$target.log" >&2
    echo "fuzz-ci: $target failed; the input is in build-fuzz/artifacts/" >&2
    exit 1
  fi
  grep -E '^stat::number_of_executed_units' "build-fuzz/$target.log" || true
done
