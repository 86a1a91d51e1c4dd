#!/usr/bin/env bash
# screenshots.sh KELVO KVPK MAKE_GAME PACK_SOURCE SCALE FOLDER: pictures of the window for README.md
# and docs, taken on a virtual screen at that many device pixels to a pixel.
set -euo pipefail
kelvo=$1 kvpk=$2 make_game=$3 pack_source=$4 scale=$5 pictures=$6
here=$(cd "$(dirname "$0")" && pwd)
# shellcheck source=virtual_screen.sh
source "$here/virtual_screen.sh"
mkdir -p "$pictures"

open_screen "$((900 * scale))x$((800 * scale))"
export QT_SCALE_FACTOR=$scale SDL_AUDIODRIVER=dummy LANG=de_DE.UTF-8
folder=$screen_folder/shots
mkdir -p "$folder/program" "$folder/empty"
export XDG_DATA_HOME="$folder/data" XDG_CONFIG_HOME="$folder/config" WINEPREFIX="$folder/prefix"
cp "$kelvo" "$folder/program/kelvo"
cp -r "$pack_source" "$folder/source"
"$kvpk" build "$folder/source" "$folder/seite.kvpk" >/dev/null
# The same pack without its page.
sed -i '/^Html/d' "$folder/source/pack.ini"
rm "$folder/source/seite.html"
"$kvpk" build "$folder/source" "$folder/ohne.kvpk" >/dev/null
main='moddock // modpack'
cd "$folder/empty"

# start PACK: the program in the middle of the screen, as after a first start.
start() {
  rm -f "$folder/program/kelvo.ini"
  "$folder/program/kelvo" "$@" 2>/dev/null &
  program=$!
  wait_until window_is_there "$main"
  sleep 1
}
stop() {
  kill "$program"
  wait "$program" 2>/dev/null || true
}
# at X Y: the same as click, in the window's own pixels.
at() { click "$main" "$(($1 * scale))" "$(($2 * scale))"; sleep 0.5; }
shot() { picture_of "$main" "$pictures/$1.png"; }

start  # neither a pack nor a game
shot start
stop

game=$("$here/../demo/make_prefix.sh" "$WINEPREFIX" "$make_game" 2>/dev/null)
start "$folder/ohne.kvpk"
at 228 71   # the first mod's tick
at 400 101  # the second mod
shot browsing
at 110 287  # its text
shot description
at 246 549  # the options
sleep 0.5
shot options
stop

start "$folder/seite.kvpk"
shot page
at 433 549  # the about window
wait_until window_is_there 'KVPKI'
sleep 0.3
picture_of 'KVPKI' "$pictures/about.png"
at 30 580  # which closes it
at 340 549  # the chat, with nobody there
wait_until window_is_there 'mod-pack Hilfe'
sleep 0.5
picture_of 'mod-pack Hilfe' "$pictures/chat.png"
stop

# A rebuild that takes its time.
truncate -s 96M "$folder/gross.dff"
for i in 1 2 3 4 5 6 7 8 9 10 11 12; do
  cp --sparse=always "$folder/gross.dff" "$folder/gross$i.dff"
  "$kvpk" add "$game/models/gta3.img" "$folder/gross$i.dff" >/dev/null
  rm "$folder/gross$i.dff"
done
start "$folder/seite.kvpk"
click "$main" $((152 * scale)) $((549 * scale))
sleep 0.9
shot installing
wait_until window_is_there '^KELVO$'
stop
