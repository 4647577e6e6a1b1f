#!/bin/sh
# Renders the icons of the window and of the program from their SVG sources, those of the window at their own size
# and at twice that size for screens with a scale of 200 %. The PNG files are kept in the tree, so a build does not need
# this script: run it after a source has changed.
#
# Needs rsvg-convert (Debian package librsvg2-bin).
set -eu

if ! command -v rsvg-convert >/dev/null; then
    echo "make-icons.sh: rsvg-convert is missing (Debian package librsvg2-bin)" >&2
    exit 1
fi

cd "$(dirname "$0")/../src"
for source in */resources/*.svg; do
    name=${source%.svg}
    rsvg-convert --zoom 1 --output "$name.png" "$source"
    rsvg-convert --zoom 2 --output "$name@2x.png" "$source"
done

# The icon of the program for desktops, in the sizes that they show.
cd ..
for size in 16 22 24 32 48 64 128 256; do
    rsvg-convert --width "$size" --height "$size" --output "packaging/desktop/icons/$size.png" \
        apps/program/windows/paravue.svg
done
