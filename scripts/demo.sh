#!/usr/bin/env bash
# Builds the module and its minimal host, runs both examples and makes a page of the Earth; says where
# the pictures and the page are.
# A first run takes some minutes, a second one two seconds.

source "$(dirname "$0")/setup.sh"

SetUp "${buildPackages[@]}"
Build release _Orvane tesk-run

mkdir -p build/demo
export PYTHONPATH=build/release/lib PYTHONDONTWRITEBYTECODE=1
"$PYTHON2" examples/project_image.py examples/data/earth-512x256.pgm build/demo/earth.png
"$PYTHON2" examples/depletion_profile.py build/demo/depletion-profile.png
"$PYTHON2" -m orvanekit project examples/data/earth-512x256.pgm build/demo/earth.json
"$PYTHON2" -m orvanekit view build/demo/earth.json --title "The Earth in 30 bands" >/dev/null
echo "The pictures: $PWD/build/demo/earth.png"
echo "              $PWD/build/demo/depletion-profile.png"
echo "To turn in a browser: $PWD/build/demo/earth.html"
