#!/usr/bin/env bash
# Builds the fuzz targets with clang into build-fuzz/ and runs one for the given seconds.
#   scripts/fuzz.sh TARGET SECONDS [libFuzzer options...]   e.g. scripts/fuzz.sh regex 60
# TARGET is a folder of fuzz/corpus (propertylist, regex). The committed seeds are read, never
# changed; what the run finds goes to build-fuzz/corpus/TARGET, and an input that crashes to
# build-fuzz/artifacts/ (reproduce: build-fuzz/fuzz_TARGET FILE). Exit status 0 when nothing
# crashed.
set -euo pipefail
cd "$(dirname "$0")/.."
if [[ $# -lt 2 ]]; then
  echo "usage: scripts/fuzz.sh TARGET SECONDS [libFuzzer options...]" >&2
  exit 2
fi
target=$1
seconds=$2
shift 2
if [[ ! -d fuzz/corpus/$target ]]; then
  echo "fuzz.sh: no target $target; there are: $(ls fuzz/corpus | tr '\n' ' ')" >&2
  exit 2
fi
bash scripts/setup.sh
cmake -S fuzz -B build-fuzz -G Ninja -DCMAKE_CXX_COMPILER=clang++ >/dev/null
cmake --build build-fuzz -j2 --target "fuzz_$target" >/dev/null
mkdir -p "build-fuzz/corpus/$target" build-fuzz/artifacts
# One input at most 10 s, 2 GB of memory: slower or bigger is a finding as well.
exec "build-fuzz/fuzz_$target" "build-fuzz/corpus/$target" "fuzz/corpus/$target" \
  -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -print_final_stats=1 \
  -artifact_prefix="build-fuzz/artifacts/$target-" "$@"
