#!/usr/bin/env bash
# window_test.sh KELVO KVPK MAKE_GAME MAKE_PACK_SOURCE: the built program on a virtual screen, with
# a window manager, as a player uses it: mods are ticked and unticked by mouse and keyboard, the
# rest is installed, the message answered, the window closed. The game directory is then the one
# that `kvpk install` makes of the same mods.
set -euo pipefail
kelvo=$1 kvpk=$2 make_game=$3 make_pack_source=$4
here=$(dirname "$0")
# shellcheck source=../../scripts/virtual_screen.sh
source "$here/../../scripts/virtual_screen.sh"

fail() { echo "FAILED: $*" >&2; exit 1; }

open_screen 900x800
folder=$screen_folder/test
mkdir -p "$folder/program" "$folder/empty"
export XDG_DATA_HOME="$folder/data" XDG_CONFIG_HOME="$folder/config" SDL_AUDIODRIVER=dummy
unset WINEPREFIX
cp "$kelvo" "$folder/program/kelvo"
"$make_pack_source" "$folder/pack"
"$kvpk" build "$folder/pack" "$folder/Das Paket für Ole.kvpk"
game=()
for side in window tool; do
  game+=("$("$here/../../demo/make_prefix.sh" "$folder/$side" "$make_game" 2>/dev/null)")
done
cd "$folder/empty"

# The window's design size, with the pack's page of 120 pixels: type list at (8, 176), mod list at
# (215, 176), rows of 30 pixels, buttons from (108, 534).
main='moddock // modpack'
WINEPREFIX="$folder/window" "$folder/program/kelvo" "$folder/Das Paket für Ole.kvpk" &
program=$!
wait_until window_is_there "$main"

click "$main" 228 221  # the tick of the second car, off (2)
click "$main" 228 251  # of the third, off (3)
click "$main" 228 251  # and on again
click "$main" 90 221   # the second type
click "$main" 400 191  # its first mod
press_key "$main" Down space        # its second, off (5)
press_key "$main" Down space space  # its third, off and on again (6)
click "$main" 25 251   # all of the third type, off (8, 9, 10)

click "$main" 152 549
wait_until window_is_there '^KELVO$'
press_key '^KELVO$' Return
wait_until window_is_gone '^KELVO$'
sleep 0.5  # the panel slides away
click "$main" 658 15
wait "$program" || fail "the program ended with status $?"

WINEPREFIX="$folder/tool" "$kvpk" install "$folder/Das Paket für Ole.kvpk" --game "${game[1]}" \
  --mods 1,3,4,6,7 >/dev/null
diff -r "${game[0]}" "${game[1]}" || fail 'window and tool installed different things'
cmp -s "${game[0]}/data/gta.dat" <("$make_game" "$folder/fresh" >/dev/null; cat "$folder/fresh/data/gta.dat") &&
  fail 'nothing was installed'
[ ! -e "$folder/program/inst_temp" ] || fail 'inst_temp is still there'
grep -q '^Position=' "$folder/program/kelvo.ini" || fail 'kelvo.ini has no position'
echo "Window and tool installed the same."
