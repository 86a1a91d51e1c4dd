#!/usr/bin/env bash
# make_prefix.sh PREFIX MAKE_GAME: a Wine prefix with a small game in C:\Spiele and the registry
# key by which it is found. Prints the game directory.
set -euo pipefail
prefix=$1 make_game=$2
game="$prefix/drive_c/Spiele/GTA San Andreas"
mkdir -p "$prefix/dosdevices" "$prefix/drive_c"
ln -sfn ../drive_c "$prefix/dosdevices/c:"
cat > "$prefix/system.reg" <<'REG'
WINE REGISTRY Version 2

[Software\\Rockstar Games\\GTA San Andreas\\Installation] 1700000000
"ExePath"="\"C:\\Spiele\\GTA San Andreas\\gta_sa.exe\""
REG
"$make_game" "$game" >&2
echo "$game"
