#!/usr/bin/env bash
# Kills `orvane-cli organize 1` with SIGKILL at random moments while it rewrites tags, and checks
# after every kill that nothing was lost:
#  - every file the run touched still decodes completely (ffmpeg prints no error), and every
#    file it did not touch is exactly as it was;
#  - every file holds either the old or the new artist, never something else;
#  - after `library update`, `library list --json` agrees with what mutagen reads in each file;
#  - no temporary file is left beside the music after the update.
# Usage: scripts/killtest.sh [FILES] [KILLS]   (default 3000 files, 30 kills)
# ORVANE_CLI names the program (default build/src/cli/orvane-cli). Needs ffmpeg and
# python3-mutagen. Everything happens in a temporary folder with its own HOME and XDG folders.
set -euo pipefail

files=${1:-3000}
kills=${2:-30}
root=$(cd "$(dirname "$0")/.." && pwd)
cli=${ORVANE_CLI:-$root/build/src/cli/orvane-cli}
python=/usr/bin/python3
[[ -x $cli ]] || { echo "killtest: no orvane-cli at $cli (build first or set ORVANE_CLI)" >&2; exit 2; }

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
trap 'echo "killtest: failed at line $LINENO: $BASH_COMMAND" >&2' ERR
export HOME=$work/home XDG_DATA_HOME=$work/data XDG_CONFIG_HOME=$work/config \
       XDG_CACHE_HOME=$work/cache XDG_RUNTIME_DIR=$work/runtime
mkdir -p "$HOME" "$XDG_DATA_HOME" "$XDG_CONFIG_HOME" "$XDG_CACHE_HOME" "$XDG_RUNTIME_DIR"
chmod 700 "$XDG_RUNTIME_DIR"
music=$work/music
mkdir -p "$music"

# A few real encodings of sine tones, copied and tagged one by one: the artists differ in length
# ("ft." against "featuring"), so saves make tags grow and shrink across padding.
for length in 1 2; do
  for format in mp3 m4a flac; do
    ffmpeg -loglevel error -y -f lavfi -i "sine=f=$((300 + length * 110)):d=$length" \
      "$work/template$length.$format"
  done
done
"$python" - "$work" "$music" "$files" <<'EOF'
import json, os, shutil, sys
import mutagen
work, music, count = sys.argv[1], sys.argv[2], int(sys.argv[3])
formats = ["mp3", "m4a", "flac"]
manifest = {}
for i in range(count):
    folder = os.path.join(music, "Artist %03d" % (i % 97))
    os.makedirs(folder, exist_ok=True)
    fmt = formats[i % 3]
    path = os.path.join(folder, "track %05d.%s" % (i, fmt))
    shutil.copyfile(os.path.join(work, "template%d.%s" % (1 + i % 2, fmt)), path)
    f = mutagen.File(path, easy=True)
    if f.tags is None:
        f.add_tags()
    f["title"] = "Song %d" % i
    f["artist"] = "Artist %d ft. Guest %d" % (i, i * 7)
    f["album"] = "Album %d" % (i % 97)
    f.save()
    manifest[path] = ["Artist %d ft. Guest %d" % (i, i * 7),
                      "Artist %d featuring Guest %d" % (i, i * 7)]
json.dump(manifest, open(os.path.join(work, "manifest.json"), "w"))
EOF

"$cli" library add "$music" >/dev/null

# Size, modification time and inode of every file, to find those a run touched.
snapshot() { find "$music" -type f -printf '%p\t%s\t%T@\t%i\n' | sort >"$1"; }

# Decodes the given files (one a line); prints the names of damaged ones. ffmpeg takes them 40
# at a time, two such batches at once, since starting it costs more than decoding a short file;
# a batch with any error is decoded again file by file to name the culprits.
decode_batch() {
  local arguments=() outputs=() i=0 file
  for file; do
    arguments+=(-i "$file")
    outputs+=(-map "$i:a" -f null -)
    i=$((i + 1))
  done
  [[ -z $(ffmpeg -nostdin -v error "${arguments[@]}" "${outputs[@]}" 2>&1) ]] && return
  for file; do
    [[ -z $(ffmpeg -nostdin -v error -i "$file" -f null - 2>&1) ]] || echo "$file"
  done
}
export -f decode_batch
decode() {
  xargs -d '\n' -r -P 2 -n 40 bash -c 'decode_batch "$@"' bash
}

