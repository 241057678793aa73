#!/usr/bin/env bash
# Makes docs/reference.md and the typed stub anew from the tables in orvane/module/.

source "$(dirname "$0")/setup.sh"

SetUp "${buildPackages[@]}"
Build release orvane-manual

build/release/bin/orvane-manual reference >docs/reference.md
build/release/bin/orvane-manual stub >orvane/module/_Orvane.pyi
