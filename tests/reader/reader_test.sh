#!/usr/bin/env bash
# reader_test.sh KELVO KVPK MAKE_GAME MAKE_PACK_SOURCE: the built program on a virtual screen, read
# and used by the library of screen readers on a session bus of their own.
set -euo pipefail
here=$(dirname "$0")
# shellcheck source=../../scripts/virtual_screen.sh
source "$here/../../scripts/virtual_screen.sh"
open_screen 900x800
export XDG_RUNTIME_DIR=$screen_folder XDG_DATA_HOME=$screen_folder/data XDG_CONFIG_HOME=$screen_folder/config
export SDL_AUDIODRIVER=dummy QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1 NO_AT_BRIDGE=1 GSETTINGS_BACKEND=memory
export WINEPREFIX=$screen_folder/prefix
mkdir -p "$screen_folder/program" "$screen_folder/empty"
cp "$1" "$screen_folder/program/kelvo"
"$4" "$screen_folder/pack"
"$2" build "$screen_folder/pack" "$screen_folder/demo.kvpk"
"$here/../../demo/make_prefix.sh" "$WINEPREFIX" "$3" >/dev/null 2>&1
reader=$(realpath "$here/reader.py")
cd "$screen_folder/empty"
dbus-run-session -- /usr/bin/python3 "$reader" "$screen_folder/program/kelvo" "$screen_folder/demo.kvpk"
