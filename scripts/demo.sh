#!/usr/bin/env bash
# Builds the module and runs both examples; says where their pictures are.

source "$(dirname "$0")/setup.sh"

InstallPackages "${buildPackages[@]}"
NeedPython2
Build release _Orvane

mkdir -p build/demo
export PYTHONPATH=build/release/lib PYTHONDONTWRITEBYTECODE=1
"$PYTHON2" examples/project_image.py examples/data/earth-512x256.pgm build/demo/earth.png
"$PYTHON2" examples/depletion_profile.py build/demo/depletion-profile.png
echo "The pictures: $PWD/build/demo/earth.png"
echo "              $PWD/build/demo/depletion-profile.png"
