#!/usr/bin/env bash
# show_changes.sh KVPK BEFORE GAME: prints what changed between two states of a game directory,
# line by line for text files, entry by entry for archives.
set -euo pipefail
kvpk=$1 before=$2 game=$3

# text DIR: the text files of a directory, as UTF-8 lines headed by their names.
text() { (cd "$1" && [ -f "$2" ] && iconv -f WINDOWS-1252 -t UTF-8 "$2" | tr -d '\r') || true; }
# entries DIR FILE: name and size of each entry of an archive.
entries() { [ -f "$1/$2" ] && "$kvpk" list "$1/$2" | cut -f2- | sort || true; }

echo
echo "What changed in $game:"
{ (cd "$before" && find . -mindepth 1) && (cd "$game" && find . -mindepth 1); } |
  sed 's|^\./||' | sort -u | while read -r name; do
  if [ ! -e "$before/$name" ]; then
    echo "  new       $name"
  elif [ ! -e "$game/$name" ]; then
    echo "  gone      $name"
  elif [ -f "$game/$name" ] && ! cmp -s "$before/$name" "$game/$name"; then
    echo "  changed   $name"
    case "$name" in
      *.img) diff <(entries "$before" "$name") <(entries "$game" "$name") || true ;;
      *) diff <(text "$before" "$name") <(text "$game" "$name") || true ;;
    esac | sed -n 's/^\([<>]\) /              \1 /p' | tr '<>' '-+'
  fi
done
