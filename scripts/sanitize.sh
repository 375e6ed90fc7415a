#!/usr/bin/env bash
# Builds the test suite with sanitizers and runs it (after scripts/setup.sh; the runtimes come
# with g++). Any finding fails the test that triggered it.
#   scripts/sanitize.sh                    ASan + UBSan, the whole suite, in build-asan/
#   scripts/sanitize.sh thread             TSan, the pool and library tests, in build-tsan/
# ORVANE_SANITIZE_BUILD_DIR overrides the folder.
set -euo pipefail
cd "$(dirname "$0")/.."
sanitizers=${1:-address,undefined}
targets=()
labels=
case $sanitizers in
  thread)
    build_dir=${ORVANE_SANITIZE_BUILD_DIR:-build-tsan}
    # The two suites with threads of their own: the organizer's worker and the database
    # connections it shares with the library.
    targets=(test_pool test_library)
    labels='^test_(pool|library)$' ;;
  *)
    build_dir=${ORVANE_SANITIZE_BUILD_DIR:-build-asan} ;;
esac

cmake -S . -B "$build_dir" -G Ninja -DORVANE_WERROR=ON -DORVANE_SANITIZE="$sanitizers" >/dev/null
cmake --build "$build_dir" -- -j"$(nproc)" "${targets[@]}"
status=0
ctest --test-dir "$build_dir" --output-on-failure -j"$(nproc)" --timeout 900 ${labels:+-L "$labels"} \
  || status=$?

# Every report starts with one of these lines, whichever process (a test, orvane-cli) made it.
findings=$(grep -cE '(ERROR: (Address|Leak)Sanitizer|WARNING: ThreadSanitizer|: runtime error: )' \
  "$build_dir/Testing/Temporary/LastTest.log" || true)
echo "sanitize ($sanitizers): $findings finding(s) reported"
[[ $findings -eq 0 ]] || status=1
exit "$status"
