#!/bin/sh
# make_pack_source.sh OUTDIR: puts the source folder of the demo pack together in OUTDIR: what is in
# pack/, and the rendered pictures. Then: kvpk build OUTDIR PACK.kvpk
# OUTDIR is made anew; it must be empty or have been made by this script.
set -eu
here=$(dirname "$0")
if [ $# -ne 1 ]; then
  echo "usage: $0 OUTDIR" >&2
  exit 2
fi
out=$1
mark=.made-by-make_pack_source
if [ -e "$out" ] && [ ! -e "$out/$mark" ] && [ -n "$(ls -A "$out")" ]; then
  echo "$0: $out exists and isn't a folder that this script made" >&2
  exit 1
fi
rm -rf "$out"
mkdir -p "$out"
cp -R "$here/pack/." "$out"
: > "$out/$mark"
"$here/render_pictures.sh" "$out/pictures"
