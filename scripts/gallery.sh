#!/usr/bin/env bash
# Makes the pictures of docs/gallery.md, docs/recipes.md, docs/how-much.md and the README anew, with
# the module, and the pages that they speak of in build/pages. Prints the tables of docs/how-much.md.

source "$(dirname "$0")/setup.sh"

SetUp "${buildPackages[@]}"
Build release _Orvane

export PYTHONPATH=build/release/lib PYTHONDONTWRITEBYTECODE=1
"$PYTHON2" examples/gallery.py docs/gallery.md docs/images/gallery
"$PYTHON2" examples/project_image.py examples/data/earth-512x256.pgm docs/images/earth.png
mkdir -p build/pages
"$PYTHON2" examples/recipes.py docs/recipes.md docs/images/recipes build/pages

earth=build/pages/earth
"$PYTHON2" -m orvanekit project examples/data/earth-512x256.pgm $earth.json
"$PYTHON2" -m orvanekit filter $earth.json $earth-smooth.json --heat 0.1
"$PYTHON2" -m orvanekit view $earth.json $earth-smooth.json --title "The Earth in 30 bands"

echo "For docs/how-much.md:"
"$PYTHON2" examples/how_much.py docs/images/how-much.svg
