#!/bin/sh
# Library import and tag write through the bridge, beside a plain TagLib loop (the floor).
# Usage: bench/library_bench.sh [N] [BUILD_DIR]   (N defaults to 2000)
set -eu
count=${1:-2000}
source_dir=$(cd "$(dirname "$0")/.." && pwd)
bash "$source_dir/bench/setup.sh"
build_dir=${2:-$source_dir/build-library}

cmake -S "$source_dir" -B "$build_dir" -G Ninja -DORVANE_BUILD_BENCHMARKS=ON >/dev/null
cmake --build "$build_dir" --target bench_library -j2 >/dev/null

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/music" "$work/floor"
# One second of sine, copied N times: the tags differ only in what the run writes.
ffmpeg -loglevel error -f lavfi -i sine=d=1 -q:a 9 "$work/seed.mp3"
i=0
while [ "$i" -lt "$count" ]; do
    cp "$work/seed.mp3" "$work/music/$(printf %05d "$i").mp3"
    cp "$work/seed.mp3" "$work/floor/$(printf %05d "$i").mp3"
    i=$((i + 1))
done
XDG_DATA_HOME="$work/data" "$build_dir/bench/bench_library" "$work/music" "$work/floor" \
    "$work/library.sqlite"
