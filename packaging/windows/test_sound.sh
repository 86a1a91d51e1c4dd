#!/usr/bin/env bash
# Has tune and click played for Windows, under Wine on a device that is a file, and listens to what
# came: a module is read by another library there. test_sound.sh BUILD-FOR-WINDOWS
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
windows=$(realpath "$1")
export WINEPREFIX="$windows/prefix"
"$here/wine.sh" "$windows/kvpk.exe" --version  # makes the prefix
cd "$WINEPREFIX/drive_c"                       # the drive of the tests' temp folders
"$here/wine.sh" "$windows/tests/sound_tests.exe" --gtest_brief=1
echo "Tune and click sound under Wine."
