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

# What is linked: the members of static libraries that the linker names in its maps.
members=$(grep -h -o '[^ /]*\.a([^ )]*)' "$build/kelvo.exe.map" "$build/kvpk.exe.map" | sort -u)
is_linked() { grep -q -E "$1" <<<"$members"; }
# source PACKAGE: name and version of the source package that a package of this machine is made of.
# shellcheck disable=SC2016 # dpkg's own variables
source_of() { dpkg-query -W -f '${source:Package} ${source:Version}\n' "$1" | head -n 1; }
# library NAME SOURCE LICENCE: a line of the list that people read.
library() { printf '%-22s%-38s%s\n' "$@" >>"$build/zip/libraries"; }

cp "$here/../../LICENSE" "$folder/Lizenzen/KELVO.txt"
declare -A licence=([qt6-base]='Qt|LGPL 3' [libsdl2]='SDL2|zlib' [libsdl2-mixer]='SDL2_mixer|zlib'
                    [libxmp]='libxmp|LGPL 2.1 oder später')
while read -r home; do
  # windows-NAME-VERSION-HASH
  version=$(basename "$home" | sed -E 's/^windows-(.*)-[0-9a-f]{12}$/\1/')
  package=$(sed -E 's/-[0-9].*$//' <<<"$version")
  library "${licence[$package]%|*}" "$package ${version#"$package"-}" "${licence[$package]#*|}"
  [ "$package" = qt6-base ] || cp -R "$home/licences/." "$folder/Lizenzen/"
  [ "$package" != qt6-base ] || qt="$home/licences/Qt"
done < <(sed -n 's/^CMAKE_PREFIX_PATH:[A-Z]*=//p' "$build/CMakeCache.txt" | tr ';' '\n')

# Qt's own licence, which is a supplement to the other, and those of what it brings along: the part,
# and what of it shows in the map.
mkdir -p "$folder/Lizenzen/Qt"
cp "$qt"/LICENSES/{LGPL-3.0-only,GPL-3.0-only}.txt "$folder/Lizenzen/Qt/"
while read -r part member; do
  is_linked "$member" || continue
  (cd "$qt/src" && find "$part" -type f -exec cp --parents -t "$folder/Lizenzen/Qt" {} +)
done <<'PARTS'
3rdparty/blake2                             \(qcryptographichash\.
3rdparty/double-conversion                  \((bignum|double-to-string|string-to-double)\.
3rdparty/easing                             \(qeasingcurve\.
3rdparty/freetype                           libQt6BundledFreetype|\(qgrayraster\.
3rdparty/harfbuzz-ng                        libQt6BundledHarfbuzz
3rdparty/libjpeg                            libQt6BundledLibjpeg
3rdparty/libpng                             libQt6BundledLibpng
3rdparty/md4c                               \(md4c\.
3rdparty/pcre2                              libQt6BundledPcre2
3rdparty/pixman                             \(qdrawhelper
3rdparty/rfc6234                            \(qcryptographichash\.
3rdparty/sha3                               \(qcryptographichash\.
3rdparty/tinycbor                           \(qcbor
3rdparty/zlib                               libQt6BundledZLIB
corelib/text/UNICODE_LICENSE.txt            libQt6Core
corelib/tools/LICENSE.siphash               \(qhash\.
gui/painting/QIMAGETRANSFORM_LICENSE.txt    \(qimagetransform\.|\(qimagescale
gui/painting/XCONSORTIUM_LICENSE.txt        \(qregion\.
gui/text/AGLFN_LICENSE.txt                  \(qfontsubset\.
PARTS

# What both programs, or kvpk.exe alone, have of this machine's packages.
while IFS='|' read -r package name words; do
  library "$name" "$(source_of "$package")" "$words"
  cp "/usr/share/doc/$package/copyright" "$folder/Lizenzen/${name%% *}.txt"
done <<'PACKAGES'
libz-mingw-w64-dev|zlib|zlib
libcli11-dev|CLI11 (kvpk)|BSD mit 3 Absätzen
nlohmann-json3-dev|nlohmann-json (kvpk)|MIT
mingw-w64-common|mingw-w64|ZPL 2.1 und gemeinfrei
gcc-mingw-w64-base|GCC|GPL 3 mit Ausnahme für Laufzeiten
PACKAGES

# What the simplest editor of any Windows shows as it is: marked UTF-8, lines ended by CR LF.
{ printf '\xEF\xBB\xBF'; sed -e "/^@LIBRARIES@/{r $build/zip/libraries" -e 'd}' "$here/LIESMICH.txt" |
  sed 's/$/\r/'; } >"$folder/LIESMICH.txt"
git -C "$here/../.." archive --format=zip --prefix=KELVO-Quelltext/ -o "$folder/Quelltext.zip" HEAD

(cd "$build/zip" && zip -q -r -X "$zip" KELVO)
echo "$zip: $(du -h "$zip" | cut -f 1)"
