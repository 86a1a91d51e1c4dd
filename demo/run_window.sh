#!/usr/bin/env bash
# run_window.sh KELVO PACK PICTURE: opens PACK in the window. With a display the rest is yours;
# without one the window comes up on a virtual screen, Install is pressed, a picture of it is
# saved, and it is closed again. WINEPREFIX says where the game is.
set -euo pipefail
kelvo=$1 pack=$2 picture=$3

if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
  echo "The window is open. Press Install, and close it."
  exec "$kelvo" "$pack"
fi

# shellcheck source=../scripts/virtual_screen.sh
source "$(dirname "$0")/../scripts/virtual_screen.sh"
open_screen 800x700
# Nothing of this run shall stay in the user's desktop.
export XDG_DATA_HOME="$screen_folder/data" SDL_AUDIODRIVER=dummy
"$kelvo" "$pack" &
program=$!
wait_until window_is_there 'moddock // modpack'
click 'moddock // modpack' 152 549
wait_until window_is_there '^KELVO$'
sleep 0.5
picture "$picture"
press_key '^KELVO$' Return
wait_until window_is_gone '^KELVO$'
sleep 1
press_key 'moddock // modpack' alt+F4
wait "$program"
echo "There is no display: the window was run on a virtual screen, see $picture."
