#!/bin/sh
# render_pictures.sh DIR: renders the pictures of the demo pack from their SVG sources to DIR, as
# PNG of one and a half times their design size of 434 x 235 pixels: twice what the window shows of
# them at first, so that they are crisp on a fine screen and quick to read.
set -eu
sources=$(dirname "$0")/pictures
if [ $# -ne 1 ]; then
  echo "usage: $0 DIR" >&2
  exit 2
fi
mkdir -p "$1"
for source in "$sources"/*.svg; do
  rsvg-convert --width 652 --output "$1/$(basename "$source" .svg).png" "$source"
done
