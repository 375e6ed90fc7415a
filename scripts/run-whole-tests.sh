#!/usr/bin/env bash
# Runs every GoogleTest executable of a build folder once as a whole (no filter), with the
# environment CTest gives its cases, and fails if one of them fails. CTest runs each case in a
# process of its own; this catches a case that only passes because no earlier case ran before
# it in the same process.
# Usage: scripts/run-whole-tests.sh [BUILD_DIR]   (default: $ORVANE_BUILD_DIR or build)
set -euo pipefail
cd "$(dirname "$0")/.."
build_dir=${1:-${ORVANE_BUILD_DIR:-build}}
[ -d "$build_dir" ] || { echo "run-whole-tests: no build folder $build_dir; build first (scripts/build.sh)" >&2; exit 2; }

# One line per executable: the executable, then its environment (as CTest would set it).
plan=$(ctest --test-dir "$build_dir" --show-only=json-v1 | /usr/bin/python3 -c '
import json, sys
seen = {}
for test in json.load(sys.stdin)["tests"]:
    command = test.get("command") or []
    if not command or not any(a.startswith("--gtest_filter=") for a in command[1:]):
        continue  # scripts and checks, not GoogleTest cases
    if command[0] in seen:
        continue
    environment = []
    for prop in test.get("properties", []):
        if prop["name"] == "ENVIRONMENT":
            environment = prop["value"]
    seen[command[0]] = environment
for executable, environment in seen.items():
    print("\t".join([executable] + environment))
')

[ -n "$plan" ] || { echo "run-whole-tests: no GoogleTest executables found in $build_dir" >&2; exit 2; }

failed=()
count=0
while IFS=$'\t' read -r -a fields; do
    executable=${fields[0]}
    count=$((count + 1))
    log=$(mktemp)
    if env "${fields[@]:1}" "$executable" --gtest_brief=1 >"$log" 2>&1; then
        echo "ok     $(basename "$executable")"
    else
        echo "FAILED $(basename "$executable")"
        grep -E '^\[  FAILED  \]|Failure$|error:' "$log" | head -20 || true
        failed+=("$executable")
    fi
    rm -f "$log"
done <<<"$plan"

if [ ${#failed[@]} -gt 0 ]; then
    echo "run-whole-tests: ${#failed[@]} of $count test executables failed when run whole:" >&2
    printf '  %s\n' "${failed[@]}" >&2
    exit 1
fi
echo "run-whole-tests: all $count test executables passed run whole"
