#!/bin/sh
# Renders the window's icons from their SVG sources, at their own size and at twice that size for screens
# with a scale of 200 %. The PNG files are kept beside the sources, so a build does not need this script:
# run it after a source has changed.
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
