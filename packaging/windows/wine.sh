#!/usr/bin/env bash
# Runs a program for Windows: packaging/windows/wine.sh PROGRAM [ARGUMENT...]. The Wine prefix is
# the one that WINEPREFIX names, else one of this project's own, made at the first run; nothing of
# the user's own prefix is touched.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)

export WINEPREFIX="${WINEPREFIX:-${here%/packaging/windows}/build-windows-engine/prefix}"
# File names of this machine are UTF-8; the code page is then 1252.
export LC_ALL=C.UTF-8
export WINEDEBUG=-all
# No menus, and nobody is asked whether to load a browser or a runtime.
export WINEDLLOVERRIDES='mscoree,mshtml=;winemenubuilder.exe=d'
wine=/usr/lib/wine/wine64

if [ ! -e "$WINEPREFIX/system.reg" ]; then
  mkdir -p "$WINEPREFIX"
  env -u DISPLAY "$wine" wineboot --init >/dev/null 2>&1
  # The registry is written when the last program has ended.
  /usr/lib/wine/wineserver -w
fi
exec "$wine" "$@"
