#!/bin/sh
# Function 25 (embed each album folder's 1500 x 1500 "_Cover A.jpg", scaled to 500) and function 22
# (scale an embedded 1500 x 1500 JPEG to 500 wide) through orvane-cli, beside a plain loop of
# QImage and TagLib doing the same (the floor). Albums of 10 MP3 files.
# Usage: bench/artwork_bench.sh [N] [BUILD_DIR]   (N defaults to 2000)
set -eu
count=${1:-2000}
source_dir=$(cd "$(dirname "$0")/.." && pwd)
bash "$source_dir/bench/setup.sh"
build_dir=${2:-$source_dir/build-art}

cmake -S "$source_dir" -B "$build_dir" -G Ninja -DORVANE_BUILD_BENCHMARKS=ON >/dev/null
cmake --build "$build_dir" --target orvane-cli bench_artwork_floor -j2 >/dev/null

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export HOME="$work/home" XDG_CONFIG_HOME="$work/config" XDG_DATA_HOME="$work/data" XDG_CACHE_HOME="$work/cache"
mkdir -p "$HOME"

ffmpeg -loglevel error -f lavfi -i sine=d=1 -q:a 9 "$work/seed.mp3"
ffmpeg -loglevel error -f lavfi -i testsrc=size=1500x1500 -frames:v 1 -q:v 2 "$work/cover.jpg"
/usr/bin/python3 - "$work" "$count" <<'PY'
import os, shutil, sys
work, count = sys.argv[1], int(sys.argv[2])
for side in ("cli", "floor"):
    for i in range(count):
        album = "%s/%s/Album %04d" % (work, side, i // 10)
        if i % 10 == 0:
            os.makedirs(album)
            shutil.copyfile(work + "/cover.jpg", album + "/_Cover A.jpg")
        shutil.copyfile(work + "/seed.mp3", "%s/%05d.mp3" % (album, i))
PY

cli="$build_dir/src/cli/orvane-cli"
floor="$build_dir/bench/bench_artwork_floor"
seconds() { date +%s.%N; }
rate() { awk -v n="$count" -v a="$1" -v b="$2" -v what="$3" \
    'BEGIN { printf "%-34s %6d files %8.2f s %9.0f files/s\n", what, n, b - a, n / (b - a) }'; }

"$cli" library add "$work/cli" >/dev/null
t0=$(seconds)
"$cli" organize 25 "$work/cli" >/dev/null
t1=$(seconds)
rate "$t0" "$t1" "orvane-cli organize 25 (embed 500)"
"$floor" embed 500 "$work/floor"

# The 1500 x 1500 picture embedded as it is, then scaled.
"$cli" organize 25 "$work/cli" --set yourFrontArtworkSize=0 --set yourFrontArtworkReplace=true >/dev/null
"$floor" embed 0 "$work/floor" >/dev/null
t2=$(seconds)
"$cli" organize 22 "$work/cli" --set yourScaleArtworkTargetPosition=1 --set yourScaleArtworkTargetSize=500 >/dev/null
t3=$(seconds)
rate "$t2" "$t3" "orvane-cli organize 22 (scale 500)"
"$floor" scale 500 "$work/floor"

/usr/bin/python3 "$source_dir/tests/functions/embeddedpictures.py" "$work/cli/Album 0000/00000.mp3"
