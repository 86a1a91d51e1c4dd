#!/usr/bin/env bash
# window_bench.sh BENCH KELVO PACK [ROUNDS]: the window's benchmark on a virtual screen.
set -euo pipefail
# shellcheck source=virtual_screen.sh
source "$(dirname "$0")/virtual_screen.sh"
open_screen 1024x768
mkdir -p "$screen_folder/program"
cp "$2" "$screen_folder/program/kelvo"
printf '[Settings]\nPlayMusic=0\n' >"$screen_folder/program/kelvo.ini"
export XDG_DATA_HOME="$screen_folder/data" XDG_CONFIG_HOME="$screen_folder/config"
export SDL_AUDIODRIVER=dummy
"$1" "$screen_folder/program/kelvo" "$3" "${@:4}"
