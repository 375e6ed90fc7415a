#!/usr/bin/env bash
# Sets up, builds and starts Orvane.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
bash scripts/build.sh
build_dir=${ORVANE_BUILD_DIR:-build}
# Without a session bus (a bare X session, a fresh login over ssh) Orvane gets one of its own,
# so that it can follow a player on it.
if [[ -z "${DBUS_SESSION_BUS_ADDRESS:-}" ]]; then
  exec dbus-run-session -- "$build_dir/src/app/orvane"
fi
exec "$build_dir/src/app/orvane"
