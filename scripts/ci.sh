#!/usr/bin/env bash
# CI on a clean clone: the README's test command (set-up, build, the whole suite), then the
# same suite built with AddressSanitizer and UndefinedBehaviorSanitizer. Prints how long each
# step took. The ThreadSanitizer run (scripts/sanitize.sh thread) is a third build of most of
# the tree, too long for CI on two cores; it is run by hand (see the README).
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
