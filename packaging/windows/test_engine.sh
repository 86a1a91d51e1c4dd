#!/usr/bin/env bash
# Tests what has been built for Windows under Wine, and holds it against this machine's build:
# test_engine.sh BUILD-FOR-WINDOWS NATIVE-BUILD
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
windows=$(realpath "$1")
native=$(realpath "$2")
export WINEPREFIX="$windows/prefix"
wine="$here/wine.sh"

# One file: nothing but the system's own libraries is asked for.
foreign=$(x86_64-w64-mingw32-objdump -p "$windows/kvpk.exe" | sed -n 's/.*DLL Name: //p' |
  grep -v -i -x -E '(advapi32|kernel32|msvcrt|ole32|shell32|user32|ws2_32)\.dll' || true)
[ -z "$foreign" ] || { echo "kvpk.exe needs more than the system has: $foreign" >&2; exit 1; }

"$wine" "$windows/kvpk.exe" --version  # makes the prefix
find "$windows/tests" -name '*_tests.exe' | sort |
  xargs -P "$(nproc)" -I '{}' "$wine" '{}' --gtest_brief=1

# The same source makes the same pack, and the same pack the same game directory.
work="$windows/comparison"
rm -rf "$work"
mkdir "$work"
cd "$work"
"$here/../../demo/make_pack_source.sh" source
"$native/demo-tools/make_game" native-game >/dev/null
cp -a native-game windows-game
cp -a native-game untouched-game
"$native/kvpk" build source native.kvpk
"$wine" "$windows/kvpk.exe" build source windows.kvpk
cmp native.kvpk windows.kvpk
"$native/kvpk" install windows.kvpk --trust --game native-game >native.txt
"$wine" "$windows/kvpk.exe" install native.kvpk --trust --game windows-game >windows.txt
diff native.txt windows.txt
diff -r native-game windows-game
! diff -rq native-game untouched-game >/dev/null || { echo "no mod was installed" >&2; exit 1; }
echo "Engine and kvpk.exe pass under Wine; pack and game directory are those of $(uname)."
