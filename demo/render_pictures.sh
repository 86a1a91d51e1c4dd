#!/bin/sh
# render_pictures.sh DIR: renders the pictures of the demo pack from their SVG sources to DIR, as
# PNG of twice their design size of 434 x 235 pixels.
set -eu
sources=$(dirname "$0")/pictures
if [ $# -ne 1 ]; then
  echo "usage: $0 DIR" >&2
  exit 2
fi
mkdir -p "$1"
for source in "$sources"/*.svg; do
  rsvg-convert --width 868 --output "$1/$(basename "$source" .svg).png" "$source"
done
