#!/usr/bin/env bash
# Makes the pictures of docs/gallery.md, docs/recipes.md, docs/how-much.md and the README anew, with
# the module, and prints the tables of docs/how-much.md.

source "$(dirname "$0")/setup.sh"

SetUp "${buildPackages[@]}"
Build release _Orvane

export PYTHONPATH=build/release/lib PYTHONDONTWRITEBYTECODE=1
"$PYTHON2" examples/gallery.py docs/gallery.md docs/images/gallery
"$PYTHON2" examples/project_image.py examples/data/earth-512x256.pgm docs/images/earth.png
"$PYTHON2" examples/recipes.py docs/recipes.md docs/images/recipes
echo "For docs/how-much.md:"
"$PYTHON2" examples/how_much.py docs/images/how-much.svg
