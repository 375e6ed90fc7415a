#!/bin/sh
# Function 1 (replace "ft." with "feat." in artist and name, mode 1) through orvane-cli, beside a
# plain TagLib loop doing the same edit (the floor) and kid3-cli's closest batch edit.
# Usage: bench/function0001_bench.sh [N] [BUILD_DIR]   (N defaults to 2000)
set -eu
count=${1:-2000}
source_dir=$(cd "$(dirname "$0")/.." && pwd)
bash "$source_dir/bench/setup.sh"
build_dir=${2:-$source_dir/build-f1}

cmake -S "$source_dir" -B "$build_dir" -G Ninja -DORVANE_BUILD_BENCHMARKS=ON >/dev/null
cmake --build "$build_dir" --target orvane-cli bench_function0001_floor -j2 >/dev/null

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export HOME="$work/home" XDG_CONFIG_HOME="$work/config" XDG_DATA_HOME="$work/data" XDG_CACHE_HOME="$work/cache"
mkdir -p "$HOME" "$work/cli" "$work/floor" "$work/kid3"

# One second of sine, copied N times into each folder; then one python process tags them all:
# every artist carries "ft.", every other title too.
ffmpeg -loglevel error -f lavfi -i sine=d=1 -q:a 9 "$work/seed.mp3"
/usr/bin/python3 - "$work" "$count" <<'PY'
import shutil, sys
from mutagen.easyid3 import EasyID3
from mutagen.id3 import ID3
work, count = sys.argv[1], int(sys.argv[2])
seed = work + "/seed.mp3"
ID3().save(seed)
for i in range(count):
    name = "%05d.mp3" % i
    first = work + "/cli/" + name
    shutil.copyfile(seed, first)
    tags = EasyID3(first)
    tags["artist"] = "Artist %d ft. Guest %d" % (i // 10, i % 7)
    tags["title"] = ("Song %d ft. Friend" if i % 2 else "Song %d") % i
    tags.save()
    shutil.copyfile(first, work + "/floor/" + name)
    shutil.copyfile(first, work + "/kid3/" + name)
PY

seconds() { date +%s.%N; }
rate() { awk -v n="$count" -v a="$1" -v b="$2" -v what="$3" \
    'BEGIN { printf "%-34s %6d files %8.2f s %9.0f files/s\n", what, n, b - a, n / (b - a) }'; }

t0=$(seconds)
"$build_dir/src/cli/orvane-cli" library add "$work/cli" >/dev/null
t1=$(seconds)
rate "$t0" "$t1" "orvane-cli library add"
"$build_dir/src/cli/orvane-cli" organize 1 "$work/cli" --set yourSearchText=ft. --set yourReplaceText=feat. \
    --set yourSearchMode=1 --set yourAlbum=false --set yourAlbumArtist=false >/dev/null
t2=$(seconds)
rate "$t1" "$t2" "orvane-cli organize 1"

"$build_dir/bench/bench_function0001_floor" "$work/floor"

# kid3-cli has no text replacement for tags (its replacement map serves file names only); the
# closest batch edit is its tag format: a case conversion of every text frame, saved.
t3=$(seconds)
kid3-cli -c "timeout off" -c "config TagFormat.caseConversion AllFirstLettersUppercase" -c "select all" -c "tagformat" \
    -c "save" "$work/kid3" >/dev/null
t4=$(seconds)
rate "$t3" "$t4" "kid3-cli tag format and save"

/usr/bin/python3 -c "
import sys; from mutagen.easyid3 import EasyID3
for d in ('cli', 'floor', 'kid3'):
    t = EasyID3(sys.argv[1] + '/' + d + '/00001.mp3'); print('%-6s' % d, t['artist'][0], '|', t['title'][0])
" "$work"
