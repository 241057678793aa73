#!/usr/bin/env bash
# Makes the pictures of docs/gallery.md anew, with the module.

source "$(dirname "$0")/setup.sh"

InstallPackages "${buildPackages[@]}"
NeedPython2
Build release _Orvane

export PYTHONPATH=build/release/lib
"$PYTHON2" examples/gallery.py docs/gallery.md docs/images/gallery
