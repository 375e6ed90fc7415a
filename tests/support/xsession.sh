#!/usr/bin/env bash
# Runs a command on a private X server (1280x800, 24 bits) and a private session bus, and exits
# with the command's status. Xvfb chooses a free display itself (-displayfd), so two of these
# started at once never land on the same display, as `xvfb-run -a` can.
set -euo pipefail
if [[ $# -eq 0 ]]; then
  echo "usage: xsession.sh COMMAND [ARGUMENTS...]" >&2
  exit 2
fi
folder=$(mktemp -d)
mkfifo "$folder/display"
# The server holds none of our output streams, so nothing waits on it should it outlive us.
Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp 3>"$folder/display" >"$folder/xvfb.log" 2>&1 </dev/null &
server=$!
trap 'kill "$server" 2>/dev/null; wait "$server" 2>/dev/null; rm -rf "$folder"' EXIT
trap 'exit 143' TERM
trap 'exit 130' INT
display=
read -r display <"$folder/display" || true
if [[ -z $display ]]; then
  echo "xsession.sh: Xvfb did not start:" >&2
  cat "$folder/xvfb.log" >&2
  exit 1
fi
status=0
DISPLAY=":$display" dbus-run-session -- "$@" || status=$?
exit "$status"
