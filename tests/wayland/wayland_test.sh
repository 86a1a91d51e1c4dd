#!/usr/bin/env bash
# wayland_test.sh PROGRAM: runs the tests in PROGRAM under a Wayland compositor that fills a virtual
# screen, whose pointer is theirs to move.
set -euo pipefail
# shellcheck source=../../scripts/virtual_screen.sh
source "$(dirname "$0")/../../scripts/virtual_screen.sh"
open_bare_screen 1200x450
xdotool mousemove 1150 10  # from outside, the compositor takes the place that it comes in at
export XDG_RUNTIME_DIR=$screen_folder
printf '[shell]\npanel-position=none\n[core]\nidle-time=0\n' >"$screen_folder/weston.ini"
weston --backend=x11-backend.so --width=1100 --height=450 --use-pixman --socket=wayland \
  --config="$screen_folder/weston.ini" >"$screen_folder/weston.log" 2>&1 &
compositor=$!
trap 'kill "$compositor" 2>/dev/null || true; close_screen' EXIT
wait_until test -S "$screen_folder/wayland" || { cat "$screen_folder/weston.log" >&2; exit 1; }
WAYLAND_DISPLAY=wayland QT_QPA_PLATFORM=wayland "$1"
