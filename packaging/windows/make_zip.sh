#!/usr/bin/env bash
# Puts together what people download: make_zip.sh BUILD-FOR-WINDOWS PACK ZIP
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
build=$(realpath "$1") pack=$(realpath "$2") zip=$(realpath -m "$3")
folder="$build/zip/KELVO"

rm -rf "$build/zip" "$zip"
mkdir -p "$folder/Lizenzen"
for program in kelvo kvpk; do
  x86_64-w64-mingw32-strip -o "$folder/$program.exe" "$build/$program.exe"
done
cp "$pack" "$folder/demo.kvpk"
# What the simplest editor of any Windows shows as it is: marked UTF-8, lines ended by CR LF.
{ printf '\xEF\xBB\xBF'; sed 's/$/\r/' "$here/LIESMICH.txt"; } >"$folder/LIESMICH.txt"

cp "$here/../../LICENSE" "$folder/Lizenzen/KELVO.txt"
sed -n 's/^CMAKE_PREFIX_PATH:[A-Z]*=//p' "$build/CMakeCache.txt" | tr ';' '\n' |
  while read -r library; do cp -R "$library/licences/." "$folder/Lizenzen/"; done
for package in libcli11-dev nlohmann-json3-dev libz-mingw-w64-dev mingw-w64-common \
               gcc-mingw-w64-base; do
  cp "/usr/share/doc/$package/copyright" "$folder/Lizenzen/$package.txt"
done

(cd "$build/zip" && zip -q -r -X "$zip" KELVO)
echo "$zip: $(du -h "$zip" | cut -f 1)"
