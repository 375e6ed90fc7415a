#!/usr/bin/env bash
# Installs the Debian packages Orvane builds, runs and tests with, plus any packages named as
# arguments (bench/setup.sh adds the benchmarks' own). Quiet and quick when all of them are
# already there; otherwise installs the missing ones without recommends.
# The sanitizer runtimes (libasan, libubsan, libtsan) come with g++.
set -euo pipefail

packages=(
  g++ cmake ninja-build pkg-config ccache
  libgtest-dev libgmock-dev
  libicu-dev libxml2-dev libsqlite3-dev
  qt6-base-dev libqt6sql6-sqlite qt6-image-formats-plugins qt6-svg-dev
  libtag1-dev libplist-dev qtkeychain-qt6-dev libsecret-1-0
  libx11-dev libxcb1-dev libxkbcommon-dev libxkbcommon-x11-dev xkb-data
  fonts-dejavu-core gnome-keyring dbus
  mpv mpv-mpris xvfb xauth xdotool
  ffmpeg python3 python3-mutagen
  clang libclang-rt-14-dev
  "$@"
)

missing=()
for package in "${packages[@]}"; do
  status=$(dpkg-query -W -f='${Status}' "$package" 2>/dev/null || true)
  [[ "$status" == "install ok installed" ]] || missing+=("$package")
done
[[ ${#missing[@]} -eq 0 ]] && exit 0

echo "setup: installing ${missing[*]}"
sudo_cmd=()
[[ $(id -u) -eq 0 ]] || sudo_cmd=(sudo)
export DEBIAN_FRONTEND=noninteractive
"${sudo_cmd[@]}" apt-get update -qq
"${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
echo "setup: done"
