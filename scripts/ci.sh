#!/usr/bin/env bash
# CI on a clean clone: the README's test command (set-up, build, the whole suite), the same
# suite built with AddressSanitizer and UndefinedBehaviorSanitizer, then the pool and library
# tests built with ThreadSanitizer. Prints how long each step took.
set -euo pipefail
cd "$(dirname "$0")/.."

step() {
  local name=$1 start=$SECONDS
  shift
  echo "ci: $name"
  "$@"
  echo "ci: $name took $(((SECONDS - start) / 60)) min $(((SECONDS - start) % 60)) s"
}

step "set-up, build and test" bash scripts/test.sh
step "ASan+UBSan build and test" bash scripts/sanitize.sh address,undefined
step "TSan build and test (pool, library)" bash scripts/sanitize.sh thread
