#!/usr/bin/env bash
# render_skin.sh OUTDIR: renders every picture of the skin into OUTDIR, at 1x as NAME.png and at 2x
# as NAME@2x.png, and the window icon as kelvo_SIZE.png. Needs rsvg-convert (librsvg2-bin).
set -euo pipefail

[ $# -eq 1 ] || { echo "Usage: render_skin.sh OUTDIR" >&2; exit 2; }
mkdir -p "$1"
out="$(cd "$1" && pwd)"
cd "$(dirname "${BASH_SOURCE[0]}")/skin"
sheet="$(mktemp)"
trap 'rm -f "$sheet"' EXIT

# render NAME SVG [OPTION...]
render() {
  rsvg-convert "${@:3}" --zoom 1 --output "$out/$1.png" "$2"
  rsvg-convert "${@:3}" --zoom 2 --output "$out/$1@2x.png" "$2"
}

# button ICON_STATE: the plate in the colours of the state, with the one icon shown.
button() {
  local icon="${1%_*}" state="${1##*_}"
  { cat "button_$state.css"; echo ".$icon { display: inline }"; } >"$sheet"
  render "button_$1" button.svg --stylesheet "$sheet"
}

while read -r name _; do
  case "$name" in
    '' | '#'*) ;;
    button_*) button "${name#button_}" ;;
    *) render "$name" "$name.svg" ;;
  esac
done <../skin_list.txt

for size in 16 24 32 48 64 128 256; do
  case "$size" in
    16 | 32) source=icon_small.svg ;;
    24) source=icon_24.svg ;;
    *) source=icon.svg ;;
  esac
  rsvg-convert --width "$size" --height "$size" --output "$out/kelvo_$size.png" "$source"
done
