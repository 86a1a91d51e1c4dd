#!/bin/sh
# make_pack_source.sh OUTDIR: puts the source folder of the demo pack together in OUTDIR, which is
# replaced: what is in pack/, and the rendered pictures. Then: kvpk build OUTDIR PACK.kvpk
set -eu
here=$(dirname "$0")
if [ $# -ne 1 ]; then
  echo "usage: $0 OUTDIR" >&2
  exit 2
fi
out=$1
# Only a folder that this script made is removed.
if [ -e "$out" ] && [ ! -e "$out/pack.ini" ]; then
  if [ ! -d "$out" ] || [ -n "$(ls -A "$out")" ]; then
    echo "$0: $out exists and isn't a pack's source folder" >&2
    exit 1
  fi
fi
rm -rf "$out"
mkdir -p "$(dirname "$out")"
cp -R "$here/pack" "$out"
"$here/render_pictures.sh" "$out/pictures"
