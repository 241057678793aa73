#!/usr/bin/env bash
# Makes docs/reference.md and the typed stub anew from the tables in orvane/module/, and
# docs/orvanekit.md from the docstrings of orvanekit/.

source "$(dirname "$0")/setup.sh"

SetUp "${buildPackages[@]}"
Build release orvane-manual _Orvane

build/release/bin/orvane-manual reference >docs/reference.md
build/release/bin/orvane-manual stub >orvane/module/_Orvane.pyi
PYTHONPATH=build/release/lib PYTHONDONTWRITEBYTECODE=1 "$PYTHON2" scripts/kit_reference.py \
    >docs/orvanekit.md