# mutagen against the library, and every artist either the old or the new one.
compare() {
  "$cli" library update >/dev/null
  "$cli" library list --json >"$work/list.json"
  "$python" - "$work/manifest.json" "$work/list.json" "$music" <<'EOF'
import json, os, sys
import mutagen
manifest = json.load(open(sys.argv[1]))
tracks = {}
for line in open(sys.argv[2]):
    track = json.loads(line)
    tracks[track["location"]] = track
bad = 0
for path, allowed in manifest.items():
    tags = mutagen.File(path, easy=True).tags or {}
    read = {key: (tags.get(key) or [""])[0] for key in ("title", "artist", "album")}
    track = tracks.get(path)
    problems = []
    if read["artist"] not in allowed:
        problems.append("artist %r is neither the old nor the new one" % read["artist"])
    if track is None:
        problems.append("not in the library")
    else:
        for key, column in (("title", "name"), ("artist", "artist"), ("album", "album")):
            if track[column] != read[key]:
                problems.append("library %s %r, file %r" % (column, track[column], read[key]))
    if problems:
        bad += 1
        print("disagreeing: %s: %s" % (path, "; ".join(problems)), file=sys.stderr)
leftovers = [os.path.join(d, n) for d, _, names in os.walk(sys.argv[3])
             for n in names if ".orvane-" in n]
for leftover in leftovers:
    print("left behind: %s" % leftover, file=sys.stderr)
print(bad + len(leftovers))
EOF
}

run_organize() { # direction: 0 turns "ft." into "featuring", 1 back
  local search=ft. replace=featuring
  if (($1)); then search=featuring replace=ft.; fi
  "$cli" organize 1 --all --set "yourSearchText=$search" --set "yourReplaceText=$replace" \
    >/dev/null 2>>"$work/organize.log" &
  organize=$!
}

# One uncut run measures how long a run lasts, so kills fall inside runs.
snapshot "$work/before"
start=$(date +%s%N)
run_organize 0
wait "$organize" || { echo "killtest: an uncut run failed:" >&2; cat "$work/organize.log" >&2; exit 1; }
duration_ms=$((($(date +%s%N) - start) / 1000000))
direction=1

damaged=0
disagreeing=0
decoded=0
for ((kill = 1; kill <= kills; kill++)); do
  snapshot "$work/before"
  delay_ms=$((50 + (RANDOM * 32768 + RANDOM) % (duration_ms > 100 ? duration_ms : 100)))
  run_organize $direction
  sleep "$(printf '%d.%03d' $((delay_ms / 1000)) $((delay_ms % 1000)))"
  kill -KILL "$organize" 2>/dev/null || true
  wait "$organize" 2>/dev/null || true
  direction=$((1 - direction))
  snapshot "$work/after"
  # A killed save may leave its hidden half-written copy; it is not music, and the update in
  # compare must remove it (compare reports any that stays).
  touched=$(comm -13 "$work/before" "$work/after" | cut -f1 | grep -v '/\.[^/]*\.orvane-' || true)
  count=$(printf '%s' "$touched" | grep -c . || true)
  decoded=$((decoded + count))
  broken=$(printf '%s\n' "$touched" | grep . | decode || true)
  if [[ -n $broken ]]; then
    printf '%s\n' "$broken" | sed 's/^/damaged: /' >&2
    damaged=$((damaged + $(printf '%s\n' "$broken" | wc -l)))
  fi
  disagreeing=$((disagreeing + $(compare)))
  echo "kill $kill after ${delay_ms} ms: $count files rewritten"
done

# Finally every file, whatever the runs did to it.
all_broken=$(find "$music" -type f | decode || true)
if [[ -n $all_broken ]]; then
  printf '%s\n' "$all_broken" | sed 's/^/damaged: /' >&2
  damaged=$((damaged + $(printf '%s\n' "$all_broken" | wc -l)))
fi
echo "$files files, $kills kills (a run lasts ${duration_ms} ms), $decoded rewritten files decoded"
echo "$damaged damaged, $disagreeing disagreeing"
((damaged == 0 && disagreeing == 0))
