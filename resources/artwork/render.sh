#!/usr/bin/env bash
# Makes the images again from their SVG sources: resources/artwork/render.sh
#
# The images are kept beside their sources, so no build needs this. It takes rsvg-convert, from
# Debian's package librsvg2-bin.
set -euo pipefail
cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")"

for source in *.svg; do
    name=${source%.svg}
    rsvg-convert --zoom=1 "$source" -o "$name.png"
    rsvg-convert --zoom=2 "$source" -o "$name@2x.png"
done

icons=../icons
for size in 16 22 24 32 48 64 128 256; do
    folder=$icons/hicolor/${size}x$size/apps
    mkdir -p "$folder"
    rsvg-convert --width="$size" --height="$size" "$icons/tessaly.svg" -o "$folder/tessaly.png"
done
