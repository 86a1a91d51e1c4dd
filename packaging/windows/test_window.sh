#!/usr/bin/env bash
# Drives kelvo.exe under Wine, by mouse and keys on a virtual screen, and holds the game directory
# and kelvo.ini against those of this machine's kelvo: test_window.sh BUILD-FOR-WINDOWS NATIVE-BUILD PACK
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
windows=$(realpath "$1") native=$(realpath "$2") pack=$(realpath "$3")
export WINEPREFIX="$windows/prefix"
wine="$here/wine.sh"
work="$windows/window"

# A program folder of its own, as it comes out of the download, and a game where Windows has them.
rm -rf "$work" "$WINEPREFIX/drive_c/Spiele"
mkdir -p "$work/Löwe/empty"
x86_64-w64-mingw32-strip -o "$work/Löwe/kelvo.exe" "$windows/kelvo.exe"
"$wine" reg add 'HKLM\SOFTWARE\Rockstar Games\GTA San Andreas\Installation' /v ExePath /f \
  /d '"C:\Spiele\GTA San Andreas\gta_sa.exe"' /reg:32 >/dev/null
game="$WINEPREFIX/drive_c/Spiele/GTA San Andreas"
"$native/demo-tools/make_game" "$game" >/dev/null
cp -a "$game" "$work/untouched"

cat >"$work/kelvo" <<RUN
#!/bin/sh
unset QT_QPA_PLATFORM
# Of these two, SDL for Windows takes the latter for milliseconds and for the file's name.
export SDL_AUDIODRIVER=disk SDL_DISKAUDIOFILE=x SDL_DISKAUDIODELAY=23/../../../heard
cd '$work/Löwe/empty' && exec '$wine' ../kelvo.exe "\$@"
RUN
chmod +x "$work/kelvo"
# run_window PROGRAM PICTURE: opens the pack, presses Install, and closes the window again.
run_window() {
  env -u DISPLAY -u WAYLAND_DISPLAY "$here/../../demo/run_window.sh" "$1" "$pack" "$2"
}
run_window "$work/kelvo" "$windows/window.png"

# The same on this machine, by a program that goes on with the other's kelvo.ini.
mkdir "$work/here"
cp "$native/kelvo" "$work/here/"
sed "s|^Position=.*|Position=82,74,675,591|" "$work/Löwe/kelvo.ini" >"$work/moved.ini"
cp "$work/moved.ini" "$work/here/kelvo.ini"
other=$(export WINEPREFIX="$work/native"
  "$here/../../demo/make_prefix.sh" "$WINEPREFIX" "$native/demo-tools/make_game" 2>/dev/null)
(cd "$work/Löwe/empty" && WINEPREFIX="$work/native" run_window "$work/here/kelvo" "$work/here.png")
diff -r "$other" "$game"
! diff -rq "$work/untouched" "$game" >/dev/null || { echo "no mod was installed" >&2; exit 1; }
cmp "$work/here/kelvo.ini" "$work/moved.ini"
# And the other way round.
cp "$work/here/kelvo.ini" "$work/Löwe/"
run_window "$work/kelvo" "$work/again.png"
cmp "$work/Löwe/kelvo.ini" "$work/moved.ini"

grep -q '^PlayMusic=1' "$work/Löwe/kelvo.ini"
"$wine" reg query 'HKCR\kvpkfile\shell\open\command' /ve |
  grep -q -a 'kelvo.exe" "%1"'
[ "$(tr -d '\0' <"$work/heard" | wc -c)" -gt 100000 ] || { echo "no tune was heard" >&2; exit 1; }
for file in kelvo.ini music.mod; do test -s "$work/Löwe/$file"; done
test ! -e "$work/Löwe/inst_temp"
echo "kelvo.exe installs under Wine what is installed here; see $windows/window.png."
